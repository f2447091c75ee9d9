#pragma once

#include <Eigen/Dense>

namespace lorvane {

// The residuals of the least-squares regression of each column of Y on the columns of X, by a
// rank-revealing QR decomposition of X.
Eigen::MatrixXd RegressionResiduals(const Eigen::MatrixXd& Y, const Eigen::MatrixXd& X);

// The moment matrix E'E / n of the rows of E.
Eigen::MatrixXd MeanCrossProduct(const Eigen::MatrixXd& E);

} // namespace lorvane
