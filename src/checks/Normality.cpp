#include "checks/Normality.h"

#include "checks/LeastSquares.h"

namespace lorvane {

NormalityTest Normality(const Eigen::MatrixXd& U) {
    const Eigen::MatrixXd centred = U.rowwise() - U.colwise().mean();
    const Eigen::MatrixXd P = MeanCrossProduct(centred).llt().matrixL();
    const Eigen::MatrixXd W =
        P.triangularView<Eigen::Lower>().solve(centred.transpose()).transpose();
    const double T = static_cast<double>(U.rows());
    const Eigen::VectorXd b1 = W.array().cube().colwise().mean();
    const Eigen::VectorXd b2 = W.array().square().square().colwise().mean() - 3;

    NormalityTest test;
    test.Skewness = T * b1.squaredNorm() / 6;
    test.Kurtosis = T * b2.squaredNorm() / 24;
    test.JarqueBera = test.Skewness + test.Kurtosis;
    test.DegreesOfFreedom = static_cast<int>(U.cols());
    return test;
}

} // namespace lorvane
