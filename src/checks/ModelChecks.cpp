#include "checks/ModelChecks.h"

#include "frame/NumberText.h"
#include "numeric/DISTRIB.h"

namespace lorvane {

namespace {

constexpr std::string_view LineEnd = "\r\n";

std::string Whole(int value) {
    return Trim(NumberToText(value));
}

// "Label:" padded to the module's statistic column, then the statistic.
std::string StatisticLine(const std::string& label, double statistic) {
    std::string line = label;
    line.resize(std::max<std::size_t>(line.size(), 29), ' ');
    return line + RightAligned(FormatNumber(statistic, "##########.0000"), 15);
}

void AddReport(std::vector<std::string>& lines, std::string pLine, std::string levelLine,
               std::string criticalLine, std::string conclusionLine) {
    for (const std::string* line : {&pLine, &levelLine, &criticalLine, &conclusionLine}) {
        lines.push_back("  " + *line);
    }
}

void AddChiSquareTest(std::vector<std::string>& lines, const std::string& label, double statistic,
                      int df) {
    lines.push_back(StatisticLine(label, statistic));
    lines.push_back("Asymptotic null distribution:Chi-square(" + Whole(df) + ")");
    std::string p, levels, critical, conclusion;
    ChiSquareReport(statistic, df, p, levels, critical, conclusion);
    AddReport(lines, p, levels, critical, conclusion);
}

std::string Column(double value) {
    return RightAligned(FormatNumber(value, "0.000000"), 15);
}

} // namespace

ModelChecks RunModelChecks(const CheckModel& model, int h, int q) {
    ModelChecks checks;
    checks.h = h;
    checks.q = q;
    checks.Roots = CompanionRoots(model.A);
    checks.Stable = IsStable(checks.Roots);
    checks.Autocorrelation = Portmanteau(model.U, h, model.FreeLags);
    checks.Serial = SerialCorrelationLM(model.U, model.X, q);
    checks.Normal = Normality(model.U);
    checks.Arch = ArchLM(model.U, q);
    return checks;
}

std::string ModelChecksReport(const ModelChecks& checks) {
    std::vector<std::string> lines = {"Stability: eigenvalues of the companion matrix",
                                      "                     Real      Imaginary        Modulus"};
    int number = 0;
    for (const CompanionRoot& root : checks.Roots) {
        lines.push_back(RightAligned(Whole(++number), 3) + "  " + Column(root.Real) +
                        Column(root.Imaginary) + Column(root.Modulus));
    }
    lines.push_back(checks.Stable ? "Every modulus is below 1: the VAR is stable."
                                  : "A root lies on or outside the unit circle: the VAR is not "
                                    "stable.");

    const std::string h = Whole(checks.h);
    const std::string q = Whole(checks.q);
    lines.push_back("");
    lines.push_back("Portmanteau test of no residual autocorrelation up to lag " + h + ":");
    AddChiSquareTest(lines, "Q(" + h + "):", checks.Autocorrelation.Q,
                     checks.Autocorrelation.DegreesOfFreedom);
    lines.push_back("Adjusted portmanteau test:");
    AddChiSquareTest(lines, "Q*(" + h + "):", checks.Autocorrelation.QAdjusted,
                     checks.Autocorrelation.DegreesOfFreedom);

    const SerialCorrelationTest& serial = checks.Serial;
    lines.push_back("");
    lines.push_back("Breusch-Godfrey LM test of no residual autocorrelation of order " + q + ":");
    AddChiSquareTest(lines, "LM(" + q + "):", serial.LM, serial.DegreesOfFreedom);
    lines.push_back("Edgerton-Shukur F form:");
    lines.push_back(StatisticLine("F(" + q + "):", serial.F));
    lines.push_back("Null distribution:           F(" + Whole(static_cast<int>(serial.Numerator)) +
                    "," + Whole(static_cast<int>(serial.Denominator)) + ")");
    std::string p, levels, critical, conclusion;
    FReport(serial.F, serial.Numerator, serial.Denominator, p, levels, critical, conclusion);
    AddReport(lines, p, levels, critical, conclusion);

    const NormalityTest& normal = checks.Normal;
    lines.push_back("");
    lines.push_back("Jarque-Bera test of normal residuals (standardised by the Cholesky factor");
    lines.push_back("of their variance):");
    AddChiSquareTest(lines, "Jarque-Bera:", normal.JarqueBera, 2 * normal.DegreesOfFreedom);
    AddChiSquareTest(lines, "Skewness:", normal.Skewness, normal.DegreesOfFreedom);
    AddChiSquareTest(lines, "Kurtosis:", normal.Kurtosis, normal.DegreesOfFreedom);

    lines.push_back("");
    lines.push_back("Multivariate ARCH-LM test of no conditional heteroskedasticity of order " + q +
                    ":");
    AddChiSquareTest(lines, "ARCH-LM(" + q + "):", checks.Arch.LM, checks.Arch.DegreesOfFreedom);

    std::string text;
    for (const std::string& line : lines) {
        text += line;
        text += LineEnd;
    }
    return text;
}

} // namespace lorvane
