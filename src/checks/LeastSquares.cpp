#include "checks/LeastSquares.h"

namespace lorvane {

Eigen::MatrixXd RegressionResiduals(const Eigen::MatrixXd& Y, const Eigen::MatrixXd& X) {
    if (X.cols() == 0) {
        return Y;
    }
    return Y - X * X.colPivHouseholderQr().solve(Y);
}

Eigen::MatrixXd MeanCrossProduct(const Eigen::MatrixXd& E) {
    return E.transpose() * E / static_cast<double>(E.rows());
}

} // namespace lorvane
