#pragma once

#include <string>
#include <vector>

#include "numeric/Matrix.h"
#include "numeric/Pattern.h"

namespace lorvane {

struct Workspace;

// Whether B(i, j) is a free parameter: its place in the pattern holds 1 or -1.
bool Free(const Pattern& Apat, int i, int j);

// The coefficients of the structural equations from B: in equation i the coefficient of u(j) at
// a free place off the diagonal is a(i, j) = -B(i, j) / B(i, i), the innovation's coefficient is
// c(i) = 1 / B(i, i). CoefA holds the a(i, j) row by row over the pattern (the places whose
// absolute value is 1, the diagonal left out), CoefC the k values c(i). False, with both left
// empty, when a diagonal element of B is below 1E-30: B is then taken as singular.
bool StructuralCoefficients(const Pattern& Apat, const Matrix& B, Vector& CoefA, Vector& CoefC);

// The number of structural coefficients in A: the free places off the diagonal.
int StructuralCoefficientCount(const Pattern& Apat);

// The number of free elements b of B: the places whose absolute value is 1, the diagonal
// included.
int FreeParameterCount(const Pattern& Apat);

// The pattern of the structural model, SVARA.TMP (k by k, row by row).
Pattern ReadStructuralPattern(const Workspace& workspace, int k);

// The names of U.TMP for a model of k variables, each cleaned of blanks and enclosing quotes; a
// count other than k is the file's read error.
std::vector<std::string> ReadResidualNames(const Workspace& workspace, int k);

} // namespace lorvane
