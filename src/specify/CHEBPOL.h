#pragma once

#include <vector>

namespace lorvane {

// Chebishev time polynomials over positions t = 1..n. The regular polynomial of order k >= 1 is
// sqrt(2) cos(k pi (t - 0.5) / n); the detrended ones replace the first cosine by the
// standardized linear trend and make the odd cosines orthogonal to it.
class CHEBPOL {
public:
    static double RegularChebishev(int t, int k, int n);
    // q, the highest order in use, sizes the tables; they are rebuilt only when n or q change.
    double DetrendedChebishev(int t, int k, int n, int q);

private:
    void BuildTables(int n, int q);

    int tableN_ = -1;
    int tableQ_ = -1;
    // 1-based: a(j), d(j), a(j)/d(j), s(j) for j = 1 .. q/2 + 2.
    std::vector<double> a_;
    std::vector<double> d_;
    std::vector<double> ad_;
    std::vector<double> s_;
};

} // namespace lorvane
