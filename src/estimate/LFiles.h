#pragma once

#include <string>

#include "numeric/Matrix.h"

namespace lorvane {

class EstimationView;
struct Workspace;

// Appends "= LL', where L =" and the rows of L (the lower triangle in "0.00000E+000", zeros
// above it), which continue the printed error variance matrix, and writes VARL.TMP (k, then L
// row by row) and VARLPAT.TMP (its lower triangular pattern).
void WriteLFiles(EstimationView& view, const Matrix& L, int k);

// L from VARL.TMP, or from a file of the same form (k, then the k by k elements row by row),
// such as its saved copy BVARL.TMP. A k below 1 or beyond the file's elements is its read error.
Matrix ReadLFile(const Workspace& workspace, const std::string& name = "VARL.TMP");
// The same for a model of k variables: a count other than k is the file's read error.
Matrix ReadLFile(const Workspace& workspace, const std::string& name, int k);
// The count of VARL.TMP alone, for a model of k variables: a count other than k is the file's
// read error.
int ReadLCount(const Workspace& workspace, int k);

// The largest absolute difference between the elements of two k by k matrices.
double LargestDifference(const Matrix& a, const Matrix& b);

} // namespace lorvane
