#pragma once

#include <string>
#include <vector>

#include "frame/Int16.h"
#include "numeric/Matrix.h"

namespace lorvane {

class EstimationView;
struct Workspace;

// The step of the central differences of the scores, for series whose errors are of the size
// of growth rates; an element in row i of L moves by ScoreStep times the power of ten of the
// units of variable i (UnitPowers).
inline constexpr double ScoreStep = 0.0001;

// The number of free elements of a lower triangular k by k matrix, (k^2 + k) / 2.
Int16 FreeElementCount(int k);

// The log-likelihood of one observation's residuals without its constant, with Sigma = LL':
// -0.5 u(t)' Sigma^-1 u(t) - 0.5 ln det Sigma. Sigma is inverted once, when it is made.
class ObservationLogLikelihood {
public:
    // Flag 1 when the inversion of Sigma fails or its determinant is not positive.
    ObservationLogLikelihood(const Matrix& L, Int16 k, Int16& flag);
    // Observation t of the residuals u (T by k); 0 when the flag was 1.
    double At(int t, const Matrix& u) const;

private:
    Matrix inverse_;
    double logDeterminant_ = 0;
    bool failed_ = false;
};

// The residuals of U.TMP, u(t, i) for t = 1..T and i = 1..k, k the model's count of variables:
// a file of another count is the file's read error.
Matrix ReadResiduals(const Workspace& workspace, int T, int k);

// What the variance computation of L ends in.
enum class VarianceOfL { Done, LSingular, ScoresSingular };

// The variance matrix VL of the square root of T times the error of the free elements of L
// (numbered row by row over the lower triangle): the inverse of the average outer product of
// the observations' numerical scores. An inverse whose diagonal is not positive counts as a
// singular outer product.
VarianceOfL ComputeVarianceOfL(EstimationView& view, const Matrix& L, const Matrix& u, double T,
                               Matrix& VL);

// A place (row i, column j) of a matrix.
struct ElementPlace {
    int i;
    int j;
};

// The same for the elements of L at the given places, L being any square factor of Sigma = LL'.
VarianceOfL ComputeScoreVariance(EstimationView& view, Matrix L,
                                 const std::vector<ElementPlace>& places, const Matrix& u, double T,
                                 Matrix& VL);

// The concentrated log-likelihood T (-ln P - k/2 - (k/2) ln 2 pi), P the product of the
// diagonal of L.
double ConcentratedLogLikelihood(const Matrix& L, double T);

// The report of L with the t-values and p-values of its free elements, their notes and the
// log-likelihood.
std::string LReportText(const Matrix& L, const Matrix& VL, double T);

// Writes WALDTN.TMP: WALDT.TMP extended by the free elements of L and their variance, with zero
// covariance against the coefficients; then copies it over WALDT.TMP.
void ExtendWaldFile(EstimationView& view, const Matrix& L, const Matrix& VL, double T);

} // namespace lorvane
