#include "specify/VAR2.h"

#include <array>

#include "dialogs/LaunchPage.h"
#include "frame/Decoration.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/TextFile.h"
#include "specify/Deterministic.h"
#include "specify/InformationCriteria.h"

namespace lorvane {

namespace {

// Decision: the criteria stand in fields of 14 characters, so that a negative value is still
// parted from its neighbour by a blank.
constexpr std::size_t ColumnWidth = 14;

void Print(Control& text, const std::string& line) {
    text.Caption += line + "\r\n";
}

} // namespace

VAR2::VAR2(Module& module) : Screen(module, "VAR2", "Order of the VAR") {
    Add(ControlKind::Label, "Label0", " The order p of the VAR", 0, 0, 9600, 360);
    Add(ControlKind::Frame, "Frame1", "The (upperbound of the) order p of the VAR(p)", 240, 480,
        9120, 1560);
    AddIn("Frame1", ControlKind::Label, "Label1", "p =", 480, 840, 480, 300);
    AddIn("Frame1", ControlKind::TextBox, "pvalue", "", 960, 780, 720, 360).Locked = true;
    AddIn("Frame1", ControlKind::Button, "Command1", "p down", 1920, 780, 1200, 420);
    AddIn("Frame1", ControlKind::Button, "Command2", "p up", 3240, 780, 1200, 420);
    AddIn("Frame1", ControlKind::Button, "Command5", "p OK", 4560, 780, 1200, 420);
    AddIn("Frame1", ControlKind::CheckBox, "Check1", "", 480, 1380, 8640, 360);
    Add(ControlKind::Label, "Label2",
        "The Akaike, Hannan-Quinn, and Schwarz information criteria will enable you to determine "
        "the order of the "
        "VAR. If you do not check this option, the specified upperbound of p will be chosen as the "
        "order of the VAR. "
        "This option is only avaliable if p > 1.",
        240, 2160, 9120, 720);
    Control& results = Add(ControlKind::TextBox, "Text1", "", 240, 3000, 9120, 2880);
    results.MultiLine = true;
    results.Locked = true;
    Add(ControlKind::ListBox, "List1", "", 0, 0, 0, 0).Visible = false;
    Add(ControlKind::Button, "Command6", "Help!", 240, 6120, 1440, 420);
    Add(ControlKind::Button, "Command4", "Continue", 6360, 6120, 1440, 420).Enabled = false;
    Add(ControlKind::Button, "Command3", "Cancel", 7920, 6120, 1440, 420);
}

void VAR2::Load() {
    FontOfNotepadText((*this)("Text1"));
    ShowP();
    SetFocus("Command5");
}

void VAR2::Activate() {
    if (module.ActivateCount == 1) {
        DecorateHeader(*this, (*this)("Label0"));
    }
}

void VAR2::ShowP() {
    const int p = module.p;
    (*this)("pvalue").Caption = Trim(NumberToText(p));
    std::string caption = "Compute the Akaike, Hannan-Quinn, and Schwarz information criteria";
    if (p == 2) {
        caption += " for p = 1,2";
    } else if (p > 2) {
        caption += " for p = 1,..," + Trim(NumberToText(p));
    }
    (*this)("Check1").Caption = caption;
}

void VAR2::WarnAboutData() {
    const int regressors = module.p * module.store().SelectedCount() +
                           static_cast<int>(DeterministicNames(module).size());
    const int observations = module.SampleLast - module.SampleFirst + 1;
    if (regressors >= 2.0 * observations / 3.0) {
        module.boxes().MessageBoxShort(
            "There may not be enough data available for this model. If you choose this p "
            "or larger, Lorvane may crash!",
            0, "WARNING!");
    }
}

void VAR2::PrintCriteria() {
    Control& text = (*this)("Text1");
    Control& best = (*this)("List1");
    Print(text, "Information criteria:");
    Print(text, "  p" + RightAligned("Akaike", ColumnWidth) +
                    RightAligned("Hannan-Quinn", ColumnWidth) +
                    RightAligned("Schwarz", ColumnWidth));
    // The running best of each criterion: its value and its order, kept for a further press.
    // Decision: a best order above the present p is forgotten, so that the "p =" line names
    // orders among the rows printed.
    std::array<double, 3> bestValue{};
    std::array<int, 3> bestOrder{};
    for (std::size_t c = 0; c < best.Items.size() && c < 3; ++c) {
        const int order = static_cast<int>(Val(best.Items[c].substr(best.Items[c].find(' ') + 1)));
        if (order <= module.p) {
            bestValue[c] = Val(best.Items[c].substr(0, best.Items[c].find(' ')));
            bestOrder[c] = order;
        }
    }
    (*this)("Frame1").Visible = false;
    InformationCriteria criteria;
    for (int q = 1; q <= module.p; ++q) {
        ComputeCriteria(module, q, criteria);
        const std::array<double, 3> values = {criteria.Akaike, criteria.HannanQuinn,
                                              criteria.Schwarz};
        std::string row = RightAligned(Trim(NumberToText(q)), 3);
        for (std::size_t c = 0; c < 3; ++c) {
            row += RightAligned(FormatNumber(values[c], "0.00000E+00"), ColumnWidth);
            if (bestOrder[c] == 0 || values[c] < bestValue[c]) {
                bestValue[c] = values[c];
                bestOrder[c] = q;
            }
        }
        Print(text, row);
    }
    std::string chosen = "p =";
    best.ClearItems();
    for (std::size_t c = 0; c < 3; ++c) {
        chosen += RightAligned(Trim(NumberToText(bestOrder[c])), ColumnWidth);
        best.AddItem(ShortestText(bestValue[c]) + " " + std::to_string(bestOrder[c]));
    }
    Print(text, chosen);
    Print(text, "");
    (*this)("Frame1").Visible = true;
    (*this)("Check1").Value = 0;
}

void VAR2::ConfirmP() {
    Control& text = (*this)("Text1");
    Print(text, "Chosen VAR(p) order: p =" + NumberToText(module.p));
    if ((*this)("Check1").Value != 1) {
        Leave();
        return;
    }
    PrintCriteria();
    (*this)("Command4").Enabled = true;
    SetFocus("Command4");
}

void VAR2::Leave() {
    module.ResultText += (*this)("Text1").Caption + "\r\n";
    BuildDeterministic(module, module.p);
    module.GoToScreen("VAR3");
}

void VAR2::Click(Control& control) {
    const std::string& name = control.Name;
    if (name == "Command1" || name == "Command2") {
        if (name == "Command2") {
            module.p += 1;
        } else if (module.p > 1) {
            module.p -= 1;
        }
        ShowP();
        (*this)("Command4").Enabled = false;
        WarnAboutData();
    } else if (name == "Command5") {
        ConfirmP();
    } else if (name == "Command4") {
        Leave();
    } else if (name == "Command3") {
        module.StartAgain();
    } else if (name == "Command6") {
        LaunchPage(module, module.StartFile("INFCRIT.PDF").string());
    }
}

} // namespace lorvane
