#include "checks/SerialCorrelationLM.h"

#include <cmath>

#include "checks/LeastSquares.h"

namespace lorvane {

double EdgertonShukurDenominator(double T, double n, double k, int q) {
    const double m = k * q;
    const double s = std::sqrt((k * k * m * m - 4) / (k * k + m * m - 5));
    const double r = k * m / 2 - 1;
    const double N = T - n - m - (k - m + 1) / 2;
    return N * s - r;
}

int LargestTestOrder(int T, int n, int k) {
    const int m = k * (k + 1) / 2;
    int q = 0;
    while (T - n - k * (q + 1) > k && T - (q + 1) > 1 + m * (q + 1) + m &&
           EdgertonShukurDenominator(T, n, k, q + 1) >= 1) {
        ++q;
    }
    return q;
}

SerialCorrelationTest SerialCorrelationLM(const Eigen::MatrixXd& U, const Eigen::MatrixXd& X,
                                          int q) {
    const Eigen::Index T = U.rows();
    const Eigen::Index k = U.cols();
    Eigen::MatrixXd regressors = Eigen::MatrixXd::Zero(T, X.cols() + k * q);
    regressors.leftCols(X.cols()) = X;
    for (int j = 1; j <= q && j < T; ++j) {
        regressors.block(j, X.cols() + (j - 1) * k, T - j, k) = U.topRows(T - j);
    }
    const Eigen::MatrixXd Se = MeanCrossProduct(RegressionResiduals(U, regressors));
    const Eigen::MatrixXd SR = MeanCrossProduct(RegressionResiduals(U, X));

    SerialCorrelationTest test;
    const double n = static_cast<double>(T);
    const double K = static_cast<double>(k);
    test.LM = n * (K - SR.ldlt().solve(Se).trace());
    test.DegreesOfFreedom = static_cast<int>(k * k * q);

    const double m = K * q;
    const double s = std::sqrt((K * K * m * m - 4) / (K * K + m * m - 5));
    const double denominator = EdgertonShukurDenominator(n, static_cast<double>(X.cols()), K, q);
    const double unexplained = Se.determinant() / SR.determinant();
    test.Numerator = K * m;
    test.F = (std::pow(unexplained, -1 / s) - 1) * denominator / test.Numerator;
    // Decision: the statistic takes N s - r as it is, its p-value and critical values the whole
    // part of it, as the tables of the F distribution do.
    test.Denominator = std::floor(denominator);
    return test;
}

} // namespace lorvane
