#include "checks/Portmanteau.h"

namespace lorvane {

PortmanteauTest Portmanteau(const Eigen::MatrixXd& U, int h, int freeLags) {
    const Eigen::Index T = U.rows();
    const auto k = static_cast<int>(U.cols());
    const double n = static_cast<double>(T);
    const Eigen::MatrixXd C0inverse = (U.transpose() * U / n).inverse();
    PortmanteauTest test;
    for (int j = 1; j <= h && j < T; ++j) {
        const Eigen::MatrixXd Cj = U.bottomRows(T - j).transpose() * U.topRows(T - j) / n;
        const double term = (Cj.transpose() * C0inverse * Cj * C0inverse).trace();
        test.Q += n * term;
        test.QAdjusted += n * n / (n - j) * term;
    }
    test.DegreesOfFreedom = k * k * h - freeLags;
    return test;
}

} // namespace lorvane
