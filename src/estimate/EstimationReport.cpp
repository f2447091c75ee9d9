#include "estimate/EstimationReport.h"

#include <cmath>

#include "estimate/EstimationView.h"
#include "estimate/RegressionFiles.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/TextFile.h"
#include "numeric/DISTRIB.h"

namespace lorvane {

namespace {

constexpr std::size_t EstimateWidth = 15;
constexpr std::size_t TValueWidth = 10;
constexpr const char* CRLF = "\r\n";

std::string LeftAligned(const std::string& text, std::size_t width) {
    return text.size() >= width ? text : text + std::string(width - text.size(), ' ');
}

// "x(i,c) = name": regressor c of equation i.
std::string CoefficientLabel(int i, int c, const std::string& name) {
    return "x(" + Trim(NumberToText(i)) + "," + Trim(NumberToText(c)) + ") = " + name;
}

// Decision: the label fills the name column, so that the number ends under the estimates.
std::string Statistic(const std::string& label, const std::string& number) {
    return LeftAligned(label, NameColumnWidth) + RightAligned(number, EstimateWidth) + CRLF;
}

} // namespace

std::string NameColumn(const std::string& label) {
    if (label.size() > NameColumnWidth - 1) {
        return label.substr(0, NameColumnWidth - 3) + ".. ";
    }
    return LeftAligned(label, NameColumnWidth);
}

std::string DisplayRow(const std::string& label, double estimate, double tValue) {
    return NameColumn(label) + RightAligned(FormatNumber(estimate, "00.00000E+00"), EstimateWidth) +
           RightAligned(FormatNumber(tValue, "########0.00"), TValueWidth);
}

std::string PValueRow(double pValue) {
    return std::string(NameColumnWidth + EstimateWidth, ' ') +
           RightAligned("[" + FormatNumber(pValue, "0.00000") + "]", TValueWidth);
}

double TValue(double T, double estimate, double variance) {
    return CheckedDivide(CheckedSqrt(T) * estimate, CheckedSqrt(variance));
}

std::string EstimatesText(const RegressionLayout& layout, double T, const Estimates& estimates,
                          const std::string& method, int round) {
    std::string text = method;
    text += round == 0 ? " estimation results:"
                       : " estimation results for SUR iteration round" + NumberToText(round);
    text += std::string(CRLF) + CRLF;
    int q = 0;
    for (int i = 1; i <= layout.k; ++i) {
        const std::string equation = Trim(NumberToText(i));
        text += "y(" + equation + ") = " + Trim(layout.Variable(i)) + CRLF;
        text += NameColumn("Explanatory variables") + RightAligned(" estimate", EstimateWidth) +
                RightAligned("t-value", TValueWidth) + CRLF;
        text += std::string(NameColumnWidth + EstimateWidth, ' ') +
                RightAligned("[p-value]", TValueWidth) + CRLF;
        for (int c = 1; c <= layout.Count(i); ++c) {
            ++q;
            const double t = TValue(T, estimates.b(q), estimates.V(q, q));
            text += DisplayRow(CoefficientLabel(i, c, layout.Regressor(i, c)), estimates.b(q), t) +
                    CRLF;
            text += PValueRow(NormalPValue(std::abs(t))) + CRLF;
        }
        text += std::string("[The p-values are two-sided and based on the normal approximation]") +
                CRLF;
        const double se = CheckedSqrt(CheckedDivide(estimates.RSS(i), T - layout.Count(i)));
        text += Statistic("s.e.:", FormatNumber(se, "00.00000E+00"));
        const double rSquare = 1 - CheckedDivide(estimates.RSS(i), estimates.TSS(i));
        text += Statistic("R-Square:", FormatNumber(rSquare, "0.0000"));
        text += Statistic("n:", FormatNumber(T, "########0"));
        text += CRLF;
    }
    text += "Error variance matrix based on " + method + " residuals:" + CRLF;
    text += CRLF;
    for (int i = 1; i <= layout.k; ++i) {
        for (int j = 1; j <= layout.k; ++j) {
            text +=
                RightAligned(FormatNumber(estimates.Sigma(i, j), "0.00000E+000"), EstimateWidth);
        }
        text += CRLF;
    }
    return text;
}

void WriteEstimateFiles(const Workspace& workspace, const RegressionLayout& layout, double T,
                        const Estimates& estimates) {
    const int K = layout.Total();
    TextOutput wald(workspace.DataFile("WALDT.TMP"), TextOutput::Mode::Output);
    wald.WriteRecord(CommaRecord().Number(T).Whole(K));
    int q = 0;
    for (int i = 1; i <= layout.k; ++i) {
        for (int c = 1; c <= layout.Count(i); ++c) {
            ++q;
            const double t = TValue(T, estimates.b(q), estimates.V(q, q));
            wald.WriteRecord(CommaRecord().Text(
                DisplayRow(CoefficientLabel(i, c, layout.Regressor(i, c)), estimates.b(q), t)));
        }
    }
    for (int r = 1; r <= K; ++r) {
        wald.WriteRecord(CommaRecord().Number(estimates.b(r)));
    }
    for (int r = 1; r <= K; ++r) {
        for (int c = 1; c <= K; ++c) {
            wald.WriteRecord(CommaRecord().Number(estimates.V(r, c)));
        }
    }
    wald.Close();

    TextOutput coefficients(workspace.DataFile("VARB.TMP"), TextOutput::Mode::Output);
    coefficients.WriteRecord(CommaRecord().Whole(K));
    for (int r = 1; r <= K; ++r) {
        coefficients.WriteRecord(CommaRecord().Number(estimates.b(r)));
    }
    coefficients.Close();
}

void ReportEstimates(EstimationView& view, const RegressionLayout& layout, double T,
                     const Estimates& estimates, Int16 mode, Int16& round) {
    if (mode == 0) {
        ++round;
    }
    view.Append(EstimatesText(layout, T, estimates, mode == 1 ? "OLS" : "SUR", round));
    WriteEstimateFiles(view.module, layout, T, estimates);
}

} // namespace lorvane
