#include "estimate/VARSUR.h"

#include "estimate/EstimationReport.h"
#include "estimate/EstimationView.h"
#include "estimate/FimlVariance.h"
#include "estimate/LFiles.h"
#include "estimate/OlsEstimation.h"
#include "estimate/RegressionFiles.h"
#include "estimate/RouteFile.h"
#include "estimate/SurIteration.h"
#include "frame/Decoration.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/OutputLog.h"
#include "frame/RuntimeError.h"
#include "numeric/Matsubs.h"
#include "platform/EventPump.h"

namespace lorvane {

namespace {

constexpr const char* SingularSystem =
    "Attempt to invert a (near-)singular matrix. Respecify the VAR model.";

constexpr const char* GuidanceWithoutZeros =
    "In order to compute confidence bands around the innovation responses, you need to compute the "
    "variance "
    "matrix of the nonzero elements of the matrix L by conducting full information maximum "
    "likelihood (FIML). "
    "Click the 'FIML estimation' button now.";

constexpr const char* GuidanceWithZeros = "By repeating the SUR estimation procedure until the "
                                          "lower triangular matrix L converges you will reach the "
                                          "full information maximum likelihood (FIML) solution. "
                                          "The latter is needed in order to compute confidence "
                                          "bands around the innovation responses. Click the 'FIML "
                                          "estimation'  button  when the maximum likelihood "
                                          "solution has been reached.";

constexpr const char* GuidanceAfterFIML =
    "The variance matrix of the nonzero elements of L is computed, so the innovation responses "
    "will have confidence bands. Click 'Continue' to write the results to the output file and "
    "go on.";

constexpr const char* GuidanceWithoutFIML =
    "Without the variance matrix of the nonzero elements of L the innovation responses will have "
    "no confidence bands. Click 'Continue' to write the results to the output file and go on.";

constexpr const char* GuidanceToRespecify = "Click 'Respecify VAR' to change the model.";

} // namespace

VARSUR::VARSUR(Module& module) : Screen(module, "VARSUR", "Estimation of the VAR model") {
    Add(ControlKind::Label, "Label0", "", 0, 0, 9600, 360);
    Add(ControlKind::Label, "Label1", "VAR model:", 240, 480, 3120, 300);
    Control& model = Add(ControlKind::TextBox, "Text7", "", 240, 780, 3120, 2640);
    model.MultiLine = true;
    model.Locked = true;
    Add(ControlKind::Label, "Label2", "", 240, 3540, 3120, 2400);
    Control& results = Add(ControlKind::TextBox, "Text1", "", 3480, 480, 5880, 5460);
    results.MultiLine = true;
    results.Locked = true;
    for (const char* hidden : {"Text2", "Text3", "Text4", "Text5", "Text6"}) {
        Add(ControlKind::TextBox, hidden, "", 0, 0, 0, 0).Visible = false;
    }
    Add(ControlKind::Button, "Command3", "OLS estimation", 240, 6120, 1440, 420);
    Add(ControlKind::Button, "Command4", "SUR estimation", 1800, 6120, 1440, 420);
    Add(ControlKind::Button, "Command5", "FIML estimation", 3360, 6120, 1440, 420);
    Add(ControlKind::Button, "Command1", "Continue", 6360, 6120, 1440, 420);
    Add(ControlKind::Button, "Command2", "Respecify VAR", 7920, 6120, 1440, 420);
}

void VARSUR::Load() {
    FontOfNotepadText((*this)("Text1"));
    FontOfNotepadText((*this)("Text7"));
    for (const char* button : {"Command1", "Command2", "Command3", "Command4", "Command5"}) {
        (*this)(button).Enabled = false;
    }
    (*this)("Label0").Caption = " Wait for reading data files";
    module.platform().events.yield();
    Int16 k;
    Int16 K;
    Int16 zeros;
    double T = 0;
    BuildRegressionFiles(module, k, K, zeros, T);
    (*this)("Text2").Caption = NumberToText(k);
    (*this)("Text3").Caption = NumberToText(K);
    (*this)("Text4").Caption = NumberToText(zeros);
    (*this)("Text5").Caption = NumberToText(T);
    (*this)("Text6").Caption = "0";
    (*this)("Text7").Caption = module.ModelText;
    (*this)("Label0").Caption = " Click OLS button";
    (*this)("Command2").Enabled = true;
    (*this)("Command3").Enabled = true;
    SetFocus("Command3");
}

void VARSUR::Activate() {
    if (module.ActivateCount == 1) {
        DecorateHeader(*this, (*this)("Label0"));
    }
}

Int16 VARSUR::Equations() const {
    return CInt(Val((*this)("Text2").Caption));
}
Int16 VARSUR::Coefficients() const {
    return CInt(Val((*this)("Text3").Caption));
}
Int16 VARSUR::Zeros() const {
    return CInt(Val((*this)("Text4").Caption));
}
double VARSUR::Observations() const {
    return Val((*this)("Text5").Caption);
}

EstimationView VARSUR::View() {
    return EstimationView(module, (*this)("Label0"), (*this)("Text1"));
}

void VARSUR::ReactToSingularity() {
    (*this)("Label0").Caption = std::string(" ") + SingularSystem;
    View().AppendLine(SingularSystem);
}

bool VARSUR::ReportableEstimates(const RegressionLayout& layout, double T,
                                 const Estimates& estimates) {
    // Decision: a sample too short for the model, or a variance that rounding has left without
    // a positive diagonal, ends in words of the screen and leaves the user here to respecify,
    // rather than in a run-time error of the report's square roots and divisions.
    int q = 0;
    for (int i = 1; i <= layout.k; ++i) {
        if (T <= layout.Count(i)) {
            const std::string text = "Too few observations: equation" + NumberToText(i) + " has" +
                                     NumberToText(layout.Count(i)) +
                                     " coefficients and T =" + NumberToText(T) +
                                     ". Respecify the VAR model.";
            (*this)("Label0").Caption = " " + text;
            View().AppendLine(text);
            return false;
        }
        for (int c = 1; c <= layout.Count(i); ++c) {
            ++q;
            if (!(estimates.V(q, q) > 0)) {
                View().AppendLine("Nonpositive define variance matrix in procedure OLS (Equation" +
                                  NumberToText(i) + ")");
                ReactToSingularity();
                return false;
            }
        }
    }
    return true;
}

bool VARSUR::DecomposeSigma(const Matrix& Sigma, Matrix& L, Int16 k) {
    Int16 flag = 0;
    try {
        LLDecomposition(Sigma, L, k, flag, module.boxes(), module.ModuleCaption);
    } catch (const RuntimeError& error) {
        // Decision: a negative pivot, an error variance that rounding has left indefinite in a
        // short sample, fails as a zero pivot does instead of ending the module.
        if (error.Number() != InvalidProcedureCall) {
            throw;
        }
        flag = 1;
    }
    return flag == 0;
}

void VARSUR::ForgetVarianceOfL() {
    // Decision: every OLS and SUR round writes WALDT.TMP anew without the elements of L, so the
    // variance of L of an earlier FIML, and the route word that says so, go with it.
    (*this)("Text6").Caption = "0";
    WriteRoute(module, RouteOlsSur);
}

void VARSUR::Click(Control& control) {
    const std::string& name = control.Name;
    if (name == "Command3") {
        RunOLS();
    } else if (name == "Command4") {
        RunSUR();
    } else if (name == "Command5") {
        RunFIML();
    } else if (name == "Command1") {
        Continue();
    } else if (name == "Command2") {
        if (module.ConfirmDiscard()) {
            module.StartAgain();
        }
    }
}

void VARSUR::RunOLS() {
    (*this)("Command3").Enabled = false;
    const Int16 k = Equations();
    const Int16 K = Coefficients();
    const Int16 zeros = Zeros();
    const double T = Observations();
    (*this)("Label0").Caption = " Wait for OLS estimation";
    EstimationView view = View();
    Estimates estimates;
    if (EstimateOLS(view, K, T, estimates) == 1) {
        ReactToSingularity();
        OfferRespecification();
        return;
    }
    const RegressionLayout layout = RegressionReader(module, k, K).Layout();
    if (!ReportableEstimates(layout, T, estimates)) {
        OfferRespecification();
        return;
    }
    (*this)("Label0").Caption = " OLS estimation results";
    ReportEstimates(view, layout, T, estimates, 1, round_);
    estimated_ = true;
    ForgetVarianceOfL();
    Matrix L;
    if (!DecomposeSigma(estimates.Sigma, L, k)) {
        ReactToSingularity();
        OfferRespecification();
        return;
    }
    WriteLFiles(view, L, k);
    if (zeros == 0) {
        view.AppendLine("Since no restrictions have been imposed on the VAR parameters,");
        view.AppendLine("the OLS results are also maximum likelihood results.");
        view.AppendLine("");
        (*this)("Command5").Enabled = true;
        (*this)("Label2").Caption = GuidanceWithoutZeros;
        SetFocus("Command5");
    } else {
        (*this)("Label2").Caption = GuidanceWithZeros;
        view.AppendLine("Since Granger causality restrictions have been imposed on the VAR");
        view.AppendLine("parameters, the OLS estimators are not efficient. It is recommended");
        view.AppendLine("that you conduct SUR estimation.");
        (*this)("Command1").Enabled = false;
        (*this)("Command4").Enabled = true;
        SetFocus("Command4");
    }
}

void VARSUR::OfferRespecification() {
    // Nothing on the screen can be carried on, so going back loses nothing.
    estimated_ = false;
    (*this)("Command1").Enabled = false;
    (*this)("Label2").Caption = GuidanceToRespecify;
    SetFocus("Command2");
}

void VARSUR::EndIncompleteSUR() {
    (*this)("Command4").Enabled = false;
    (*this)("Command5").Enabled = true;
    (*this)("Label0").Caption = " Incomplete SUR estimation results:";
    (*this)("Label2").Visible = true;
    SetFocus("Command5");
}

void VARSUR::RunSUR() {
    (*this)("Command4").Enabled = false;
    const Int16 k = Equations();
    const Int16 K = Coefficients();
    const double T = Observations();
    (*this)("Label0").Caption = " Wait for SUR estimation";
    EstimationView view = View();
    const Matrix previous = ReadLFile(module);
    Estimates estimates;
    if (EstimateSUR(view, previous, T, K, Int16(round_ + 1), estimates) == 1) {
        view.AppendLine("SUR estimation is not possible, due to singularity. ");
        view.AppendLine("OLS results will be used.");
        view.AppendLine("");
        EndIncompleteSUR();
        return;
    }
    Matrix L;
    if (!DecomposeSigma(estimates.Sigma, L, k)) {
        view.AppendLine("Error variance is near-singular. OLS results will be used.");
        EndIncompleteSUR();
        return;
    }
    ReportEstimates(view, RegressionReader(module, k, K).Layout(), T, estimates, 0, round_);
    ForgetVarianceOfL();
    WriteLFiles(view, L, k);
    view.Append("\r\nMaximum absolute difference of the elements of the matrix L with\r\n"
                "the corresponding elements of the previous matrix L: " +
                Trim(FormatNumber(LargestDifference(L, previous), "00.00000E+000")) + "\r\n\r\n");
    (*this)("Label0").Caption = " SUR estimation results:";
    (*this)("Label2").Caption = GuidanceWithZeros;
    (*this)("Label2").Visible = true;
    (*this)("Command5").Enabled = true;
    (*this)("Command4").Enabled = true;
    // The guidance asks for SUR rounds until L converges: Enter runs the next one, and FIML is a
    // Tab away.
    SetFocus("Command4");
}

void VARSUR::EndFailedFIML(const std::string& message) {
    View().AppendLine(message);
    (*this)("Label0").Caption = " Full information maximum likelihood failed";
    (*this)("Text6").Caption = "0";
    WriteRoute(module, RouteOlsSur);
    (*this)("Command5").Enabled = false;
    (*this)("Command1").Enabled = true;
    (*this)("Label2").Caption = GuidanceWithoutFIML;
    SetFocus("Command1");
}

void VARSUR::RunFIML() {
    (*this)("Label0").Caption = " Computing the variance matrix of the nonzero elements of L";
    EstimationView view = View();
    view.Begin();
    view.Working();
    const double T = Observations();
    const Matrix L = ReadLFile(module);
    const Matrix u = ReadResiduals(module, static_cast<int>(T), module.store().SelectedCount());
    Matrix VL;
    switch (ComputeVarianceOfL(view, L, u, T, VL)) {
    case VarianceOfL::LSingular:
        EndFailedFIML("L matrix is singular. The last results will be used.");
        return;
    case VarianceOfL::ScoresSingular:
        EndFailedFIML("Variance matrix of the nonzero elements of L is singular. The last results "
                      "will be used.");
        return;
    case VarianceOfL::Done:
        break;
    }
    view.Append(LReportText(L, VL, T));
    view.Working();
    ExtendWaldFile(view, L, VL, T);
    (*this)("Command5").Enabled = false;
    (*this)("Command1").Enabled = true;
    (*this)("Text6").Caption = "1";
    (*this)("Label0").Caption = " Full information maximum likelihood (FIML) results:";
    (*this)("Label2").Caption = GuidanceAfterFIML;
    WriteRoute(module, RouteMaximumLikelihood);
    SetFocus("Command1");
}

std::string VARSUR::UnloggedWork() const {
    return estimated_ ? "The estimation results" : "";
}

void VARSUR::Continue() {
    const bool maximumLikelihood = Val((*this)("Text6").Caption) != 0;
    WriteRoute(module, maximumLikelihood ? RouteMaximumLikelihood : RouteOlsSur);
    // Decision: a log section opens when the estimation is accepted: the session header, the
    // description of the data and the model that the screens before collected, then the
    // estimation. The sections that follow open with a header of their own.
    OpenLogSection(module);
    AppendToLog(module, maximumLikelihood ? "FIML estimation of a nonstructural VAR model:"
                                          : "OLS-SUR estimation of a nonstructural VAR model:");
    AppendToLog(module, module.ModelText);
    AppendToLog(module, (*this)("Text1").Caption);
    module.GoToScreen("VWaldT2");
}

} // namespace lorvane
