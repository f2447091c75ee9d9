#pragma once

#include <string>
#include <vector>

#include "frame/Int16.h"
#include "numeric/Matrix.h"
#include "structural/MomentConditions.h"

namespace lorvane {

// The pieces of the identification report of a structural model, each a run of lines ending in
// CR LF ("blank line" being an empty line).

// "Structural model:", A.u = C.e, and u(i) = name for each variable.
std::string ModelHeadText(const std::vector<std::string>& names);

// A matrix by rows, each element in "0.00000E+00" right-aligned in 15 characters.
std::string MomentMatrixText(const Matrix& matrix);

// Bname by rows, each element right-aligned in 6 characters.
std::string BNameText(const TextMatrix& Bname);

// "(C^-1)A = B ...", the moment conditions B'B = inverse of Var(u) and the head of the system.
std::string MomentConditionsText(const TextMatrix& Bname, const TextMatrix& Moment,
                                 const Matrix& VarUInverse);

// One line per element on and below the diagonal, Moment = value, the values as the solver
// receives them (already rounded), the zeros marked " (*)"; StarCount counts the marks.
std::string SystemLinesText(const TextMatrix& Moment, const Matrix& rounded, Int16& StarCount);

// The note on the (*) restrictions, for StarCount above 0.
std::string StarNoteText(int StarCount);

// The Wald test of the (*) restrictions with its chi-square report.
std::string StarTestText(double statistic, Int16 StarCount);

// The verdict of M = (k^2 + k) / 2 against P: goOn is false for an underidentified model.
std::string CountVerdictText(int k, int ParameterCount, int EquationCount, bool& goOn);

} // namespace lorvane
