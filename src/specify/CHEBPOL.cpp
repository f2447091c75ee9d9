#include "specify/CHEBPOL.h"

#include <cmath>

namespace lorvane {

namespace {

// The polynomials use pi to fifteen digits.
constexpr double Pi = 3.14159265358979;

} // namespace

double CHEBPOL::RegularChebishev(int t, int k, int n) {
    if (k == 0) {
        return 1.0;
    }
    return std::sqrt(2.0) * std::cos(k * Pi * (t - 0.5) / n);
}

void CHEBPOL::BuildTables(int n, int q) {
    const int size = q / 2 + 2;
    a_.assign(static_cast<std::size_t>(size) + 1, 0.0);
    d_.assign(static_cast<std::size_t>(size) + 1, 0.0);
    ad_.assign(static_cast<std::size_t>(size) + 1, 0.0);
    s_.assign(static_cast<std::size_t>(size) + 1, 0.0);
    const double n2 = static_cast<double>(n) * n;
    for (int j = 1; j <= size; ++j) {
        const auto i = static_cast<std::size_t>(j);
        const double x = (j - 0.5) * Pi / n;
        const double sine = std::sin(x);
        a_[i] = -std::cos(x) / (n2 * sine * sine * std::sqrt(2.0));
        d_[i] = j == 1 ? (n2 - 1.0) / (12.0 * n2) : d_[i - 1] - a_[i - 1] * a_[i - 1];
        ad_[i] = a_[i] / d_[i];
        s_[i] = std::sqrt(std::fabs(1.0 - a_[i] * a_[i] / d_[i]));
    }
    tableN_ = n;
    tableQ_ = q;
}

double CHEBPOL::DetrendedChebishev(int t, int k, int n, int q) {
    if (k == 0) {
        return 1.0;
    }
    if (k == 1) {
        return (t - (n + 1) / 2.0) / std::sqrt((static_cast<double>(n) * n - 1.0) / 12.0);
    }
    if (k % 2 == 1) {
        return RegularChebishev(t, k - 1, n);
    }
    if (n != tableN_ || q != tableQ_) {
        BuildTables(n, q);
    }
    const int big = k / 2;
    const auto J = static_cast<std::size_t>(big);
    double value = RegularChebishev(t, 2 * big - 1, n) -
                   ad_[J] * (static_cast<double>(t) / n - (n + 1) / (2.0 * n));
    for (int j = 1; j < big; ++j) {
        const auto i = static_cast<std::size_t>(j);
        value += a_[i] * ad_[J] * RegularChebishev(t, 2 * j - 1, n);
    }
    return value / s_[J];
}

} // namespace lorvane
