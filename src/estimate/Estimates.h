#pragma once

#include "numeric/Matrix.h"

namespace lorvane {

// The results of one estimation of the system: the coefficients of all equations end to end,
// the asymptotic variance matrix of the square root of T times their error, the error variance
// matrix (divisor T), and the total and residual sums of squares of each equation.
struct Estimates {
    Vector b;     // 1..K
    Matrix V;     // K by K
    Matrix Sigma; // k by k
    Vector TSS;   // 1..k
    Vector RSS;   // 1..k
};

} // namespace lorvane
