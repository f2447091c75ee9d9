#pragma once

#include <Eigen/Dense>

namespace lorvane {

// An estimated VAR as the forecasts need it:
//   y(t) = A1 y(t-1) + ... + Ap y(t-p) + C d(t) + u(t).
// A holds [A1 ... Ap] side by side (n by n p) with zeros where the pattern Z is 0; C holds the
// deterministic coefficients (n by d). The parameter vector of V runs equation by equation:
// the free lag coefficients (lag outer, variable inner, where Z(i, j) = 1), then the equation's
// d deterministic coefficients. V is the variance of the square root of T times the estimation
// error of that vector; Sigma the residual variance with divisor T.
struct ForecastModel {
    int p = 0;
    Eigen::MatrixXi Z;
    Eigen::MatrixXd A;
    Eigen::MatrixXd C;
    Eigen::MatrixXd Sigma;
    Eigen::MatrixXd V;
    double T = 0;

    int n() const { return static_cast<int>(Z.rows()); }
    int d() const { return static_cast<int>(C.cols()); }
    // The number of coefficients of the parameter vector.
    int Coefficients() const;
    // A(k) for k = 1..p.
    Eigen::MatrixXd Lag(int k) const;
};

} // namespace lorvane
