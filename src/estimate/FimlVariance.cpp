#include "estimate/FimlVariance.h"

#include <cmath>
#include <filesystem>
#include <system_error>
#include <vector>

#include "estimate/EstimationReport.h"
#include "estimate/EstimationView.h"
#include "estimate/WaldFileWriter.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/RuntimeError.h"
#include "frame/TextFile.h"
#include "numeric/DISTRIB.h"
#include "numeric/DataUnits.h"
#include "numeric/Matsubs.h"

namespace lorvane {

namespace {

constexpr std::size_t ColumnWidth = 15;

// The places of the free elements of L, row by row.
std::vector<ElementPlace> FreePlaces(int k) {
    std::vector<ElementPlace> places;
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= i; ++j) {
            places.push_back({i, j});
        }
    }
    return places;
}

std::string PlaceName(const ElementPlace& place) {
    return "L(" + Trim(NumberToText(place.i)) + "," + Trim(NumberToText(place.j)) + ")";
}

} // namespace

Int16 FreeElementCount(int k) {
    return CInt((std::pow(k, 2) + k) / 2);
}

ObservationLogLikelihood::ObservationLogLikelihood(const Matrix& L, Int16 k, Int16& flag)
    : inverse_(k, k) {
    Matrix sigma(k, k);
    for (int i = 1; i <= k; ++i) {
        for (int j = i; j <= k; ++j) {
            double sum = 0;
            for (int m = 1; m <= k; ++m) {
                sum += L(i, m) * L(j, m);
            }
            sigma(i, j) = sigma(j, i) = sum;
        }
    }
    Int16 inversion;
    Determinant determinant;
    InvertMatrix(sigma, inverse_, determinant, k, inversion);
    failed_ = inversion == 1 || determinant.Sign() <= 0;
    flag = failed_ ? 1 : 0;
    if (!failed_) {
        // The logarithm of the determinant itself: no power of ten of Sigma's units is lost.
        logDeterminant_ = determinant.Log();
    }
}

double ObservationLogLikelihood::At(int t, const Matrix& u) const {
    if (failed_) {
        return 0;
    }
    const int k = inverse_.Rows();
    double quadratic = 0;
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= k; ++j) {
            quadratic += u(t, i) * inverse_(i, j) * u(t, j);
        }
    }
    return -0.5 * quadratic - 0.5 * logDeterminant_;
}

Matrix ReadResiduals(const Workspace& workspace, int T, int k) {
    TextInput input(workspace.DataFile("U.TMP"));
    input.ReadCount(k, k);
    input.ExpectFields(k + static_cast<long long>(T) * k);
    for (int i = 1; i <= k; ++i) {
        input.ReadField();
    }
    Matrix u(T, k);
    for (int t = 1; t <= T; ++t) {
        for (int i = 1; i <= k; ++i) {
            u(t, i) = input.ReadNumber();
        }
    }
    return u;
}

VarianceOfL ComputeVarianceOfL(EstimationView& view, const Matrix& L, const Matrix& u, double T,
                               Matrix& VL) {
    return ComputeScoreVariance(view, L, FreePlaces(L.Rows()), u, T, VL);
}

VarianceOfL ComputeScoreVariance(EstimationView& view, Matrix L,
                                 const std::vector<ElementPlace>& places, const Matrix& u, double T,
                                 Matrix& VL) {
    const Int16 k = L.Rows();
    const int nL = static_cast<int>(places.size());
    const int n = static_cast<int>(T);
    // An element of row i has the units of variable i, and so has its step.
    const std::vector<int> units = UnitPowers(L);
    std::vector<double> steps;
    // The likelihoods with each free element of L one step up and one step down do not depend
    // on the observation: their Sigmas are inverted once, not once per observation.
    std::vector<ObservationLogLikelihood> up;
    std::vector<ObservationLogLikelihood> down;
    for (const ElementPlace& place : places) {
        const double step = ScoreStep * PowerOfTen(units[static_cast<std::size_t>(place.i - 1)]);
        steps.push_back(step);
        double& element = L(place.i, place.j);
        const double kept = element;
        Int16 flag;
        element = kept + step;
        up.emplace_back(L, k, flag);
        if (flag == 1) {
            return VarianceOfL::LSingular;
        }
        element = kept - step;
        down.emplace_back(L, k, flag);
        if (flag == 1) {
            return VarianceOfL::LSingular;
        }
        element = kept;
    }
    Matrix G(nL, nL);
    Vector g(nL);
    for (int t = 1; t <= n; ++t) {
        view.Working();
        for (int c = 1; c <= nL; ++c) {
            const std::size_t index = static_cast<std::size_t>(c - 1);
            g(c) = 0.5 * (up[index].At(t, u) - down[index].At(t, u)) / steps[index];
        }
        for (int r = 1; r <= nL; ++r) {
            for (int s = 1; s <= nL; ++s) {
                G(r, s) += g(r) * g(s) / T;
            }
        }
    }
    view.Working();
    VL.Resize(nL, nL);
    double determinant = 0;
    Int16 flag;
    InvertMatrix(G, VL, determinant, nL, flag);
    if (flag == 1) {
        return VarianceOfL::ScoresSingular;
    }
    // With fewer observations than free elements G is singular, yet the inversion may pass its
    // pivot test and leave a diagonal that no variance matrix has.
    for (int c = 1; c <= nL; ++c) {
        if (!(VL(c, c) > 0)) {
            return VarianceOfL::ScoresSingular;
        }
    }
    return VarianceOfL::Done;
}

double ConcentratedLogLikelihood(const Matrix& L, double T) {
    const int k = L.Rows();
    double product = L(1, 1);
    for (int i = 2; i <= k; ++i) {
        product *= std::abs(L(i, i));
    }
    const double pi = 4 * std::atan(1.0);
    return T * (-CheckedLog(product) - k / 2.0 - (k / 2.0) * std::log(2 * pi));
}

std::string LReportText(const Matrix& L, const Matrix& VL, double T) {
    const int k = L.Rows();
    std::string text = "L = \r\n";
    int c = 0;
    for (int i = 1; i <= k; ++i) {
        std::string values;
        std::string tValues;
        std::string pValues;
        for (int j = 1; j <= k; ++j) {
            if (j > i) {
                values += RightAligned("0", ColumnWidth);
                continue;
            }
            ++c;
            const double t = TValue(T, L(i, j), VL(c, c));
            values += RightAligned(FormatNumber(L(i, j), "0.00000E+000"), ColumnWidth);
            tValues += RightAligned("(" + Trim(FormatNumber(t, "########0.00")) + ")", ColumnWidth);
            pValues += RightAligned("[" + FormatNumber(NormalPValue(std::abs(t)), "0.00000") + "]",
                                    ColumnWidth);
        }
        text += values + "\r\n" + tValues + "\r\n" + pValues + "\r\n";
    }
    text += "(t-values in parenthesis)\r\n";
    text += "[p-values in parenthesis (two-sided, based on the normal approximation)]\r\n";
    text += "Log-likelihood: " + FormatNumber(ConcentratedLogLikelihood(L, T), "00.000000E+000") +
            "\r\n";
    return text;
}

void ExtendWaldFile(EstimationView& view, const Matrix& L, const Matrix& VL, double T) {
    double fileT = 0;
    const ParameterSet old = ReadParameterSet(view.module, fileT);
    if (fileT != T) {
        Raise(InputPastEndOfFile);
    }
    ParameterSet free;
    int c = 0;
    for (const ElementPlace& place : FreePlaces(L.Rows())) {
        ++c;
        const double t = TValue(T, L(place.i, place.j), VL(c, c));
        free.rows.push_back(DisplayRow(PlaceName(place), L(place.i, place.j), t));
        free.values.push_back(L(place.i, place.j));
    }
    free.variance = VL;
    WriteCombinedWaldFile(view.module, fileT, old, free, [&view] { view.Working(); });
}

} // namespace lorvane
