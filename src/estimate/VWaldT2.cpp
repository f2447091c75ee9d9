#include "estimate/VWaldT2.h"

#include "estimate/RouteFile.h"
#include "estimate/WaldTest.h"
#include "frame/Decoration.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/OutputLog.h"
#include "frame/Results.h"

namespace lorvane {

namespace {

void AppendLines(Module& module, Control& box, const std::vector<std::string>& lines) {
    for (const std::string& line : lines) {
        AppendToResults(module, box, line + "\r\n");
    }
}

bool Marked(const std::string& row) {
    return row.ends_with(SelectionMark);
}

} // namespace

VWaldT2::VWaldT2(Module& module) : Screen(module, "VWaldT2", "Tests of joint significance") {
    Add(ControlKind::Label, "Label0", "", 0, 0, 9600, 360);
    Add(ControlKind::Label, "Label1",
        "Double click parameters to be tested for joint significance. Selected parameters are "
        "indicated by (*):",
        240, 480, 9120, 300);
    Add(ControlKind::ListBox, "List1", "", 240, 780, 9120, 2760);
    Add(ControlKind::Label, "Label2", "Dependent variables:", 240, 3660, 9120, 300);
    Control& results = Add(ControlKind::TextBox, "Text1", "", 240, 3960, 9120, 2040);
    results.MultiLine = true;
    results.Locked = true;
    Add(ControlKind::Button, "Command1", "Test joint significance", 1560, 6120, 2520, 420);
    Add(ControlKind::Button, "Command3", "Again", 4200, 6120, 1440, 420);
    Add(ControlKind::Button, "Command5", "Respecify the model", 5760, 6120, 2040, 420);
    Add(ControlKind::Button, "Command2", "Continue", 7920, 6120, 1440, 420);
}

void VWaldT2::Load() {
    FontOfNotepadText((*this)("List1"));
    FontOfNotepadText((*this)("Text1"));
    const bool maximumLikelihood = ReadRoute(module) == RouteMaximumLikelihood;
    (*this)("Label0").Caption =
        std::string(" Tests of joint significance") +
        (maximumLikelihood ? " (Nonstructural VAR model estimated by FIML)"
                           : " (Nonstructural VAR model estimated by OLS or SUR)");
    const DataStore& store = module.store();
    std::string variables;
    for (int i = 1; i <= store.SelectedCount(); ++i) {
        variables += "y(" + Trim(NumberToText(i)) + ") = " + Trim(store.SelectedName(i)) + "\r\n";
    }
    AppendToResults(module, (*this)("Text1"), variables);
    Control& list = (*this)("List1");
    for (const std::string& row : ReadParameterFile(module.DataFile("WALDT.TMP")).rows) {
        list.AddItem(row);
    }
}

void VWaldT2::Activate() {
    if (module.ActivateCount == 1) {
        DecorateHeader(*this, (*this)("Label0"));
    }
}

void VWaldT2::DoubleClick(Control& control, int item) {
    if (control.Name != "List1" || item < 0 || item >= control.ListCount()) {
        return;
    }
    std::string& row = control.Items[static_cast<std::size_t>(item)];
    if (Marked(row)) {
        row = TrimRight(row.substr(0, row.size() - SelectionMark.size()));
    } else {
        row += SelectionMark;
    }
}

void VWaldT2::Test() {
    Control& results = (*this)("Text1");
    const std::vector<std::string>& rows = (*this)("List1").Items;
    std::vector<int> selected;
    for (std::size_t q = 0; q < rows.size(); ++q) {
        if (Marked(rows[q])) {
            selected.push_back(static_cast<int>(q) + 1);
        }
    }
    if (selected.empty()) {
        AppendLines(module, results, {"Test results:", "No parameters to test!"});
        return;
    }
    if (selected.size() == 1) {
        AppendLines(module, results,
                    {"Testing the significance of one parameter can be done by the t-test!"});
        return;
    }
    std::vector<std::string> lines = {
        "Test results:", "Test of the null hypothesis that the parameters indicated by (*) are ",
        "jointly zero: "};
    for (const int q : selected) {
        lines.push_back(rows[static_cast<std::size_t>(q - 1)]);
    }
    const ParameterFile parameters = ReadParameterFile(module.DataFile("WALDT.TMP"));
    for (std::size_t v = 0; v < parameters.variances.size(); ++v) {
        if (v > 0) {
            lines.push_back(
                "Test result on the basis of the heteroskedasticity consistent variance");
            lines.push_back("matrix:");
        }
        for (std::string& line :
             WaldTestLines(parameters.T, parameters.values, parameters.variances[v], selected)) {
            lines.push_back(std::move(line));
        }
    }
    AppendLines(module, results, lines);
}

void VWaldT2::Click(Control& control) {
    const std::string& name = control.Name;
    if (name == "Command1") {
        Test();
    } else if (name == "Command2") {
        module.GoToScreen("VARSTR1");
    } else if (name == "Command3") {
        module.GoToScreen("VWaldT2");
    } else if (name == "Command5") {
        OpenLogSession(module, module.platform().clock);
        AppendToLog(module, "Model will be respecified!");
        module.StartAgain();
    }
}

} // namespace lorvane
