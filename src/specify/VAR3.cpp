#include "specify/VAR3.h"

#include "frame/Decoration.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/TextFile.h"

namespace lorvane {

VAR3::VAR3(Module& module) : Screen(module, "VAR3", "Zero restrictions") {
    Add(ControlKind::Label, "Label0", " VAR model specification", 0, 0, 9600, 360);
    Add(ControlKind::Label, "Label1", "VAR model:", 240, 480, 4560, 300);
    Control& model = Add(ControlKind::TextBox, "Text1", "", 240, 780, 4560, 5100);
    model.MultiLine = true;
    model.Locked = true;
    Add(ControlKind::Label, "Label3", "", 5040, 480, 4320, 300);
    Add(ControlKind::ListBox, "List2", "", 5040, 780, 4320, 1920);
    Add(ControlKind::Label, "Label4",
        "A zero in the matrices A(k) at the (i,j)'s entry indicates that variable  j does not "
        "Granger cause "
        "variable i.",
        5040, 2760, 4320, 600);
    Add(ControlKind::Label, "Label5", "i =", 5040, 3540, 600, 300);
    Add(ControlKind::TextBox, "Index1", "", 5640, 3480, 600, 360).Locked = true;
    Add(ControlKind::Button, "RowUp", "Row Up", 6360, 3480, 1440, 360);
    Add(ControlKind::Button, "RowDown", "Row Down", 7920, 3480, 1440, 360);
    Add(ControlKind::Label, "Label6", "j =", 5040, 4020, 600, 300);
    Add(ControlKind::TextBox, "Index2", "", 5640, 3960, 600, 360).Locked = true;
    Add(ControlKind::Button, "ColumnUp", "Column Up", 6360, 3960, 1440, 360);
    Add(ControlKind::Button, "ColumnDown", "Column Down", 7920, 3960, 1440, 360);
    Add(ControlKind::Label, "Label7", "(i,j) element =", 5040, 4500, 1560, 300);
    Add(ControlKind::TextBox, "aij", "", 6600, 4440, 600, 360).Locked = true;
    Add(ControlKind::Button, "Command3", "Change pattern", 7320, 4440, 2040, 420);
    Add(ControlKind::TextBox, "Text2", "", 0, 0, 0, 0).Visible = false;
    Add(ControlKind::Button, "Command1", "Continue", 6360, 6120, 1440, 420);
    Add(ControlKind::Button, "Command2", "Respecify VAR", 7920, 6120, 1440, 420);
}

void VAR3::Load() {
    FontOfNotepadText((*this)("Text1"));
    FontOfNotepadText((*this)("List2"));
    const int k = module.store().SelectedCount();
    const int p = module.p;
    std::string heading;
    if (p == 1) {
        heading = "Zeros in matrix A(1):";
    } else if (p == 2) {
        heading = "Zeros in matrices A(1), A(2):";
    } else {
        heading = "Zeros in matrices A(1),..,A(" + Trim(NumberToText(p)) + "):";
    }
    (*this)("Label3").Caption = heading;
    pattern_.assign(static_cast<std::size_t>(k), std::string(static_cast<std::size_t>(k), '1'));
    Control& rows = (*this)("List2");
    for (int i = 1; i <= k; ++i) {
        rows.AddItem("");
        ShowRow(i);
    }
    (*this)("Index1").Caption = "1";
    (*this)("Index2").Caption = "1";
    ShowElement();
    (*this)("Text1").Caption = module.ModelText;
    WritePattern();
    SetFocus("Command1");
}

void VAR3::Activate() {
    if (module.ActivateCount == 1) {
        DecorateHeader(*this, (*this)("Label0"));
    }
}

int VAR3::Index(const char* box) const {
    return static_cast<int>(Val((*this)(box).Caption));
}

char& VAR3::Element(int i, int j) {
    return pattern_[static_cast<std::size_t>(i - 1)][static_cast<std::size_t>(j - 1)];
}

void VAR3::ShowElement() {
    (*this)("aij").Caption = std::string(1, Element(Index("Index1"), Index("Index2")));
}

void VAR3::ShowRow(int i) {
    std::string row;
    for (const char element : pattern_[static_cast<std::size_t>(i - 1)]) {
        row += std::string(1, element) + " ";
    }
    (*this)("List2").Items[static_cast<std::size_t>(i - 1)] = row;
}

void VAR3::WritePattern() {
    TextOutput out(module.DataFile("VARZERO.TMP"), TextOutput::Mode::Output);
    for (const std::string& row : pattern_) {
        for (const char element : row) {
            out.PrintLine(std::string(1, element));
        }
    }
    out.Close();
}

void VAR3::Click(Control& control) {
    const std::string& name = control.Name;
    const int k = static_cast<int>(pattern_.size());
    auto move = [&](const char* box, int step) {
        const int index = Index(box) + step;
        if (index >= 1 && index <= k) {
            (*this)(box).Caption = Trim(NumberToText(index));
        }
        ShowElement();
    };
    if (name == "RowUp") {
        move("Index1", 1);
    } else if (name == "RowDown") {
        move("Index1", -1);
    } else if (name == "ColumnUp") {
        move("Index2", 1);
    } else if (name == "ColumnDown") {
        move("Index2", -1);
    } else if (name == "Command3") {
        char& element = Element(Index("Index1"), Index("Index2"));
        element = element == '1' ? '0' : '1';
        ShowRow(Index("Index1"));
        ShowElement();
        WritePattern();
    } else if (name == "Command1") {
        std::string text = (*this)("Label3").Caption + " (1 = nonzero)\r\n";
        for (const std::string& row : (*this)("List2").Items) {
            text += row + "\r\n";
        }
        module.ModelText += "\r\n" + text;
        module.GoToScreen("VARSUR");
    } else if (name == "Command2") {
        module.StartAgain();
    }
}

} // namespace lorvane
