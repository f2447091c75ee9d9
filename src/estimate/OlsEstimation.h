#pragma once

#include "estimate/Estimates.h"
#include "frame/Int16.h"

namespace lorvane {

class EstimationView;

// Equation-by-equation OLS over the regression files in two passes: the moments and the
// coefficients, then the residuals (U.TMP), the sums of squares, Sigma and the variance matrix V
// of the whole system, whose block (i, j) is Sigma(i, j) Inv(i) C(i, j) Inv(j) with Inv(i) the
// inverse of the moment matrix of equation i and C the cross moments of all regressors.
// K is the coefficient count the screen expects; files that disagree are an internal error.
// Returns 1 (with the message appended to the results) when an X'X matrix is singular, else 0.
Int16 EstimateOLS(EstimationView& view, Int16 K, double T, Estimates& estimates);

} // namespace lorvane
