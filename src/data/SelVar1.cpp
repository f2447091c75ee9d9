#include "data/SelVar1.h"

#include <algorithm>

#include "frame/Decoration.h"
#include "frame/Module.h"
#include "frame/NumberText.h"

namespace lorvane {

namespace {

constexpr const char* Mark = "* ";

bool IsMarked(const std::string& item) {
    return item.rfind(Mark, 0) == 0;
}

std::string Unmarked(const std::string& item) {
    return IsMarked(item) ? item.substr(2) : item;
}

} // namespace

SelVar1::SelVar1(Module& module) : Screen(module, "SelVar1", "Select variables") {
    Add(ControlKind::Label, "Label0", "", 0, 0, 9600, 360);
    Add(ControlKind::Label, "Label1",
        "Double click to select an item or undo the selection of an item. The selected item(s) are "
        "indicated by *. "
        "Or highlight several items (click, Shift+click, Ctrl+click) and select them all at once.",
        240, 480, 9120, 600);
    Control& available = Add(ControlKind::ListBox, "List2", "", 240, 1200, 5400, 4680);
    available.MultiSelect = true;
    Add(ControlKind::Label, "Label3", "", 5880, 1200, 3480, 600);
    Add(ControlKind::Label, "Label2", "", 5880, 1920, 3480, 1800);
    Add(ControlKind::Label, "Label4", "", 5880, 3840, 3480, 600);
    Add(ControlKind::ListBox, "List1", "", 5880, 4560, 3480, 1320).Visible = false;
    Add(ControlKind::Button, "Command3", "Select all highlighted items at once", 240, 6120, 3600,
        420);
    Add(ControlKind::Button, "Command4", "Oops!", 3960, 6120, 1200, 420);
    Add(ControlKind::Button, "Command1", "Selection OK", 6360, 6120, 1440, 420);
    Add(ControlKind::Button, "Command2", "Cancel", 7920, 6120, 1440, 420);
}

void SelVar1::Load() {
    FontOfNotepadText((*this)("List2"));
    (*this)("Command1").Enabled = false;
    (*this)("Command3").Enabled = false;
    (*this)("Command4").Visible = false;
    SetCancel("Command2");
    SetFocus("List2");
    if (UpperCase(Name()) != "SELVAR1") {
        (*this)("Command2").Caption = "Back";
    }
}

void SelVar1::Activate() {
    if (module.ActivateCount == 1) {
        LoadList();
    }
}

void SelVar1::ReadError(const std::string& files) {
    module.boxes().MessageBoxShort("Error encountered while reading " + files, 0,
                                   "Lorvane module " + module.ModuleName);
    module.ModuleEnd();
}

void SelVar1::LoadList() {
    Control& heading = (*this)("Label0");
    heading.Caption = " " + module.SelVarTitle;
    DecorateHeader(*this, heading);

    DataStore& store = module.store();
    if (store.ReadHeader(module.DataFile("INPUT1.RAN")) == 0) {
        ReadError("file " + DataFileText("INPUT1.RAN"));
    }
    if (store.MissingCode == 0) {
        store.MissingCode = DefaultMissingCode;
        FixMissingCode(module.DataFile("INPUT1.RAN"), store.MissingCode);
    }
    if (module.MaxVars > store.VarCount) {
        module.MaxVars = -1;
    }
    std::vector<std::string> names;
    if (ReadNames(module.DataFile("INPUT2.RAN"), store.VarCount, names) == 0) {
        ReadError("file " + DataFileText("INPUT2.RAN"));
    }
    Control& available = (*this)("List2");
    available.ClearItems();
    for (std::string& name : names) {
        available.AddItem(std::move(name));
    }
    WriteCountRule();

    if (available.ListCount() == 1 && (*this)("List1").ListCount() == 0) {
        available.ListIndex = 0;
        ToggleItem();
        available.Enabled = false;
        Control& note = (*this)("Label2");
        note.Caption = "Available variable:\r\n\r\n" + Unmarked(available.Items[0]) + "\r\n\r\n";
        if (module.MinVars > 1) {
            note.Caption += " However, you have to select" + NumberToText(module.MinVars - 1) +
                            " variable" + (module.MinVars > 2 ? "s" : "") +
                            " more, which is not possible. Therefore, you cannot continue!";
            for (const char* button : {"Command1", "Command3", "Command4"}) {
                (*this)(button).Enabled = false;
            }
        } else {
            (*this)("Command1").Enabled = true;
            (*this)("Command1").Caption = "Continue";
            (*this)("Command3").Visible = false;
            (*this)("Command4").Visible = false;
        }
    }
    if (module.MaxVars == 1) {
        (*this)("Command3").Visible = false;
        (*this)("Command4").Visible = false;
        (*this)("Label1").Caption =
            "Double click to select an item or undo the selection of an item. The selected "
            "item(s) are indicated by *. ";
    }
}

void SelVar1::WriteCountRule() {
    Control& rule = (*this)("Label3");
    const int minVars = module.MinVars;
    const int maxVars = module.MaxVars;
    auto ending = [](int n) { return n == 1 ? std::string(".") : std::string("s."); };
    rule.Visible = true;
    if (minVars > 0 && minVars == maxVars) {
        rule.Caption = "Select exactly" + NumberToText(minVars) + " variable" + ending(minVars);
    } else if (minVars > 0 && minVars < maxVars) {
        rule.Caption = "Select minimal" + NumberToText(minVars) + " and maximal" +
                       NumberToText(maxVars) + " variables.";
    } else if (minVars > 0 && minVars > maxVars) {
        rule.Caption = "Select minimal" + NumberToText(minVars) + " variable" + ending(minVars);
    } else if (minVars <= 0 && maxVars > 0) {
        rule.Caption =
            "Select no more than" + NumberToText(maxVars) + " variable" + ending(maxVars);
    } else {
        rule.Visible = false;
    }
}

void SelVar1::RemoveChosen(const std::string& name) {
    Control& chosen = (*this)("List1");
    const auto found = std::find(chosen.Items.begin(), chosen.Items.end(), name);
    if (found != chosen.Items.end()) {
        chosen.RemoveItem(static_cast<int>(found - chosen.Items.begin()));
    }
}

void SelVar1::MarkItem(int index) {
    std::string& item = (*this)("List2").Items[static_cast<std::size_t>(index)];
    (*this)("List1").AddItem(item);
    item = Mark + item;
}

void SelVar1::UnmarkItem(int index) {
    std::string& item = (*this)("List2").Items[static_cast<std::size_t>(index)];
    item = Unmarked(item);
    RemoveChosen(item);
}

int SelVar1::MarkedCount() const {
    const auto& items = (*this)("List2").Items;
    return static_cast<int>(std::count_if(items.begin(), items.end(), IsMarked));
}

void SelVar1::CheckCount() {
    const int count = MarkedCount();
    const int minVars = module.MinVars;
    const int maxVars = module.MaxVars;
    const bool tooMany = maxVars > 0 && count > maxVars;
    const bool tooFew = minVars > 0 && count < minVars;
    (*this)("Command1").Enabled = !tooMany && !tooFew;
    if (tooMany) {
        (*this)("Label3").Caption = " Select" + NumberToText(count - maxVars) + " less!";
    } else if (tooFew) {
        (*this)("Label3").Caption = " Select" + NumberToText(minVars - count) + " more!";
    } else {
        WriteCountRule();
    }
    EnableSelectHighlighted();
    if (maxVars == 1) {
        (*this)("Command3").Visible = false;
        (*this)("Command4").Visible = false;
    }
}

void SelVar1::EnableSelectHighlighted() {
    const Control& available = (*this)("List2");
    bool any = false;
    for (int i = 0; i < available.ListCount() && !any; ++i) {
        any = available.IsHighlighted(i);
    }
    (*this)("Command3").Enabled = any && available.Enabled;
}

void SelVar1::ToggleItem() {
    const int index = (*this)("List2").ListIndex;
    if (index < 0) {
        return;
    }
    if (IsMarked((*this)("List2").Items[static_cast<std::size_t>(index)])) {
        UnmarkItem(index);
    } else {
        MarkItem(index);
    }
    CheckCount();
}

void SelVar1::SelectHighlighted() {
    Control& available = (*this)("List2");
    for (int i = 0; i < available.ListCount(); ++i) {
        if (available.IsHighlighted(i) && IsMarked(available.Items[static_cast<std::size_t>(i)])) {
            UnmarkItem(i);
        }
    }
    for (int i = 0; i < available.ListCount(); ++i) {
        if (available.IsHighlighted(i)) {
            MarkItem(i);
        }
    }
    CheckCount();
}

void SelVar1::LoadSelection() {
    for (const char* control : {"Command1", "Command2", "Command3", "Command4", "List2"}) {
        (*this)(control).Enabled = false;
    }
    Control& available = (*this)("List2");
    std::vector<int> numbers;
    for (const std::string& name : (*this)("List1").Items) {
        for (int i = 0; i < available.ListCount(); ++i) {
            if (Unmarked(available.Items[static_cast<std::size_t>(i)]) == name) {
                numbers.push_back(i + 1);
                break;
            }
        }
    }
    DataStore& store = module.store();
    if (store.LoadSelected(module.DataFile("INPUT1.RAN"), module.DataFile("INPUT2.RAN"), numbers,
                           module.platform().events) == 0) {
        ReadError("files " + DataFileText("INPUT1.RAN") + " and " + DataFileText("INPUT2.RAN"));
    }
    if (store.FirstCommonObs() == 0 || store.LastCommonObs() == 0) {
        (*this)("Label4").Caption = "The chosen variables have no valid observations in common!";
        Control& oops = (*this)("Command4");
        oops.Visible = true;
        oops.Enabled = true;
        SetFocus("Command4");
        return;
    }
    if (store.MissingCode == 0) {
        store.MissingCode = DefaultMissingCode;
        FixMissingCode(module.DataFile("INPUT1.RAN"), store.MissingCode);
    }
    module.GoToScreen(module.ScreenAfterSelVar);
}

void SelVar1::Click(Control& control) {
    if (control.Name == "List2") {
        EnableSelectHighlighted();
    } else if (control.Name == "Command1") {
        LoadSelection();
    } else if (control.Name == "Command2") {
        if (UpperCase(Name()) == "SELVAR1") {
            module.ModuleEnd();
        }
        module.StartAgain();
    } else if (control.Name == "Command3") {
        SelectHighlighted();
        if ((*this)("Command1").Enabled) {
            SetFocus("Command1");
        }
    } else if (control.Name == "Command4") {
        module.GoToScreen("SelVar1");
    }
}

void SelVar1::DoubleClick(Control& control, int item) {
    if (control.Name == "List2") {
        control.ListIndex = item;
        ToggleItem();
        if ((*this)("Command1").Enabled) {
            SetFocus("Command1");
        }
    }
}

} // namespace lorvane
