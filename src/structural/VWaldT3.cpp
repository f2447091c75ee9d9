#include "structural/VWaldT3.h"

#include "estimate/RouteFile.h"
#include "estimate/WaldTest.h"
#include "frame/WorkFileModel.h"
#include "frame/Module.h"
#include "frame/RuntimeError.h"
#include "structural/StructuralModel.h"

namespace lorvane {

namespace {

// WALDTSV.TMP of the model in force: its T is the model's, and it holds one coefficient for each
// free place off the diagonal of SVARA.TMP.
ParameterFile ReadStructuralTests(const Module& module) {
    ParameterFile tests = ReadFirstParameterSet(module.DataFile("WALDTSV.TMP"), 0);
    ExpectModelObservations(module, tests.T);
    const Pattern Apat = ReadStructuralPattern(module, module.store().SelectedCount());
    if (static_cast<int>(tests.rows.size()) != StructuralCoefficientCount(Apat)) {
        Raise(InputPastEndOfFile);
    }
    return tests;
}

} // namespace

std::string ScreenAfterStructuralModel(Module& module) {
    if (ReadRoute(module) != RouteStructuralMaximumLikelihood) {
        return "VARIR2";
    }
    return ReadStructuralTests(module).rows.size() >= 2 ? "VWaldT3" : "VARIR2";
}

VWaldT3::VWaldT3(Module& module)
    : JointTestScreen(module, "VWaldT3",
                      {.instruction = "Double click to select parameters to be tested. Selected "
                                      "parameters are indicated by (*)",
                       .mark = MarkPlace::Start,
                       .reportHead = "Tests of joint significance",
                       .logged = true}) {
    (*this)("Label0").Caption = " Tests of joint significance of structural VAR parameters";
}

void VWaldT3::Load() {
    ReadRoute(module);
    const ParameterFile parameters = ReadParameters();
    if (parameters.rows.size() < 2) {
        module.GoToScreen("VARIR2");
        return;
    }
    ShowParameters(parameters.rows);
}

ParameterFile VWaldT3::ReadParameters() const {
    return ReadStructuralTests(module);
}

void VWaldT3::Click(Control& control) {
    const std::string& name = control.Name;
    if (name == "Command1") {
        TestMarked();
    } else if (name == "Command2") {
        module.GoToScreen("VARIR2");
    } else if (name == "Command3") {
        module.GoToScreen("VWaldT3");
    } else if (name == "Command5") {
        module.GoToScreen("VBernanke1");
    }
}

} // namespace lorvane
