#pragma once

#include <optional>
#include <string>
#include <vector>

#include "numeric/Matrix.h"

namespace lorvane {

// The texts of the simplex search and of its maximum likelihood estimate; lines end in CR LF.

// The one line that shows the search at work: the counter, the log likelihood (option 1) or the
// MAD (option 0) of the lowest vertex, and its elements.
std::string IterationLine(int option, double iteration, const std::vector<double>& vertex,
                          double value);

// "b(k) = value" for each free element.
std::string SolutionLines(const std::vector<double>& b);

// The report at the end of a run: the solution, the two log likelihoods, what the refinement of
// the simplex result added (when it ran), B'B beside the inverse of the variance of the
// nonstructural errors, and the advice to restart.
std::string SimplexRunText(int option, const std::vector<double>& b, double LL,
                           double nonstructuralLL, const Matrix& BB, const Matrix& SInv,
                           std::optional<double> refinementGain = std::nullopt);

// The estimate's report: the solution, the log likelihoods, B, B'B, SInv and their largest
// absolute deviation.
std::string EstimateText(const std::vector<double>& b, double LL, double nonstructuralLL,
                         const Matrix& B, const Matrix& BB, const Matrix& SInv, double MAD);

// "Matrix B^-1:" and its rows, an element of exactly 0 shown as blanks.
std::string BInverseText(const Matrix& BInv);

// A heading and a variance matrix, its cells in "0.00000E+00" separated by a blank.
std::string VarianceText(const std::string& heading, const Matrix& V);

} // namespace lorvane
