#pragma once

#include <string>
#include <vector>

#include "estimate/FimlVariance.h"
#include "numeric/Matrix.h"
#include "numeric/Pattern.h"

namespace lorvane {

struct Workspace;

// Hands the structural factor F = B^-1 to the innovation analysis in the place of L:
// VARL.TMP (k, then F row by row) and VARLPAT.TMP (1 where an element of F is not exactly 0,
// else 0, row by row, no head line).
void WriteFactorFiles(const Workspace& workspace, const Matrix& F);

// The places of F that VARLPAT.TMP marks, row by row.
using FactorPlace = ElementPlace;
std::vector<FactorPlace> NonzeroPlaces(const Matrix& F);

// Rewrites WALDT.TMP by way of WALDTN.TMP: the coefficient rows (names beginning with "X(") and
// their values and variance are kept, the rows of L give way to one row per nonzero element of F,
// "B^-1(i,j)" with its value and t-value, the covariances between the two blocks are zero and
// the variance of the elements of F, VarBInv, closes the file.
void RewriteWaldFileWithFactor(const Workspace& workspace, const Matrix& F, const Vector& tF,
                               const Matrix& VarBInv);

// WALDTSV.TMP, the parameter file of the structural joint tests: T and the number of
// coefficients in A; one quoted display row each ("x(i,j)=" name, " x ", signed value, t-value);
// the values; the variance VA row by row.
void WriteStructuralWaldFile(const Workspace& workspace, double T,
                             const std::vector<std::string>& names, const Pattern& Apat,
                             const Vector& CoefA, const Vector& tA, const Matrix& VA);

} // namespace lorvane
