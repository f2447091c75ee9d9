#pragma once

#include <string>

#include "numeric/Matrix.h"

namespace lorvane {

class EstimationView;

// The variance of the nonzero elements of F = B^-1 (by rows) from the information matrix of the
// observations' numerical scores (step 0.0001) over the residuals of U.TMP, with their t-values
// and the log-likelihood of the model. False when the information matrix is singular. The view's
// status shows the working time.
struct FactorVariance {
    Matrix VarBInv;
    Vector t;
    double logLikelihood = 0;
};
bool ComputeVarianceOfFactor(EstimationView& view, const Matrix& F, FactorVariance& result);

// "B^-1 = ", F by rows with the t-value of each nonzero element below it, the note on the
// brackets and the log-likelihood.
std::string FactorReportText(const Matrix& F, const FactorVariance& variance);

} // namespace lorvane
