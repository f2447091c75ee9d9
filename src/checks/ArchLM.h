#pragma once

#include <Eigen/Dense>

namespace lorvane {

// The multivariate ARCH-LM test of order q.
struct ArchTest {
    double LM = 0;
    int DegreesOfFreedom = 0;
};

// The regression of vech(u_t u_t') on a constant and its own q lags over t = q+1..T, against the
// constant alone: with n = T - q observations and R^2 = 1 - 2 / (k (k+1)) tr(S S0^-1),
// LM = n k (k+1) R^2 / 2, chi-square with k^2 (k+1)^2 q / 4 degrees of freedom.
ArchTest ArchLM(const Eigen::MatrixXd& U, int q);

} // namespace lorvane
