#include "structural/VBernanke1.h"

#include "frame/Decoration.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/TextFile.h"
#include "structural/StructuralModel.h"

namespace lorvane {

VBernanke1::VBernanke1(Module& module)
    : Screen(module, "VBernanke1", "Specification of the Bernanke-Sims structural model") {
    Add(ControlKind::Label, "Label0", " Specification of the Bernanke-Sims structural model", 0, 0,
        9600, 360);
    Add(ControlKind::Label, "Label1", "Left hand side variable in the structural model:", 240, 600,
        4560, 300);
    Add(ControlKind::Label, "Label4", "", 240, 960, 4560, 300).Bold = true;
    Add(ControlKind::Label, "Label2", "Right hand side variables in the structural model:", 240,
        1440, 4560, 300);
    Add(ControlKind::ListBox, "List2", "", 240, 1740, 4560, 4080);
    Control& help = Add(ControlKind::Label, "Label3",
                        "Double click to choose right hand side variables. Chosen variables are "
                        "indicated by '*'*.",
                        5040, 1740, 4320, 900);
    help.WordWrap = true;
    Add(ControlKind::TextBox, "Text1", "", 0, 0, 0, 0);
    Add(ControlKind::ListBox, "List3", "", 0, 0, 0, 0);
    Add(ControlKind::Button, "Command3", "Redo specification", 5760, 6120, 2040, 420);
    Add(ControlKind::Button, "Command1", "Equation OK", 7920, 6120, 1440, 420);
}

void VBernanke1::Load() {
    (*this)("Text1").Visible = false;
    (*this)("List3").Visible = false;
    ShowEquation(1);
    SetFocus("Command1");
}

void VBernanke1::Activate() {
    module.Caption = " Specification of the Bernanke-Sims structural model";
    if (module.ActivateCount == 1) {
        DecorateHeader(*this, (*this)("Label0"));
    }
}

void VBernanke1::Click(Control& control) {
    if (control.Name == "Command1") {
        EquationOK();
    } else if (control.Name == "Command3") {
        module.GoToScreen("VARSTR1");
    }
}

void VBernanke1::DoubleClick(Control& control, int item) {
    if (control.Name != "List2" || item < 0 || item >= control.ListCount()) {
        return;
    }
    // A choice cannot be taken back here; only "Redo specification" undoes it.
    std::string& row = control.Items[static_cast<std::size_t>(item)];
    if (!row.starts_with("*")) {
        row = std::string(ChosenMark) + row;
    }
}

// Equation i: its left-hand side in Label4, the other variables in List2, unmarked.
void VBernanke1::ShowEquation(int i) {
    VarNames = ReadResidualNames(module, module.store().SelectedCount());
    (*this)("Text1").Caption = NumberToText(i);
    (*this)("Label4").Caption = VarNames.at(static_cast<std::size_t>(i - 1));
    Control& candidates = (*this)("List2");
    candidates.ClearItems();
    for (std::size_t j = 0; j < VarNames.size(); ++j) {
        if (static_cast<int>(j) + 1 != i) {
            candidates.AddItem(VarNames[j]);
        }
    }
}

void VBernanke1::EquationOK() {
    const Int16 i = CInt(Val((*this)("Text1").Caption));
    const std::vector<std::string>& rows = (*this)("List2").Items;
    const int m = static_cast<int>(rows.size());
    auto chosen = [&rows](int row) { return rows[static_cast<std::size_t>(row)].starts_with("*"); };
    if (i <= m + 1) {
        // The row in variable order: List2 skips the left-hand side, so its positions shift by
        // one behind it.
        std::vector<int> r(static_cast<std::size_t>(m + 1) + 1, 0);
        r[static_cast<std::size_t>(i)] = 1;
        for (int j = 1; j <= i - 1; ++j) {
            if (chosen(j - 1)) {
                r[static_cast<std::size_t>(j)] = -1;
            }
        }
        for (int j = i + 1; j <= m + 1; ++j) {
            if (chosen(j - 2)) {
                r[static_cast<std::size_t>(j)] = -1;
            }
        }
        for (int j = 1; j <= m + 1; ++j) {
            (*this)("List3").AddItem(NumberToText(r[static_cast<std::size_t>(j)]));
        }
    }
    const int next = i + 1;
    (*this)("Text1").Caption = NumberToText(next);
    if (next > m + 1) {
        (*this)("Command1").Enabled = false;
        WritePattern();
        module.GoToScreen("VBernanke2");
        return;
    }
    ShowEquation(next);
    HoldClicks();
}

void VBernanke1::WritePattern() {
    TextOutput out(module.DataFile("SVARA.TMP"), TextOutput::Mode::Output);
    for (const std::string& entry : (*this)("List3").Items) {
        out.WriteRecord(CommaRecord().Whole(CInt(Val(entry))));
    }
    out.Close();
}

} // namespace lorvane
