#pragma once

#include <vector>

#include "numeric/Matrix.h"

namespace lorvane {

// The numerical derivatives of the module take their steps in the units of the data. Each step
// (0.0001 for the scores, 0.001 for the responses, ...) was made for series whose errors have a
// standard deviation of about 0.02, as growth rates written as fractions have. For other series
// a step moves by the powers of ten that separate the series from that size, in the units of
// the parameter it moves, so that a change of units changes the step exactly as it changes the
// parameter, and derivatives, t-values and standard errors follow the change exactly.

// The power of ten of the units of each variable: the whole number nearest to
// log10(s(i) / 0.02), where s(i) is the length of row i of a square factor F of the error
// variance (F F' = Sigma), that is the standard deviation of the errors of variable i. 0 for a
// row of zeros.
std::vector<int> UnitPowers(const Matrix& factor);

// 10^power, as near as a double comes.
double PowerOfTen(int power);

} // namespace lorvane
