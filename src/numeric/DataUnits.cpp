#include "numeric/DataUnits.h"

#include <algorithm>
#include <cmath>

namespace lorvane {

namespace {

// The size of the errors the steps were made for.
constexpr double ReferenceDeviation = 0.02;

} // namespace

std::vector<int> UnitPowers(const Matrix& factor) {
    std::vector<int> powers;
    for (int i = 1; i <= factor.Rows(); ++i) {
        // The length relative to the largest element, so that no square underflows or
        // overflows.
        double largest = 0;
        for (int j = 1; j <= factor.Cols(); ++j) {
            largest = std::max(largest, std::abs(factor(i, j)));
        }
        double sum = 0;
        for (int j = 1; j <= factor.Cols() && largest > 0; ++j) {
            sum += (factor(i, j) / largest) * (factor(i, j) / largest);
        }
        const double deviation = largest * std::sqrt(sum);
        powers.push_back(
            deviation > 0 && std::isfinite(deviation)
                ? static_cast<int>(std::lround(std::log10(deviation / ReferenceDeviation)))
                : 0);
    }
    return powers;
}

double PowerOfTen(int power) {
    // 10^0 to 10^22 are exact doubles, and 1 / 10^n is then rounded once.
    if (power >= 0 && power <= 22) {
        return std::pow(10.0, power);
    }
    if (power < 0 && power >= -22) {
        return 1.0 / std::pow(10.0, -power);
    }
    return std::pow(10.0, power);
}

} // namespace lorvane
