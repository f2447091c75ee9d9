#pragma once

#include <Eigen/Dense>

namespace lorvane {

// The Breusch-Godfrey test of residual autocorrelation of order q and its F form by Edgerton
// and Shukur.
struct SerialCorrelationTest {
    double LM = 0;
    int DegreesOfFreedom = 0;
    double F = 0;
    double Numerator = 0;
    double Denominator = 0;
};

// The auxiliary regression of the residuals U (T by k) on the model's regressors X (T by n)
// and q lags of the residuals (zero before the sample), against the one on X alone:
// LM = T (k - tr(S_R^-1 S_e)), chi-square with k^2 q degrees of freedom; with
// R^2 = 1 - |S_e| / |S_R|, F = ((1 - R^2)^(-1/s) - 1) (N s - r) / (k m) with m = k q,
// s = sqrt((k^2 m^2 - 4) / (k^2 + m^2 - 5)), r = k m / 2 - 1, N = T - n - m - (k - m + 1) / 2,
// F with k m and the whole part of N s - r degrees of freedom.
// N s - r of the F form for T observations, n regressors of the model, k variables and order q.
double EdgertonShukurDenominator(double T, double n, double k, int q);

// The largest order q for which the tests of order q can be computed on T observations of k
// variables with n regressors in the model: the auxiliary regressions keep more than k degrees
// of freedom and the F form a positive denominator; 0 when there is none.
int LargestTestOrder(int T, int n, int k);

SerialCorrelationTest SerialCorrelationLM(const Eigen::MatrixXd& U, const Eigen::MatrixXd& X,
                                          int q);

} // namespace lorvane
