#include "structural/SimplexObjectives.h"

#include <cmath>
#include <utility>

#include "frame/Int16.h"
#include "numeric/MatrixProducts.h"
#include "numeric/Matsubs.h"
#include "structural/MomentConditions.h"

namespace lorvane {

namespace {

constexpr double DeterminantFloor = 1E-30;
constexpr double Impossible = -1E+30;

} // namespace

SimplexObjectives::SimplexObjectives(Pattern Apat, Matrix S, Matrix SInv, double T, double& c0)
    : Apat_(std::move(Apat)), S_(std::move(S)), SInv_(std::move(SInv)), T_(T), c0_(c0) {
    const int n = Apat_.Size();
    std::size_t k = 0;
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            if (Apat_(i, j) == 1 || Apat_(i, j) == -1) {
                if (i == j) {
                    diagonal_.push_back(k);
                }
                ++k;
            }
        }
    }
    inverse_.Resize(n, n);
}

double SimplexObjectives::Constant() {
    if (c0_ == 0) {
        const double pi = 4 * std::atan(1.0);
        c0_ = -Apat_.Size() * std::log(std::sqrt(2 * pi));
    }
    return c0_;
}

double SimplexObjectives::LogLikelihood(const std::vector<double>& b) {
    const double c0 = Constant();
    for (const std::size_t k : diagonal_) {
        if (b[k] <= 0) {
            return Impossible;
        }
    }
    const int n = Apat_.Size();
    const Matrix M = CrossProduct(BuildB(Apat_, b));
    double tr = 0;
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            tr += S_(i, j) * M(i, j);
        }
    }
    Determinant determinant;
    Int16 flag;
    InvertMatrix(M, inverse_, determinant, n, flag);
    // A singular B'B counts as a determinant of 1E-30; any other, however small in the units of
    // the data, counts as it is.
    const double logDeterminant =
        flag == 0 && determinant.Sign() > 0 ? determinant.Log() : std::log(DeterminantFloor);
    return T_ * (0.5 * logDeterminant + (-0.5 * tr) + c0);
}

double SimplexObjectives::MaximumAbsoluteDeviation(const std::vector<double>& b) const {
    const int n = Apat_.Size();
    const Matrix M = CrossProduct(BuildB(Apat_, b));
    double largest = 0;
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            const double deviation = std::abs(M(i, j) - SInv_(i, j));
            if (deviation > largest) {
                largest = deviation;
            }
        }
    }
    return ToSingle(largest);
}

double SimplexObjectives::NonstructuralLogLikelihood(double DetS) {
    const double c0 = Constant();
    return T_ * (-0.5 * Apat_.Size() - 0.5 * std::log(DetS > 0 ? DetS : DeterminantFloor) + c0);
}

double SimplexValue(SimplexObjectives& objectives, int option, const std::vector<double>& b) {
    return option == 1 ? -objectives.LogLikelihood(b) : objectives.MaximumAbsoluteDeviation(b);
}

} // namespace lorvane
