#pragma once

#include <vector>

#include "numeric/Matrix.h"
#include "numeric/Pattern.h"

namespace lorvane {

// What the simplex search minimises over the free elements b of B (numbered row by row over the
// places of the pattern whose absolute value is 1), given the variance S of the nonstructural
// errors, its inverse SInv and the number of observations T. The constant c0 of the log
// likelihood lives outside, as long as the screen that searches.
class SimplexObjectives {
public:
    SimplexObjectives(Pattern Apat, Matrix S, Matrix SInv, double T, double& c0);

    // T (0.5 ln det(B'B) - 0.5 tr(S B'B) + c0). A free diagonal element at or below 0 gives
    // -1E+30 at once. The determinant comes from the decimal inversion; a singular B'B counts as
    // a determinant of 1E-30.
    double LogLikelihood(const std::vector<double>& b);
    // The largest absolute difference between the elements of B'B and SInv, in single precision.
    double MaximumAbsoluteDeviation(const std::vector<double>& b) const;
    // The constant -n ln sqrt(2 pi) of the log likelihood. It is computed when first needed and
    // kept; only a stored value of exactly 0 is computed again.
    double Constant();
    // The log likelihood of the nonstructural VAR, T (-n/2 - ln(DetS)/2 + c0), with a DetS that
    // is not positive counting as 1E-30.
    double NonstructuralLogLikelihood(double DetS);

    const Pattern& Apat() const { return Apat_; }
    const Matrix& SInv() const { return SInv_; }

private:
    Pattern Apat_;
    Matrix S_;
    Matrix SInv_;
    double T_;
    double& c0_;
    // The free places on the diagonal, as positions in b.
    std::vector<std::size_t> diagonal_;
    Matrix inverse_;
};

// The value the search minimises: -LogLikelihood with option 1, the MAD with option 0 (the
// user's option 2).
double SimplexValue(SimplexObjectives& objectives, int option, const std::vector<double>& b);

} // namespace lorvane
