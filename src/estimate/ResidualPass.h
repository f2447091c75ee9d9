#pragma once

#include <string>

#include "estimate/Estimates.h"

namespace lorvane {

class EstimationView;

// The pass over the sample with the coefficients b: writes the residuals to U.TMP under the
// heads "<method> residuals of <name>", and accumulates TSS (around ybar), RSS and Sigma
// (divisor T). With `cross` it also accumulates the cross moments of all regressors of all
// equations, divided by T.
void ResidualPass(EstimationView& view, double T, const Vector& ybar, const std::string& method,
                  Estimates& estimates, Matrix* cross);

} // namespace lorvane
