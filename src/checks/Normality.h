#pragma once

#include <Eigen/Dense>

namespace lorvane {

// The multivariate Jarque-Bera test and its skewness and kurtosis parts, each chi-square with k
// degrees of freedom (2k for the sum).
struct NormalityTest {
    double Skewness = 0;
    double Kurtosis = 0;
    double JarqueBera = 0;
    int DegreesOfFreedom = 0;
};

// The residuals U (T by k) are centred and standardised by the Cholesky factor P of their
// variance (divisor T), w_t = P^-1 (u_t - mean); with b1 and b2 the means of the third and
// fourth powers of w, skewness = T b1'b1 / 6 and kurtosis = T (b2 - 3)'(b2 - 3) / 24.
NormalityTest Normality(const Eigen::MatrixXd& U);

} // namespace lorvane
