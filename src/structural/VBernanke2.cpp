#include "structural/VBernanke2.h"

#include "dialogs/Boxes.h"
#include "estimate/EstimationView.h"
#include "estimate/LFiles.h"
#include "estimate/RouteFile.h"
#include "frame/Decoration.h"
#include "frame/WorkFileModel.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/OutputLog.h"
#include "frame/TextFile.h"
#include "numeric/MatrixProducts.h"
#include "numeric/Matsubs.h"
#include "numeric/Pattern.h"
#include "platform/EventPump.h"
#include "structural/FactorVariance.h"
#include "structural/IdentificationText.h"
#include "structural/MomentConditions.h"
#include "structural/StartValues.h"
#include "structural/StructuralFiles.h"
#include "structural/StructuralModel.h"
#include "structural/StructuralReport.h"
#include "structural/StructuralVariance.h"
#include "structural/SymbolicSolver.h"
#include "structural/VWaldT3.h"

#include <cmath>

namespace lorvane {

namespace {

constexpr const char* LineEnd = "\r\n";

constexpr const char* RespecifyStructural = " Respecify the structural model";

// Shows a growing text in a text box; beyond the box's limit its last lines.
void ShowText(Control& box, const std::string& text) {
    if (box.SetText(text)) {
        return;
    }
    std::size_t start = text.size() - Control::TextLimit;
    const std::size_t line = text.find(LineEnd, start);
    start = line == std::string::npos ? start : line + 2;
    box.SetText(text.substr(start));
}

Matrix SingleRounded(const Matrix& matrix) {
    Matrix rounded = matrix;
    for (int i = 1; i <= matrix.Rows(); ++i) {
        for (int j = 1; j <= matrix.Cols(); ++j) {
            rounded(i, j) = ToSingle(matrix(i, j));
        }
    }
    return rounded;
}

const char* const MethodText[] = {
    "There are two methods available to compute the standard errors of the ",
    "nonzero elements of the matrix B^-1:",
    "",
    "(1) Compute these standard errors on the basis of the limiting normal",
    "    distribution of the nonzero elements of the matrix L, ignoring",
    "    overidentifying restrictions. This method has been used to compute",
    "    the t-values of the nonzero elements of the structural model above.",
    "",
    "(2) Compute these standard errors on the basis of the limiting normal",
    "    distribution of the maximum likelihood estimators of the nonzero",
    "    elements of the matrix B. However, if the structural model is",
    "    overidentified you may get slightly different results if you",
    "    re-estimate the model with the same options. If so, this may be ",
    "    due to the build-up of the start simplex via random variation of ",
    "    the start values. ",
    ""};

} // namespace

VBernanke2::VBernanke2(Module& module)
    : Screen(module, "VBernanke2", "Identification of the structural model") {
    Add(ControlKind::Label, "Label0", "Label0", 0, 0, 9600, 360);
    Control& report = Add(ControlKind::TextBox, "Text1", "", 240, 480, 9120, 5460);
    report.MultiLine = true;
    report.Locked = true;
    Control& steps = Add(ControlKind::TextBox, "Text2", "Text2", 240, 480, 9120, 5460);
    steps.MultiLine = true;
    steps.Locked = true;
    steps.Visible = false;
    for (const char* list : {"List1", "List2", "List3", "List4"}) {
        Add(ControlKind::ListBox, list, "", 0, 0, 0, 0).Visible = false;
    }
    Add(ControlKind::Button, "Command3", "Hide how the system has been solved", 240, 6120, 3480,
        420);
    Add(ControlKind::Button, "Command2", "Respecify model", 4200, 6120, 2040, 420);
    Add(ControlKind::Button, "Command4", "Command4", 6360, 6120, 1440, 420).Visible = false;
    Add(ControlKind::Button, "Command1", "Continue", 7920, 6120, 1440, 420);
}

VBernanke2::~VBernanke2() = default;

void VBernanke2::Load() {
    FontOfNotepadText((*this)("Text1"));
    FontOfNotepadText((*this)("Text2"));
    (*this)("Command3").Visible = false;
    SetFocus("Text1");
}

void VBernanke2::Activate() {
    if (module.ActivateCount != 1) {
        return;
    }
    DecorateHeader(*this, (*this)("Label0"));
    Analyse();
}

Pattern VBernanke2::GetA(int flag, int k) {
    if (flag == 1) {
        keptA_ = ReadStructuralPattern(module, k);
    } else if (keptA_.Size() != k) {
        throw RuntimeError(InvalidProcedureCall, "Error in procedure GetA");
    }
    return keptA_;
}

void VBernanke2::SetTitle(const std::string& title) {
    module.Caption = title;
    (*this)("Label0").Caption = title;
}

void VBernanke2::Append(const std::string& text) {
    report_ += text;
    ShowText((*this)("Text1"), report_);
}

void VBernanke2::AppendStep(const std::string& text) {
    stepLog_ += text;
    ShowText((*this)("Text2"), stepLog_);
}

void VBernanke2::Pause() {
    module.platform().events.yield();
}

void VBernanke2::Fail(const std::string& title) {
    (*this)("Text2").Visible = false;
    (*this)("Text1").Visible = true;
    (*this)("Command2").Visible = true;
    (*this)("Command2").Enabled = true;
    (*this)("Command1").Visible = false;
    SetTitle(title);
    module.Pointer = MousePointer::Normal;
    SetFocus("Text1");
}

void VBernanke2::Analyse() {
    module.Pointer = MousePointer::Wait;
    (*this)("Command1").Enabled = false;
    (*this)("Command1").Visible = false;
    (*this)("Command2").Enabled = false;
    SetTitle(" Checking the identification of the structural model. Please wait ...");
    ReadRoute(module);
    Pause();
    if (!Identify() || !SolveVisibly()) {
        return;
    }
    AfterSolution();
}

bool VBernanke2::Identify() {
    L_ = ReadLFile(module, "BVARL.TMP", module.store().SelectedCount());
    const int k = L_.Rows();
    names_ = StructuralNames(module);
    Append(ModelHeadText(names_));
    const Pattern Apat = GetA(1, k);
    const Matrix VarU = OuterProduct(L_);
    Append(std::string("Variance matrix of u =") + LineEnd + LineEnd + MomentMatrixText(VarU) +
           LineEnd + "= LL', where L =" + LineEnd + LineEnd + MomentMatrixText(L_) + LineEnd);

    Matrix VarUInverse(k, k);
    double determinant = 0;
    Int16 flag;
    InvertMatrix(VarU, VarUInverse, determinant, k, flag);
    if (flag == 1) {
        Append(std::string("Variance matrix of u is near-singular!") + LineEnd);
        Fail(RespecifyStructural);
        return false;
    }

    TextMatrix Bname;
    Matrix Bnum;
    BuildPattern(Apat, parameterCount_, Bname, Bnum);
    Int16 ok;
    CheckPattern(Bnum, k, ok);
    Append(std::string("Matrix B of structural coefficients:") + LineEnd + LineEnd +
           BNameText(Bname));
    if (ok == 0) {
        Append(std::string(LineEnd) +
               "However, this specification does not link the non-structural " + LineEnd +
               "VAR errors uniquely to the innovations of the structural VAR, " + LineEnd +
               "and is therefore invalid. Respecify your structural model!" + LineEnd);
        Fail(RespecifyStructural);
        return false;
    }

    TextMatrix Moment;
    Int16 EquationCount;
    Int16 ZeroCount;
    BuildMomentMatrix(Moment, Bname, EquationCount, ZeroCount, k);
    Append(MomentConditionsText(Bname, Moment, VarUInverse));
    system_ = std::make_unique<StructuralSystem>(Apat);
    solverLhs_ = system_->Equations();
    std::vector<double> rhs;
    system_->RightHandSides(L_, rhs);
    solverRhs_.clear();
    for (const double value : rhs) {
        solverRhs_.push_back(Trim(NumberToText(value)));
    }
    Matrix rounded;
    system_->RoundedMoments(L_, rounded);
    Append(SystemLinesText(Moment, rounded, starCount_));
    if (starCount_ > 0) {
        Append(StarNoteText(starCount_));
        TestStarRestrictions(L_);
    }
    bool goOn = true;
    Append(CountVerdictText(k, parameterCount_, EquationCount, goOn));
    if (!goOn) {
        Fail(RespecifyStructural);
        return false;
    }
    return true;
}

void VBernanke2::TestStarRestrictions(const Matrix& L) {
    Matrix W;
    double T = 0;
    Int16 ok;
    ReadVarianceOfL(module, L.Rows(), W, T, ok);
    ExpectModelObservations(module, T);
    if (ok == 0) {
        // After OLS or SUR without FIML there is no variance of L to test with.
        Append(std::string("However, this test cannot be conducted without the FIML variance of "
                           "L.") +
               LineEnd);
        return;
    }
    const double statistic = TestMomentZeros(*system_, L, W, T, ok);
    if (ok == 0) {
        Append(std::string("However, this test cannot be conducted, due to singularity.") +
               LineEnd);
        return;
    }
    Append(StarTestText(statistic, starCount_));
}

bool VBernanke2::SolveVisibly() {
    Append(LineEnd);
    stepLog_.clear();
    std::string system = std::string("System of equations:") + LineEnd;
    for (std::size_t r = 0; r < solverLhs_.size(); ++r) {
        system += solverLhs_[r] + " = " + solverRhs_[r] + LineEnd;
    }
    AppendStep(system + LineEnd);
    (*this)("Text1").Visible = false;
    (*this)("Text2").Visible = true;
    SetTitle(" Solving the structural model. Please wait .....");
    Pause();
    SolverOutput output;
    output.stepLog = &stepLog_;
    output.progress = [this](const std::string& caption) {
        (*this)("Label0").Caption = caption;
        ShowText((*this)("Text2"), stepLog_);
        Pause();
    };
    output.pause = [this] { Pause(); };
    const Int16 solved =
        SolveSystem(SolverDisplay::Visible, parameterCount_, solverLhs_, solverRhs_, output);
    ShowText((*this)("Text2"), stepLog_);
    if (solved != 1) {
        AppendStep(std::string(LineEnd) +
                   "System cannot be solved analytically, probably due to lack of "
                   "identification! " +
                   LineEnd);
        OfferMethod2Alone();
        return false;
    }
    (*this)("Command3").Visible = false;
    (*this)("Text2").Visible = false;
    (*this)("Text1").Visible = true;
    std::string solution = std::string("Solution:") + LineEnd + LineEnd;
    for (std::size_t r = 0; r < solverLhs_.size(); ++r) {
        solution += solverLhs_[r] + " = " + solverRhs_[r] + LineEnd;
    }
    Append(solution);
    return true;
}

void VBernanke2::AfterSolution() {
    StartValues solution;
    for (const std::string& value : solverRhs_) {
        solution.values.push_back(Val(value));
        solution.marks.push_back(1);
    }
    WriteStartValues(module, "BERNSV.TMP", solution);
    SetTitle(" Estimating the variance matrix of the structural parameters. Please wait ..... ");
    (*this)("Command3").Enabled = false;
    Pause();

    const Matrix B = BuildB(GetA(0, L_.Rows()), solution.values);
    Append(std::string(LineEnd) +
           "Recall that the following matrices should be approximately equal: " + LineEnd +
           LineEnd + "B'B:" + LineEnd + LineEnd +
           MatrixText(SingleRounded(CrossProduct(B)), "00.00000E+000", 15) + LineEnd +
           "Inverse of Var(u):" + LineEnd + LineEnd);
    {
        Matrix VarUInverse(B.Rows(), B.Rows());
        double determinant = 0;
        Int16 flag;
        InvertMatrix(OuterProduct(L_), VarUInverse, determinant, B.Rows(), flag);
        Append(MatrixText(SingleRounded(VarUInverse), "00.00000E+000", 15) + LineEnd);
    }
    if (!ReportWithVariance(solution.values)) {
        return;
    }
    Matrix F;
    if (!WriteStructuralFactor(F)) {
        return;
    }
    if (module.Route == RouteStructuralMaximumLikelihood) {
        OfferMethods(F);
        return;
    }
    (*this)("Command3").Visible = false;
    for (const char* button : {"Command1", "Command2"}) {
        (*this)(button).Visible = true;
        (*this)(button).Enabled = true;
    }
    SetTitle(" Structural model");
}

// The structural equations: with t-values from the variance of L where FIML gave one, else
// without them.
bool VBernanke2::ReportWithVariance(const std::vector<double>& b) {
    const Pattern Apat = GetA(0, L_.Rows());
    const std::string unable =
        std::string("Lorvane is unable to compute the variance matrix of the structural") +
        LineEnd + "parameters! " + LineEnd;
    if (module.Route != RouteStructuralMaximumLikelihood) {
        Vector CoefA;
        Vector CoefC;
        if (!StructuralCoefficients(Apat, BuildB(Apat, b), CoefA, CoefC)) {
            Append(unable);
            Fail(RespecifyStructural);
            return false;
        }
        Append(StructuralModelText(names_, Apat, CoefA, CoefC) + NoTValuesText());
        return true;
    }
    Matrix W;
    double T = 0;
    Int16 ok;
    ReadVarianceOfL(module, L_.Rows(), W, T, ok);
    ExpectModelObservations(module, T);
    StructuralVariance variance;
    StructuralVarianceResult result = StructuralVarianceResult::SolveFailed;
    if (ok == 1) {
        try {
            const SolveAt solve = [this](const Matrix& L, Vector& CoefA, Vector& CoefC,
                                         Int16& solved, bool* singular) {
                system_->SolveAtL(L, CoefA, CoefC, solved, nullptr, singular);
            };
            result = ComputeStructuralVariance(solve, L_, W, T, variance, [this](int done) {
                (*this)("Label0").Caption =
                    " Estimating the variance matrix of the structural parameters. Done " +
                    Trim(NumberToText(done)) + "%";
                Pause();
            });
        } catch (const RuntimeError& error) {
            // An arithmetic stop, as at a variance of zero: told, and the computation fails.
            if (!IsArithmeticStop(error)) {
                throw;
            }
            module.boxes().MessageBoxShort(error.MessageText(), 0, module.ModuleCaption);
            result = StructuralVarianceResult::SolveFailed;
        }
    }
    if (result != StructuralVarianceResult::Done) {
        Append(unable);
        if (result == StructuralVarianceResult::Singular) {
            Append(std::string("Attempt to invert a singular matrix. Respecify your model!") +
                   LineEnd);
        }
        Fail(RespecifyStructural);
        return false;
    }
    WriteStructuralWaldFile(module, T, names_, Apat, variance.CoefA, variance.tA, variance.VA);
    Append(StructuralModelTextWithT(names_, Apat, variance.CoefA, variance.CoefC, variance.tA,
                                    variance.tC) +
           LineEnd + "The t-values and p-values have been calculated on the basis of the" +
           LineEnd + " limiting normal distribution of the nonzero elements of the matrix" +
           LineEnd + " L, ignoring overidentifying restrictions. " + LineEnd + LineEnd);
    return true;
}

bool VBernanke2::WriteStructuralFactor(Matrix& F) {
    const Pattern Apat = GetA(0, L_.Rows());
    std::vector<double> b;
    for (const std::string& value : solverRhs_) {
        b.push_back(Val(value));
    }
    const Matrix B = BuildB(Apat, b);
    const int k = B.Rows();
    F.Resize(k, k);
    double determinant = 0;
    Int16 flag;
    InvertMatrix(B, F, determinant, k, flag);
    if (flag == 1) {
        Append(std::string("Matrix B is singular. Structural VAR innovation response analysis "
                           "cannot be conducted. Respecify your model!.") +
               LineEnd);
        Fail(" Respecify your model");
        return false;
    }
    WriteFactorFiles(module, F);
    return true;
}

void VBernanke2::OfferMethods(const Matrix& F) {
    EstimationView view(module, (*this)("Label0"), (*this)("Text1"));
    view.Begin();
    FactorVariance variance;
    bool computed = false;
    try {
        computed = ComputeVarianceOfFactor(view, F, variance);
    } catch (const RuntimeError& error) {
        if (!IsArithmeticStop(error)) {
            throw;
        }
        module.boxes().MessageBoxShort(error.MessageText(), 0, module.ModuleCaption);
    }
    if (!computed) {
        Append(std::string("Variance matrix of the nonzero elements of B^-1 cannot be calculated, "
                           "due to singularity.") +
               LineEnd);
        Fail(" Respecify model");
        return;
    }
    Append(FactorReportText(F, variance));
    RewriteWaldFileWithFactor(module, F, variance.t, variance.VarBInv);
    std::string text = LineEnd;
    for (const char* line : MethodText) {
        text += std::string(line) + LineEnd;
    }
    if (starCount_ > 0) {
        text +=
            std::string("Since your model is over-identified, method 2 is recommended.") + LineEnd;
    } else {
        text += std::string("Since your model is just-identified, methods 1 and 2 are "
                            "asymptotically") +
                LineEnd + "equivalent. Therefore method 1 is recommended." + LineEnd;
    }
    Append(text);
    (*this)("Command1").Caption = "Method 1";
    (*this)("Command4").Caption = "Method 2";
    for (const char* button : {"Command1", "Command4", "Command2"}) {
        (*this)(button).Visible = true;
        (*this)(button).Enabled = true;
    }
    (*this)("Command3").Visible = false;
    SetTitle(" Structural model");
    module.Pointer = MousePointer::Normal;
    SetFocus("Text1");
}

// Decision: the counts have passed (M is at least P and so many moments are not zero), so the
// model is identified by its count, and its likelihood has a maximum whether or not the moment
// equations can be solved by hand: a square with a negative right-hand side, as when the zero
// moments are strongly rejected, or more equations than unknowns without a zero moment to set
// aside. Instead of a dead end the model goes to maximum likelihood, starting from B with
// 1/sqrt of the variances on its diagonal; the refinement after the simplex takes it to the
// maximum.
void VBernanke2::OfferMethod2Alone() {
    const int k = L_.Rows();
    const Pattern Apat = GetA(0, k);
    const Matrix VarU = OuterProduct(L_);
    StartValues start;
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= k; ++j) {
            if (Apat(i, j) == 1 || Apat(i, j) == -1) {
                start.values.push_back(i == j ? 1 / std::sqrt(VarU(i, i)) : 0.0);
                start.marks.push_back(1);
            }
        }
    }
    WriteStartValues(module, "BERNSV.TMP", start);
    Append(std::string(LineEnd) +
           "The moment equations have no analytic solution, although the model is " + LineEnd +
           "identified by the count of its moment conditions. It can be estimated " + LineEnd +
           "by maximum likelihood (method 2) alone, starting from numeric start values." + LineEnd);
    (*this)("Text2").Visible = false;
    (*this)("Text1").Visible = true;
    (*this)("Command3").Visible = false;
    (*this)("Command1").Visible = false;
    (*this)("Command4").Caption = "Method 2";
    for (const char* button : {"Command4", "Command2"}) {
        (*this)(button).Visible = true;
        (*this)(button).Enabled = true;
    }
    SetTitle(" Structural model");
    module.Pointer = MousePointer::Normal;
    SetFocus("Text1");
}

void VBernanke2::Click(Control& control) {
    const std::string& name = control.Name;
    if (name == "Command1") {
        Continue();
    } else if (name == "Command2") {
        Respecify();
    } else if (name == "Command3") {
        SwapTexts();
    } else if (name == "Command4") {
        ChooseMethod2();
    }
}

// OUTPUT.TMP, the scratch copy of the log: the report and the closing words.
void VBernanke2::WriteScratchLog(const std::string& closing) {
    TextOutput scratch(module.DataFile("OUTPUT.TMP"), TextOutput::Mode::Output);
    scratch.PrintLine(report_);
    if (!closing.empty()) {
        scratch.PrintLine("");
        scratch.PrintLine(closing);
    }
    scratch.Close();
}

void VBernanke2::Continue() {
    module.Pointer = MousePointer::Wait;
    const bool methodChosen = (*this)("Command1").Caption == "Method 1";
    AppendToLog(module, "");
    AppendToLog(module, report_);
    if (methodChosen) {
        AppendToLog(module, "");
        AppendToLog(module, "Method 1 has been chosen.");
    }
    // The scratch copy says "Method 2" here: that is what it has always said.
    WriteScratchLog(methodChosen ? "Method 2 has been chosen." : "");
    module.GoToScreen(ScreenAfterStructuralModel(module));
}

void VBernanke2::ChooseMethod2() {
    module.Pointer = MousePointer::Wait;
    AppendToLog(module, "");
    AppendToLog(module, report_);
    AppendToLog(module, "");
    AppendToLog(module, "Method 2 has been chosen.");
    WriteScratchLog("Method 2 has been chosen.");
    SetTitle(" Finding start values for ML estimation");
    FindStartValues(module, *system_, GetA(0, L_.Rows()));
    module.GoToScreen("VBernanke3");
}

void VBernanke2::Respecify() {
    AppendToLog(module, "");
    AppendToLog(module, report_);
    AppendToLog(module, "");
    AppendToLog(module, "Model will be respecified or abandoned!");
    module.Pointer = MousePointer::Wait;
    module.GoToScreen("VARSTR1");
}

void VBernanke2::SwapTexts() {
    Control& button = (*this)("Command3");
    const bool showSteps = button.Caption == "Show how the system has been solved";
    (*this)("Text1").Visible = !showSteps;
    (*this)("Text2").Visible = showSteps;
    button.Caption =
        showSteps ? "Hide how the system has been solved" : "Show how the system has been solved";
}

} // namespace lorvane
