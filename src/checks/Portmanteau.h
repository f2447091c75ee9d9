#pragma once

#include <Eigen/Dense>

namespace lorvane {

// The portmanteau test of residual autocorrelation up to lag h.
struct PortmanteauTest {
    double Q = 0;
    // The small-sample form, each lag's term weighted by T / (T - j).
    double QAdjusted = 0;
    int DegreesOfFreedom = 0;
};

// Q(h) = T sum_j tr(C_j' C_0^-1 C_j C_0^-1) over j = 1..h, C_j = sum_t u_t u_(t-j)' / T, for the
// residuals U (T by k) of a VAR with freeLags free lag coefficients.
// Decision: the degrees of freedom are k^2 h less the free lag coefficients, k^2 (h - p) for an
// unrestricted VAR: every Granger zero adds p to them, as for any restricted VAR.
PortmanteauTest Portmanteau(const Eigen::MatrixXd& U, int h, int freeLags);

} // namespace lorvane
