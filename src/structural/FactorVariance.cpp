#include "structural/FactorVariance.h"

#include <cmath>

#include "estimate/EstimationView.h"
#include "estimate/FimlVariance.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "structural/StructuralFiles.h"

namespace lorvane {

namespace {

constexpr std::size_t ColumnWidth = 15;

} // namespace

bool ComputeVarianceOfFactor(EstimationView& view, const Matrix& F, FactorVariance& result) {
    const Module& module = view.module;
    const int k = F.Rows();
    const double n = module.SampleLast - (module.SampleFirst + module.p) + 1;
    const Matrix u = ReadResiduals(module, static_cast<int>(n), k);
    const std::vector<FactorPlace> places = NonzeroPlaces(F);
    if (ComputeScoreVariance(view, F, places, u, n, result.VarBInv) != VarianceOfL::Done) {
        return false;
    }
    result.t.Resize(static_cast<int>(places.size()));
    for (int r = 1; r <= result.t.Size(); ++r) {
        const FactorPlace& place = places[static_cast<std::size_t>(r - 1)];
        result.t(r) =
            CheckedDivide(CheckedSqrt(n) * F(place.i, place.j), CheckedSqrt(result.VarBInv(r, r)));
    }
    Int16 flag;
    const ObservationLogLikelihood term(F, k, flag);
    double sum = 0;
    for (int t = 1; t <= static_cast<int>(n); ++t) {
        sum += term.At(t, u);
    }
    const double pi = 4 * std::atan(1.0);
    result.logLikelihood = sum - n * ToSingle(k / 2.0) * std::log(2 * pi);
    return true;
}

std::string FactorReportText(const Matrix& F, const FactorVariance& variance) {
    std::string text = "B^-1 = \r\n\r\n";
    int r = 0;
    for (int i = 1; i <= F.Rows(); ++i) {
        std::string values;
        std::string tValues;
        for (int j = 1; j <= F.Cols(); ++j) {
            values += RightAligned(FormatNumber(F(i, j), "0.00000E+000"), ColumnWidth);
            tValues += RightAligned(
                F(i, j) != 0 ? "(" + Trim(FormatNumber(variance.t(++r), "########0.00")) + ")" : "",
                ColumnWidth);
        }
        text += values + "\r\n" + TrimRight(tValues) + "\r\n";
    }
    text += "\r\n(t-values between brackets)\r\n\r\n";
    text += "Log-likelihood: " + FormatNumber(variance.logLikelihood, "00.000000E+000") + "\r\n";
    return text;
}

} // namespace lorvane
