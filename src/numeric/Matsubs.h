#pragma once

#include <functional>
#include <string>

#include "frame/Int16.h"
#include "numeric/Decimal.h"
#include "numeric/Matrix.h"

namespace lorvane {

class Boxes;

// The determinant an inversion finds: the product of its decimal pivots, times the power of ten
// that undoes the scaling of the matrix. The product is kept as a decimal between 1 and 10 in
// magnitude with its power of ten apart, so that it keeps its digits and neither underflows nor
// overflows, whatever the units of the matrix.
class Determinant {
public:
    // 1.
    Determinant() : mantissa_(Decimal::FromInteger(1)) {}

    void MultiplyBy(const Decimal& factor);
    void MultiplyByPowerOfTen(int power) { power_ += power; }
    void SetZero() { mantissa_ = Decimal(); }

    // -1, 0 or 1.
    int Sign() const { return mantissa_.Sign(); }
    // As a double (Decimal::ToDouble): 0 below the range of doubles, an infinity beyond it.
    double Value() const { return mantissa_.ToDouble(power_); }
    // The natural logarithm, whatever the size; error 5 when the determinant is not positive,
    // as for any logarithm.
    double Log() const;

private:
    Decimal mantissa_;
    int power_ = 0;
};

// What the residual check of an inversion found: the largest deviation of Matrix * Inverse from
// the identity, computed in decimal. It is information only; the flag never depends on it.
struct InversionResidual {
    double largestDeviation = 0.0;
    bool poor = false; // the deviation exceeds 0.001
};

// Inverts the top left Size by Size block of `matrix` (Size is rounded to a whole number) in
// 96-bit decimal arithmetic, with the determinant as a by-product. A lower row whose element
// beats the diagonal by more than a factor 100 is added to (or subtracted from) the pivot row
// instead of interchanging rows. Flag 1 and Determinant 0 tell a pivot below 1E-10, and then
// `inverse` is left as it was; otherwise Flag is 0. Every decimal statement that overflows is
// skipped and the inversion goes on. A 1 by 1 matrix is inverted in doubles and keeps the
// determinant 1. `inverse` is enlarged to Size by Size when it is smaller. A `matrix` smaller
// than Size raises error 9.
//
// Equilibration: before the elimination, row and column i are both multiplied by 10^-e(i),
// where e(i) is the whole number that brings the diagonal element into [0.1, 10) (0 for a zero
// diagonal element), and the scaling is undone on the inverse and the determinant. Moving a
// decimal point is exact, so the answers do not depend on the units of the matrix, and a
// matrix whose diagonal already lies in [0.1, 10) is inverted exactly as without the scaling.
// The tolerance 1E-10, the margin 100 and the skipped statements apply to the scaled matrix:
// truly collinear rows are still singular, badly scaled ones are not.
//
// The residual check (Matrix * Inverse against the identity, in decimal, on the scaled matrix)
// decides nothing; it is made only when `residual` asks for its result. `eachRow`, when given,
// is called after every row of the elimination and of the back substitution, so that a long
// inversion can keep the screen alive.
void InvertMatrix(const Matrix& matrix, Matrix& inverse, Determinant& determinant, double size,
                  Int16& flag, InversionResidual* residual = nullptr,
                  const std::function<void()>& eachRow = {});
// The same with the determinant as a double (Determinant::Value): for callers that only test
// it, never for its logarithm.
void InvertMatrix(const Matrix& matrix, Matrix& inverse, double& determinant, double size,
                  Int16& flag, InversionResidual* residual = nullptr,
                  const std::function<void()>& eachRow = {});

// Crout's LDU decomposition in place, without pivoting: afterwards `matrix` holds the unit lower
// triangle below the diagonal, the pivots on it and the unit upper triangle above it. Flag 1
// tells a pivot of exactly 0, at which the decomposition stops.
void CroutDecompose(Matrix& matrix, double size, Int16& flag);

// The lower triangular factor L with L * L' = `matrix` for a symmetric positive definite matrix.
// A zero pivot shows "LL decomposition of a symmetric matrix failed due to near-singularity" in
// an error box titled `title` and gives Flag 1; a negative pivot raises error 5 from the square
// root. `factor` is enlarged to Size by Size when it is smaller.
void LLDecomposition(const Matrix& matrix, Matrix& factor, Int16 size, Int16& flag, Boxes& boxes,
                     const std::string& title);

} // namespace lorvane
