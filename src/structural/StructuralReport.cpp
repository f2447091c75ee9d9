#include "structural/StructuralReport.h"

#include <cmath>

#include "frame/Module.h"
#include "frame/NumberText.h"
#include "numeric/DISTRIB.h"
#include "structural/StructuralModel.h"

namespace lorvane {

namespace {

constexpr const char* LineEnd = "\r\n";
constexpr std::size_t CoefficientWidth = 20;

std::string CoefficientLine(double value, const std::string& what) {
    const std::string sign = value < 0 ? "-" : "+";
    return RightAligned(sign + TrimLeft(FormatNumber(std::abs(value), "###########0.0000")),
                        CoefficientWidth) +
           what + LineEnd;
}

std::string TLines(double t) {
    return RightAligned("(" + TrimLeft(FormatNumber(t, "#########0.0000")) + ")",
                        CoefficientWidth) +
           LineEnd +
           RightAligned("[" + FormatNumber(NormalPValue(std::abs(t)), "0.00000") + "]",
                        CoefficientWidth) +
           LineEnd;
}

// The equations; tA and tC are empty when the report has no t-values.
std::string EquationsText(const std::vector<std::string>& names, const Pattern& Apat,
                          const Vector& CoefA, const Vector& CoefC, const Vector* tA,
                          const Vector* tC) {
    std::string text = LineEnd;
    text += "Structural model:";
    text += LineEnd;
    text += LineEnd;
    const int k = Apat.Size();
    int r = 0;
    for (int i = 1; i <= k; ++i) {
        text += names[static_cast<std::size_t>(i - 1)] + " =" + LineEnd;
        for (int j = 1; j <= k; ++j) {
            if (j == i || !Free(Apat, i, j)) {
                continue;
            }
            ++r;
            text += CoefficientLine(CoefA(r), " x " + names[static_cast<std::size_t>(j - 1)]);
            if (tA != nullptr) {
                text += TLines((*tA)(r));
            }
        }
        text += CoefficientLine(CoefC(i), " x Innovation");
        if (tC != nullptr) {
            text += TLines((*tC)(i));
        }
        text += LineEnd;
    }
    return text;
}

} // namespace

std::vector<std::string> StructuralNames(const Module& module) {
    std::vector<std::string> names;
    for (int i = 1; i <= module.store().SelectedCount(); ++i) {
        names.push_back(Trim(module.store().SelectedName(i)));
    }
    return names;
}

std::string StructuralModelText(const std::vector<std::string>& names, const Pattern& Apat,
                                const Vector& CoefA, const Vector& CoefC) {
    return EquationsText(names, Apat, CoefA, CoefC, nullptr, nullptr);
}

std::string StructuralModelTextWithT(const std::vector<std::string>& names, const Pattern& Apat,
                                     const Vector& CoefA, const Vector& CoefC, const Vector& tA,
                                     const Vector& tC) {
    std::string text = EquationsText(names, Apat, CoefA, CoefC, &tA, &tC);
    text += "(t-values in parenthesis)";
    text += LineEnd;
    text += "[p-values in parenthesis (two-sided, based on the normal approximation)]";
    text += LineEnd;
    return text;
}

// Decision: equations without t-values say why, as the test of the zero moments and the response
// bands do when the FIML variance of L is missing.
std::string NoTValuesText() {
    return std::string("The t-values cannot be computed without the FIML variance of L.") +
           LineEnd + LineEnd;
}

std::string MatrixText(const Matrix& matrix, const std::string& picture, std::size_t width) {
    std::string text;
    for (int i = 1; i <= matrix.Rows(); ++i) {
        for (int j = 1; j <= matrix.Cols(); ++j) {
            text += RightAligned(FormatNumber(matrix(i, j), picture), width);
        }
        text += LineEnd;
    }
    return text;
}

} // namespace lorvane
