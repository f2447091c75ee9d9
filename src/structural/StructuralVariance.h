#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "frame/Int16.h"
#include "numeric/Matrix.h"
#include "numeric/Pattern.h"
#include "structural/MomentConditions.h"
#include "structural/SymbolicSolver.h"

namespace lorvane {

struct Workspace;

// The structural model at a given L: the moment system of the pattern, solved again for the
// inverse of LL'. Serves the derivatives of the variance, the test of the moment zeros and the
// start values of the likelihood search.
class StructuralSystem {
public:
    // The system of the pattern: B'B as text (BuildMomentMatrix), its elements on and below
    // the diagonal that are not "0" the equations, the others the moment zeros.
    explicit StructuralSystem(const Pattern& Apat);

    // The inverse of LL' with every element rounded to single precision in the units of the data.
    // Decision: the printed moment system and the solved one are the same numbers, this one
    // rounding; a plain rounding for the report beside this one for the solver printed a system
    // that the printed solution did not solve. False when LL' is singular.
    bool RoundedMoments(const Matrix& L, Matrix& rounded) const;
    // The right-hand sides of the system at L: the rounded moments at the places of the
    // equations. False when LL' is singular.
    bool RightHandSides(const Matrix& L, std::vector<double>& rhs) const;

    // Solves the system at L through the text lists of the solver, silently; B, CoefA and CoefC
    // from the solution. ok = 0 when LL' is singular, the solve fails or B has a diagonal
    // element that is not positive.
    // singular, when given, tells whether a failure came from the inversion of LL'.
    void SolveAtL(const Matrix& L, Vector& CoefA, Vector& CoefC, Int16& ok, Matrix* B = nullptr,
                  bool* singular = nullptr) const;
    // The values b of the solution at L from the term tables compiled once; false when LL' is
    // singular or the solve fails.
    bool SolutionAtLFast(const Matrix& L, std::vector<double>& b) const;
    // The same from the term tables compiled once; the same solutions.
    void SolveAtLFast(const Matrix& L, Vector& CoefA, Vector& CoefC, Int16& ok,
                      Matrix* B = nullptr) const;

    // The elements of the inverse of LL' at the places where B'B is "0", in the order of the
    // report (rows, then the columns up to the diagonal). ok = 0 when LL' is singular.
    Vector MomentZeros(const Matrix& L, Int16& ok) const;

    int StarCount() const { return static_cast<int>(zeros_.size()); }
    Int16 ParameterCount() const { return parameterCount_; }
    const std::vector<std::string>& Equations() const { return lhs_; }
    // The places (i, j), j <= i, of the equations, in their order.
    const std::vector<std::pair<int, int>>& EquationPlaces() const { return equations_; }

private:
    bool Coefficients(const std::vector<double>& b, Vector& CoefA, Vector& CoefC, Matrix* B) const;

    Pattern Apat_;
    Int16 parameterCount_;
    std::vector<std::string> lhs_;
    std::vector<std::pair<int, int>> equations_;
    // The places of the moment zeros.
    std::vector<std::pair<int, int>> zeros_;
    std::unique_ptr<CompiledSystem> compiled_;
};

// The variance matrix W of the limiting distribution of the free elements of L (the last M rows
// and columns of the variance in BWALDT.TMP, M = (k^2 + k) / 2) and T. ok = 0 when the file does
// not end with the M elements of L, as after OLS or SUR without FIML.
void ReadVarianceOfL(const Workspace& workspace, int k, Matrix& W, double& T, Int16& ok);

// What the variance of the structural coefficients ends in.
// Singular: the last failing solve could not invert LL'.
enum class StructuralVarianceResult { Done, SolveFailed, Singular };

// The delta-method variance of the structural coefficients: derivatives of CoefA and CoefC with
// respect to the free elements of L by central differences of silent re-solves (step 1E-05,
// divided by 10 at each failing solve, at most five times per element), then VA = DA W DA' and
// VC = DC W DC'. progress receives the percentage of elements done.
struct StructuralVariance {
    Vector CoefA;
    Vector CoefC;
    Matrix VA;
    Matrix VC;
    Vector tA;
    Vector tC;
};
// SolveAt is the solve at a given L, as StructuralSystem::SolveAtL.
using SolveAt =
    std::function<void(const Matrix& L, Vector& CoefA, Vector& CoefC, Int16& ok, bool* singular)>;
StructuralVarianceResult ComputeStructuralVariance(const SolveAt& solve, Matrix L, const Matrix& W,
                                                   double T, StructuralVariance& result,
                                                   const std::function<void(int)>& progress);

// The Wald statistic of the moment zeros (the (*) restrictions): T m' (G W G')^-1 m with m the
// zeros at L and G their derivatives (step 0.001). ok = 0 on a singular inversion.
double TestMomentZeros(const StructuralSystem& system, Matrix L, const Matrix& W, double T,
                       Int16& ok);

} // namespace lorvane
