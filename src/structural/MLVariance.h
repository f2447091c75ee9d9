#pragma once

#include <functional>
#include <vector>

#include "frame/Int16.h"
#include "numeric/Matrix.h"
#include "numeric/Pattern.h"
#include "structural/StructuralFiles.h"

namespace lorvane {

// The step of the central differences of the maximum likelihood variances, for series whose
// errors are of the size of growth rates; an element of column j of B moves by it times the
// inverse of the power of ten of the units of variable j (UnitPowers).
inline constexpr double MLStep = 0.001;

// B^-1 at b (B placed by the pattern) by the decimal inversion, with B's determinant. Flag 1
// when the inversion finds B singular; the inverse is then zero.
Matrix BInverseAt(const Pattern& Apat, const std::vector<double>& b, double& determinant,
                  Int16& flag);

// The asymptotic variance of b by the score rule: the inverse of the average outer product of
// the observations' scores, each observation contributing 0.5 ln det(B'B) - 0.5 u'(B'B)u, over
// the first Tn rows of the residuals u. stepDone runs after each observation. False when the
// average is singular.
bool ScoreVarianceOfB(const Pattern& Apat, std::vector<double> b, const Matrix& u, double Tn,
                      Matrix& VarB, const std::function<void()>& stepDone = {});

// The asymptotic variance of the elements of B^-1 at the places given (row by row), D VarB D'
// with D the derivatives of those elements with respect to b. False when B is singular one step
// away from b.
bool VarianceOfFactor(const Pattern& Apat, std::vector<double> b, const Matrix& VarB,
                      const std::vector<FactorPlace>& places, Matrix& VarBInv);

// The asymptotic variances of the structural coefficients CoefA and CoefC, DA VarB DA' and
// DC VarB DC'. False when a diagonal element of B falls below 1E-30 one step away from b.
bool VarianceOfCoefficients(const Pattern& Apat, std::vector<double> b, const Matrix& VarB,
                            Matrix& VA, Matrix& VC);

} // namespace lorvane
