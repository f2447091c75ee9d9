#include "estimate/VWaldT2.h"

#include "estimate/RouteFile.h"
#include "frame/WorkFileModel.h"
#include "frame/Module.h"
#include "frame/OutputLog.h"

namespace lorvane {

VWaldT2::VWaldT2(Module& module)
    : JointTestScreen(module, "VWaldT2",
                      {.instruction = "Double click parameters to be tested for joint "
                                      "significance. Selected parameters are indicated by (*):",
                       .mark = MarkPlace::End,
                       .reportHead = "",
                       // Decision: the log is the whole record, so every test goes there as
                       // the structural model's tests do.
                       .logged = true}) {
    Add(ControlKind::Button, "Checks", "Model checks", 6360, 6120, 1440, 420);
    Add(ControlKind::Button, "Forecast", "Forecast", 6360, 6600, 1440, 420);
}

void VWaldT2::Load() {
    const bool maximumLikelihood = ReadRoute(module) == RouteMaximumLikelihood;
    (*this)("Label0").Caption =
        std::string(" Tests of joint significance") +
        (maximumLikelihood ? " (Nonstructural VAR model estimated by FIML)"
                           : " (Nonstructural VAR model estimated by OLS or SUR)");
    ShowParameters(ReadParameters().rows);
}

ParameterFile VWaldT2::ReadParameters() const {
    ParameterFile parameters = ReadParameterFile(module.DataFile("WALDT.TMP"));
    ExpectModelObservations(module, parameters.T);
    return parameters;
}

void VWaldT2::Click(Control& control) {
    const std::string& name = control.Name;
    if (name == "Command1") {
        TestMarked();
    } else if (name == "Command2") {
        module.GoToScreen("VARSTR1");
    } else if (name == "Command3") {
        module.GoToScreen("VWaldT2");
    } else if (name == "Forecast") {
        module.GoToScreen("VARFCST");
    } else if (name == "Checks") {
        module.GoToScreen("VARCHECK");
    } else if (name == "Command5") {
        OpenLogSection(module);
        AppendToLog(module, "Model will be respecified!");
        module.StartAgain();
    }
}

} // namespace lorvane
