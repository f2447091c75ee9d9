#include "checks/Stability.h"

#include <algorithm>

#include <Eigen/Eigenvalues>

namespace lorvane {

namespace {

constexpr double UnitModulus = 0.9999995;

} // namespace

std::vector<CompanionRoot> CompanionRoots(const Eigen::MatrixXd& A) {
    const Eigen::Index k = A.rows();
    const Eigen::Index kp = A.cols();
    Eigen::MatrixXd companion = Eigen::MatrixXd::Zero(kp, kp);
    companion.topRows(k) = A;
    companion.bottomLeftCorner(kp - k, kp - k) = Eigen::MatrixXd::Identity(kp - k, kp - k);

    const Eigen::VectorXcd values =
        Eigen::EigenSolver<Eigen::MatrixXd>(companion, false).eigenvalues();
    std::vector<CompanionRoot> roots;
    for (const std::complex<double>& value : values) {
        roots.push_back({value.real(), value.imag(), std::abs(value)});
    }
    std::ranges::stable_sort(roots, [](const CompanionRoot& a, const CompanionRoot& b) {
        if (a.Modulus != b.Modulus) {
            return a.Modulus > b.Modulus;
        }
        return a.Imaginary > b.Imaginary;
    });
    return roots;
}

bool IsStable(const std::vector<CompanionRoot>& roots) {
    return std::ranges::all_of(
        roots, [](const CompanionRoot& root) { return root.Modulus < UnitModulus; });
}

} // namespace lorvane
