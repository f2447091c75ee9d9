#include "estimate/JointTestScreen.h"

#include "frame/Decoration.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/OutputLog.h"
#include "frame/Results.h"

namespace lorvane {

JointTestScreen::JointTestScreen(Module& module, std::string name, Form form)
    : Screen(module, std::move(name), "Tests of joint significance"), form_(std::move(form)) {
    Add(ControlKind::Label, "Label0", "", 0, 0, 9600, 360);
    Add(ControlKind::Label, "Label1", form_.instruction, 240, 480, 9120, 300);
    Add(ControlKind::ListBox, "List1", "", 240, 780, 9120, 2760);
    Add(ControlKind::Label, "Label2", "Dependent variables:", 240, 3660, 9120, 300);
    Control& results = Add(ControlKind::TextBox, "Text1", "", 240, 3960, 9120, 2040);
    results.MultiLine = true;
    results.Locked = true;
    // "Respecify the model" stands at the left end, away from the "Continue" of the screen before,
    // so that a double click there cannot throw the estimates away.
    Add(ControlKind::Button, "Command5", "Respecify the model", 240, 6120, 2040, 420);
    Add(ControlKind::Button, "Command1", "Test joint significance", 2400, 6120, 2520, 420);
    Add(ControlKind::Button, "Command3", "Again", 5040, 6120, 1200, 420);
    Add(ControlKind::Button, "Command2", "Continue", 7920, 6120, 1440, 420);
}

void JointTestScreen::ShowParameters(const std::vector<std::string>& rows) {
    FontOfNotepadText((*this)("List1"));
    FontOfNotepadText((*this)("Text1"));
    const DataStore& store = module.store();
    std::string variables;
    for (int i = 1; i <= store.SelectedCount(); ++i) {
        variables += "y(" + Trim(NumberToText(i)) + ") = " + Trim(store.SelectedName(i)) + "\r\n";
    }
    AppendToResults(module, (*this)("Text1"), variables);
    Control& list = (*this)("List1");
    for (const std::string& row : rows) {
        list.AddItem(row);
    }
}

void JointTestScreen::Activate() {
    if (module.ActivateCount == 1) {
        DecorateHeader(*this, (*this)("Label0"));
        SetFocus("Command2");
    }
}

bool JointTestScreen::Marked(const std::string& row) const {
    return form_.mark == MarkPlace::End ? row.ends_with(SelectionMark)
                                        : row.starts_with(SelectionMark);
}

void JointTestScreen::DoubleClick(Control& control, int item) {
    if (control.Name != "List1" || item < 0 || item >= control.ListCount()) {
        return;
    }
    std::string& row = control.Items[static_cast<std::size_t>(item)];
    const bool marked = Marked(row);
    if (form_.mark == MarkPlace::End) {
        row = marked ? TrimRight(row.substr(0, row.size() - SelectionMark.size()))
                     : row + std::string(SelectionMark);
    } else {
        row = marked ? row.substr(SelectionMark.size()) : std::string(SelectionMark) + row;
    }
    SetFocus("Command1");
}

void JointTestScreen::TestMarked() {
    const std::vector<std::string>& rows = (*this)("List1").Items;
    std::vector<int> selected;
    for (std::size_t q = 0; q < rows.size(); ++q) {
        if (Marked(rows[q])) {
            selected.push_back(static_cast<int>(q) + 1);
        }
    }
    std::vector<std::string> lines;
    if (selected.empty()) {
        lines = {"Test results:", "No parameters to test!"};
    } else if (selected.size() == 1) {
        lines = {"Testing the significance of one parameter can be done by the t-test!"};
    } else {
        if (!form_.reportHead.empty()) {
            lines.push_back(form_.reportHead);
        }
        lines.insert(lines.end(),
                     {"Test results:",
                      "Test of the null hypothesis that the parameters indicated by (*) are ",
                      "jointly zero: "});
        for (const int q : selected) {
            lines.push_back(rows[static_cast<std::size_t>(q - 1)]);
        }
        const ParameterFile parameters = ReadParameters();
        for (std::size_t v = 0; v < parameters.variances.size(); ++v) {
            if (v > 0) {
                lines.push_back(
                    "Test result on the basis of the heteroskedasticity consistent variance");
                lines.push_back("matrix:");
            }
            for (std::string& line : WaldTestLines(parameters.T, parameters.values,
                                                   parameters.variances[v], selected)) {
                lines.push_back(std::move(line));
            }
        }
    }
    Control& results = (*this)("Text1");
    for (const std::string& line : lines) {
        AppendToResults(module, results, line + "\r\n");
    }
    if (form_.logged && selected.size() > 1) {
        for (const std::string& line : lines) {
            AppendToLog(module, line);
        }
    }
    SetFocus("Command2");
}

} // namespace lorvane
