#include "checks/VARCHECK.h"

#include <algorithm>
#include <cmath>

#include "checks/CheckModel.h"
#include "checks/ModelChecks.h"
#include "checks/RootsPlot.h"
#include "frame/Decoration.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/OutputLog.h"
#include "frame/TextToNumber.h"
#include "frame/WorkFileModel.h"
#include "innovation/PictureSaving.h"
#include "innovation/PlotDrawing.h"

namespace lorvane {

namespace {

constexpr const char* Heading = " Model checks";
constexpr int DefaultLags = 12;
constexpr int DefaultOrder = 4;

} // namespace

VARCHECK::VARCHECK(Module& module) : Screen(module, "VARCHECK", " Model checks") {
    Add(ControlKind::Label, "Label0", Heading, 0, 0, 9600, 360);
    Control& report = Add(ControlKind::TextBox, "Text1", "", 240, 480, 5400, 5040);
    report.MultiLine = true;
    report.Locked = true;
    Add(ControlKind::Picture, "Picture1", "", 5760, 480, 3600, 3600);
    Add(ControlKind::Label, "Label1", "Largest lag h of the portmanteau tests:", 240, 5700, 3600,
        300);
    Add(ControlKind::TextBox, "Lags", "", 3900, 5640, 720, 360);
    Add(ControlKind::Label, "Label2", "Order q of the LM and ARCH tests:", 240, 6180, 3600, 300);
    Add(ControlKind::TextBox, "Order", "", 3900, 6120, 720, 360);
    Add(ControlKind::Button, "Compute", "Compute", 6360, 6120, 1440, 420);
    Add(ControlKind::Button, "Continue", "Continue", 7920, 6120, 1440, 420);
}

void VARCHECK::Load() {
    FontOfNotepadText((*this)("Text1"));
    const int p = module.p;
    T_ = EstimationObservations(module);
    // The portmanteau tests need h above p; a long lag order takes a longer horizon.
    (*this)("Lags").Caption = Trim(NumberToText(std::max(DefaultLags, 2 * p)));
    (*this)("Order").Caption = Trim(NumberToText(DefaultOrder));
    (*this)("Text1").Caption = "Set h and q and click 'Compute'";
    Control& picture = (*this)("Picture1");
    picture.Drawing = MakeDrawing(module, picture);
    SetDefault("Compute");
}

void VARCHECK::Activate() {
    if (module.ActivateCount == 1) {
        DecorateHeader(*this, (*this)("Label0"));
    }
}

void VARCHECK::Click(Control& control) {
    if (control.Name == "Compute") {
        Compute();
    } else if (control.Name == "Continue") {
        module.GoToScreen("VWaldT2");
    }
}

std::optional<int> VARCHECK::WholeIn(const char* box, int lowest, int highest) {
    const std::optional<double> value = ParseNumberText(Trim((*this)(box).Caption));
    if (!value || *value != std::floor(*value) || *value < lowest || *value > highest) {
        return std::nullopt;
    }
    return static_cast<int>(*value);
}

void VARCHECK::Compute() {
    const int k = module.store().SelectedCount();
    const int p = module.p;
    const CheckModel model = ReadCheckModel(module, k, p, T_);
    const std::optional<int> h = WholeIn("Lags", p + 1, T_ - 1);
    if (!h) {
        (*this)("Label0").Caption = " The largest lag h must be a whole number from " +
                                    Trim(NumberToText(p + 1)) + " to " + Trim(NumberToText(T_ - 1));
        return;
    }
    const int largestOrder = LargestTestOrder(T_, static_cast<int>(model.X.cols()), k);
    const std::optional<int> q = WholeIn("Order", 1, largestOrder);
    if (!q) {
        (*this)("Label0").Caption = largestOrder < 1
                                        ? std::string(" The sample is too short for the LM tests")
                                        : " The order q must be a whole number from 1 to " +
                                              Trim(NumberToText(largestOrder));
        return;
    }

    const ModelChecks checks = RunModelChecks(model, *h, *q);
    const std::string report =
        "Model checks (residuals of the last estimate, T =" + NumberToText(T_) + "):\r\n\r\n" +
        ModelChecksReport(checks);
    (*this)("Text1").Caption = report;
    AppendToLog(module, "");
    AppendToLog(module, report);

    Control& picture = (*this)("Picture1");
    DrawRootsPlot(*picture.Drawing, checks.Roots);
    (*this)("Label0").Caption =
        " Model checks; roots plotted in " + SavePicture(module, *picture.Drawing);
}

} // namespace lorvane
