#pragma once

#include <vector>

#include <Eigen/Dense>

namespace lorvane {

// An eigenvalue of the companion matrix.
struct CompanionRoot {
    double Real = 0;
    double Imaginary = 0;
    double Modulus = 0;
};

// The eigenvalues of the companion matrix of A = [A(1) .. A(p)] (k by kp), the largest modulus
// first; of a conjugate pair the one with the positive imaginary part comes first.
std::vector<CompanionRoot> CompanionRoots(const Eigen::MatrixXd& A);

// Decision: a root whose modulus shows as 1 at the six decimals of the report (0.9999995 or
// more) counts as a unit root, so that no VAR whose table shows a modulus of 1.000000 is called
// stable.
bool IsStable(const std::vector<CompanionRoot>& roots);

} // namespace lorvane
