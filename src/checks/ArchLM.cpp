#include "checks/ArchLM.h"

#include "checks/LeastSquares.h"

namespace lorvane {

ArchTest ArchLM(const Eigen::MatrixXd& U, int q) {
    const Eigen::Index T = U.rows();
    const Eigen::Index k = U.cols();
    const Eigen::Index m = k * (k + 1) / 2;
    Eigen::MatrixXd vech(T, m);
    for (Eigen::Index t = 0; t < T; ++t) {
        Eigen::Index c = 0;
        for (Eigen::Index j = 0; j < k; ++j) {
            for (Eigen::Index i = j; i < k; ++i) {
                vech(t, c++) = U(t, i) * U(t, j);
            }
        }
    }
    const Eigen::Index n = T - q;
    Eigen::MatrixXd regressors(n, 1 + m * q);
    regressors.col(0).setOnes();
    for (int j = 1; j <= q; ++j) {
        regressors.middleCols(1 + (j - 1) * m, m) = vech.middleRows(q - j, n);
    }
    const Eigen::MatrixXd Y = vech.bottomRows(n);
    const Eigen::MatrixXd S = MeanCrossProduct(RegressionResiduals(Y, regressors));
    const Eigen::MatrixXd S0 = MeanCrossProduct(RegressionResiduals(Y, regressors.leftCols(1)));

    const double size = static_cast<double>(k * (k + 1));
    ArchTest test;
    test.LM = static_cast<double>(n) * size / 2 * (1 - 2 / size * S0.ldlt().solve(S).trace());
    test.DegreesOfFreedom = static_cast<int>(k * k * (k + 1) * (k + 1) * q / 4);
    return test;
}

} // namespace lorvane
