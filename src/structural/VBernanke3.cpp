#include "structural/VBernanke3.h"

#include "estimate/EstimationReport.h"
#include "estimate/EstimationView.h"
#include "estimate/FimlVariance.h"
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
#include "platform/Clock.h"
#include "platform/Random.h"
#include "structural/DownhillSimplex.h"
#include "structural/LikelihoodRefinement.h"
#include "structural/MLReport.h"
#include "structural/MLVariance.h"
#include "structural/MomentConditions.h"
#include "structural/SimplexObjectives.h"
#include "structural/SimplexRecords.h"
#include "structural/StartValues.h"
#include "structural/StructuralFiles.h"
#include "structural/StructuralModel.h"
#include "structural/StructuralReport.h"
#include "structural/VWaldT3.h"

#include <optional>

namespace lorvane {

namespace {

constexpr const char* BSingular = "Matrix B is singular. Respecify your model!";

constexpr const char* Options =
    "There are two options for estimation of the structural parameters: (1) Maximize the log "
    "likelihood function, or (2) minimize the maximum absolute deviation (MAD) of the "
    "corresponding elements of the matrix B'B and the inverse of the variance matrix of the "
    "nonstructural errors. ";

constexpr const char* AdviceJustIdentified =
    "Try option 2 first, and then switch to option 1. The final iteration round should be done "
    "with option 1.";

// Decision: on an over-identified model B'B is zero where the inverse variance is not, so the
// MAD never falls below the largest of those elements: option 2 stops at once or drifts to poor
// likelihoods, and is not suggested first.
constexpr const char* AdviceOveridentified =
    "Your model is over-identified: the MAD cannot fall to zero, so option 2 is of little use. "
    "Use option 1.";

// The variance S = LL' of the nonstructural errors, L as the nonstructural estimation left it,
// with its inverse and determinant.
struct NonstructuralVariance {
    Matrix S;
    Matrix SInv;
    double DetS = 0;
};

NonstructuralVariance ReadNonstructuralVariance(const Workspace& workspace, int n) {
    const Matrix L = ReadLFile(workspace, "BVARL.TMP", n);
    NonstructuralVariance variance;
    variance.S = OuterProduct(L);
    variance.SInv.Resize(n, n);
    Int16 flag;
    InvertMatrix(variance.S, variance.SInv, variance.DetS, n, flag);
    return variance;
}

// T, the first value of WALDT.TMP, which must be the model's.
double SampleSize(const Module& module) {
    TextInput input(module.DataFile("WALDT.TMP"));
    const double T = input.ReadNumber();
    ExpectModelObservations(module, T);
    return T;
}

// n of VARL.TMP, which must be the model's count of variables.
int VariableCount(const Module& module) {
    return ReadLCount(module, module.store().SelectedCount());
}

Pattern ModelPattern(const Module& module) {
    return ReadStructuralPattern(module, VariableCount(module));
}

// The structural equations at b; empty when B is singular there.
std::string EquationsText(const Module& module, const Pattern& Apat, const std::vector<double>& b) {
    Vector CoefA;
    Vector CoefC;
    if (!StructuralCoefficients(Apat, BuildB(Apat, b), CoefA, CoefC)) {
        return "";
    }
    return StructuralModelText(StructuralNames(module), Apat, CoefA, CoefC);
}

} // namespace

VBernanke3::VBernanke3(Module& module)
    : Screen(module, "VBernanke3", "Maximum likelihood estimation of the structural VAR model") {
    Add(ControlKind::Label, "Label0", " Maximum likelihood estimation of the structural VAR model",
        0, 0, 9600, 360);
    Add(ControlKind::Label, "Label3", std::string(Options) + AdviceJustIdentified, 240, 480, 9120,
        840)
        .WordWrap = true;
    Add(ControlKind::Label, "Label4", "Current option = 1", 240, 1440, 2400, 300);
    Add(ControlKind::Label, "Label2", "c (> 0) = ", 2880, 1440, 1080, 300);
    Add(ControlKind::TextBox, "Text2", "0.00001", 3960, 1400, 1320, 330);
    Add(ControlKind::TextBox, "Text3", "1", 5400, 1400, 600, 330).Visible = false;
    Add(ControlKind::Label, "Label1", "SIMPLEX iteration results:", 240, 1860, 4200, 300);
    Control& results = Add(ControlKind::TextBox, "Text1", "", 240, 2160, 9120, 3840);
    results.MultiLine = true;
    results.Locked = true;
    // "Respecify model" stands at the left end, away from where the buttons of the screen before
    // ("Method 2") were, so that a double click cannot throw the estimation away.
    Add(ControlKind::Button, "Command3", "Respecify model", 240, 6120, 1560, 420);
    Add(ControlKind::Button, "Command1", "Switch to option 2", 1860, 6120, 1680, 420);
    Add(ControlKind::Button, "Command2", "Start Simplex iteration", 3600, 6120, 2160, 420);
    Add(ControlKind::Button, "Command4", "Done with Simplex iteration", 5820, 6120, 2400, 420);
    Add(ControlKind::Button, "Command5", "Continue", 8280, 6120, 1080, 420);
}

void VBernanke3::Load() {
    FontOfNotepadText((*this)("Text1"));
    (*this)("Command2").Visible = true;
    (*this)("Command4").Enabled = false;
    (*this)("Command5").Visible = false;
    (*this)("Label1").Visible = false;
    (*this)("Text2").Caption = "0.01";
    (*this)("Text3").Visible = false;
    (*this)("Text3").Caption = "1";
    (*this)("Label4").Caption = "Current option = 1";
    (*this)("Command1").Caption = "Switch to option 2";
    const Pattern Apat = ModelPattern(module);
    const int n = Apat.Size();
    const bool overidentified = (n * n + n) / 2 > FreeParameterCount(Apat);
    (*this)("Label3").Caption =
        std::string(Options) + (overidentified ? AdviceOveridentified : AdviceJustIdentified);
    const StartValues start = ReadStartValues(module, "BERNSV2.TMP", FreeParameterCount(Apat));
    (*this)("Text1").Caption = EquationsText(module, Apat, start.values);
    StartSimplexRecords(module, static_cast<int>(start.values.size()));
    SetFocus("Text2");
}

void VBernanke3::Activate() {
    if (module.ActivateCount == 1) {
        DecorateHeader(*this, (*this)("Label0"));
    }
}

void VBernanke3::Click(Control& control) {
    const std::string& name = control.Name;
    if (name == "Command1") {
        SwitchOption();
    } else if (name == "Command2") {
        Search();
    } else if (name == "Command3") {
        module.GoToScreen("VARSTR1");
    } else if (name == "Command4") {
        Estimate();
    } else if (name == "Command5") {
        Continue();
    }
}

int VBernanke3::Option() const {
    return CInt(Val((*this)("Text3").Caption));
}

EstimationView VBernanke3::View() {
    return EstimationView(module, (*this)("Label0"), (*this)("Text1"));
}

void VBernanke3::SwitchOption() {
    (*this)("Command4").Enabled = false;
    if (Option() == 1) {
        (*this)("Text3").Caption = "0";
        (*this)("Label4").Caption = "Current option = 2";
        (*this)("Command1").Caption = "Switch to option 1";
    } else {
        (*this)("Text3").Caption = "1";
        (*this)("Label4").Caption = "Current option = 1";
        (*this)("Command1").Caption = "Switch to option 2";
        // The records are read through and left alone; a damaged TMP.TMP shows here.
        ReadSimplexRecords(module, FreeParameterCount(ModelPattern(module)));
    }
}

void VBernanke3::Search() {
    Control& text2 = (*this)("Text2");
    const double c = Val(text2.Caption);
    text2.Caption = TrimLeft(NumberToText(c));
    if (c <= 0) {
        text2.Caption = "1";
        SetFocus("Text2");
        return;
    }
    module.Pointer = MousePointer::Wait;
    const int option = Option();
    const int n = VariableCount(module);
    const double T = SampleSize(module);
    const NonstructuralVariance variance = ReadNonstructuralVariance(module, n);

    const Pattern Apat = ReadStructuralPattern(module, n);
    const int m = FreeParameterCount(Apat);
    const StartValues start = ReadStartValues(module, "BERNSV2.TMP", m);
    std::vector<double> b;
    for (const double value : start.values) {
        b.push_back(ToSingle(value));
    }
    Random& random = module.platform().random;
    random.seedFromClock(module.platform().clock.secondsSinceMidnight());

    // Every element without a kept start value starts at random, its size set by c; the
    // diagonal ones start positive.
    const double size = Val(text2.Caption);
    std::size_t k = 0;
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            if (!Free(Apat, i, j)) {
                continue;
            }
            if (start.marks[k] != 1) {
                const double draw = random.next();
                b[k] = i == j ? draw * size : 2 * size * (draw - 0.5);
            }
            ++k;
        }
    }
    const std::vector<SimplexRecord> records = ReadSimplexRecords(module, m);
    const SimplexRecord* best = option == 1 ? BestByLogLikelihood(records) : BestByMAD(records);
    if (best != nullptr) {
        b = best->b;
    }
    (*this)("Text1").Caption.clear();
    (*this)("Label1").Visible = true;

    SimplexObjectives objectives(Apat, variance.S, variance.SInv, T, c0_);
    SimplexSearch search;
    search.objective = [&objectives, option](const std::vector<double>& x) {
        return SimplexValue(objectives, option, x);
    };
    search.madStop = option != 1;
    search.display = [this, option](double iteration, const std::vector<double>& vertex,
                                    double value) {
        (*this)("Text1").Caption = IterationLine(option, iteration, vertex, value);
        (*this)("Label0").Caption = " Simplex iteration";
    };
    double iterations = 0;
    RunSimplexSearch(search, random, b, iterations);

    // Option 1 ends at the maximum, not where the simplex closed.
    std::optional<double> gain;
    if (option == 1) {
        gain = RefineSimplexResult(objectives, variance.S, b);
    }

    const double LL = objectives.LogLikelihood(b);
    const double MAD = objectives.MaximumAbsoluteDeviation(b);
    AppendSimplexRecord(module, {LL, MAD, b});
    (*this)("Text1").Caption =
        SimplexRunText(option, b, LL, objectives.NonstructuralLogLikelihood(variance.DetS),
                       CrossProduct(BuildB(Apat, b)), variance.SInv, gain);
    (*this)("Label0").Caption =
        " Log-Likelihood = " + TrimLeft(FormatNumber(LL, "##########.000000"));
    (*this)("Command2").Caption = "Restart Simplex iteration";
    (*this)("Command4").Enabled = option == 1;
    module.Pointer = MousePointer::Normal;
    SetFocus("Text2");
}

void VBernanke3::Fail(const std::string& message) {
    module.boxes().MessageBoxShort(message, 0, "Module " + module.ModuleName);
    View().AppendLine(message);
    (*this)("Label0").Caption = " Try again";
    (*this)("Command3").Enabled = true;
    (*this)("Command5").Enabled = false;
    module.Pointer = MousePointer::Normal;
    SetFocus("Text1");
}

void VBernanke3::Estimate() {
    for (const char* hidden : {"Label4", "Command1", "Label3", "Label2", "Text2", "Command2"}) {
        (*this)(hidden).Visible = false;
    }
    (*this)("Label0").Caption = " Structural VAR model: Wait for output";
    module.Pointer = MousePointer::Wait;
    for (const char* disabled : {"Command4", "Command3", "Command5"}) {
        (*this)(disabled).Enabled = false;
    }
    EstimationView view = View();
    view.Begin();
    view.Pause();

    const int n = VariableCount(module);
    const Pattern Apat = ReadStructuralPattern(module, n);
    const std::vector<SimplexRecord> records = ReadSimplexRecords(module, FreeParameterCount(Apat));
    const SimplexRecord* best = BestByLogLikelihood(records);
    if (best == nullptr) {
        // The button is enabled only after a run has added its record.
        Raise(InputPastEndOfFile);
    }
    const std::vector<double> b = best->b;
    (*this)("Text1").Caption = EquationsText(module, Apat, b);

    const std::string route = ReadRoute(module);
    const double T = SampleSize(module);
    const NonstructuralVariance variance = ReadNonstructuralVariance(module, n);
    SimplexObjectives objectives(Apat, variance.S, variance.SInv, T, c0_);
    const Matrix B = BuildB(Apat, b);
    view.Append(EstimateText(
        b, objectives.LogLikelihood(b), objectives.NonstructuralLogLikelihood(variance.DetS), B,
        CrossProduct(B), variance.SInv, objectives.MaximumAbsoluteDeviation(b)));
    view.Working();

    double determinant = 0;
    Int16 flag;
    const Matrix BInv = BInverseAt(Apat, b, determinant, flag);
    if (flag == 1 || determinant == 0) {
        Fail(BSingular);
        return;
    }
    view.Append(BInverseText(BInv));
    WriteFactorFiles(module, BInv);
    view.Working();

    const std::vector<std::string> names = StructuralNames(module);
    if (route != RouteStructuralMaximumLikelihood) {
        // The reduced form came from OLS or SUR: the estimate is shown without a variance.
        Vector CoefA;
        Vector CoefC;
        if (!StructuralCoefficients(Apat, B, CoefA, CoefC)) {
            Fail(BSingular);
            return;
        }
        view.Append(StructuralModelText(names, Apat, CoefA, CoefC) + NoTValuesText());
        (*this)("Command3").Enabled = true;
        (*this)("Command5").Visible = true;
        (*this)("Command5").Enabled = true;
        (*this)("Label0").Caption = " Structural VAR: ML Estimation results";
        module.Pointer = MousePointer::Normal;
        SetFocus("Command5");
        return;
    }
    if (!EstimateVariances(view, Apat, b, BInv, names)) {
        return;
    }
    (*this)("Label0").Caption = " Structural VAR model: Estimation results";
    AppendToLog(module, "");
    AppendToLog(module, (*this)("Text1").Caption);
    (*this)("Command3").Enabled = true;
    (*this)("Command5").Visible = true;
    (*this)("Command5").Enabled = true;
    module.Pointer = MousePointer::Normal;
    SetFocus("Command5");
}

bool VBernanke3::EstimateVariances(EstimationView& view, const Pattern& Apat,
                                   const std::vector<double>& b, const Matrix& BInv,
                                   const std::vector<std::string>& names) {
    (*this)("Label0").Caption = " Making variance matrix of structural parameters";
    view.Begin();
    view.Working();
    const double Tn = module.SampleLast - module.SampleFirst + 1 - module.p;
    const Matrix u = ReadResiduals(module, static_cast<int>(Tn), module.store().SelectedCount());
    Matrix VarB;
    if (!ScoreVarianceOfB(Apat, b, u, Tn, VarB, [&view] { view.Working(); })) {
        Fail("Asymptotic variance of b() cannot be computed, due to singularity. Respecify your "
             "model!");
        return false;
    }
    view.Append(VarianceText("Asymptotic variance matrix of b():", VarB));

    const double T = SampleSize(module);
    Vector CoefA;
    Vector CoefC;
    Matrix VA;
    Matrix VC;
    if (!StructuralCoefficients(Apat, BuildB(Apat, b), CoefA, CoefC) ||
        !VarianceOfCoefficients(Apat, b, VarB, VA, VC)) {
        Fail(BSingular);
        return false;
    }
    view.Append(VarianceText("Asymptotic variance matrix of the structural parameters in A:", VA));
    Vector tA(CoefA.Size());
    for (int r = 1; r <= CoefA.Size(); ++r) {
        tA(r) = TValue(T, CoefA(r), VA(r, r));
    }
    Vector tC(CoefC.Size());
    for (int r = 1; r <= CoefC.Size(); ++r) {
        tC(r) = TValue(T, CoefC(r), VC(r, r));
    }
    view.Append(StructuralModelTextWithT(names, Apat, CoefA, CoefC, tA, tC));
    WriteStructuralWaldFile(module, T, names, Apat, CoefA, tA, VA);
    view.Working();

    const std::vector<FactorPlace> places = NonzeroPlaces(BInv);
    Matrix VarBInv;
    if (!VarianceOfFactor(Apat, b, VarB, places, VarBInv)) {
        Fail("Asymptotic variance of the nonzero elements of B^-1 cannot be computed, due to "
             "singularity. Respecify your model!");
        return false;
    }
    Vector tF(static_cast<int>(places.size()));
    for (int l = 1; l <= tF.Size(); ++l) {
        const FactorPlace& place = places[static_cast<std::size_t>(l - 1)];
        tF(l) = TValue(T, BInv(place.i, place.j), VarBInv(l, l));
    }
    RewriteWaldFileWithFactor(module, BInv, tF, VarBInv);
    view.Working();
    return true;
}

void VBernanke3::Continue() {
    module.GoToScreen(ScreenAfterStructuralModel(module));
}

} // namespace lorvane
