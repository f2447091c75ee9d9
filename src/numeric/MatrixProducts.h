#pragma once

#include "numeric/Matrix.h"

namespace lorvane {

// B'B of a square matrix: element (i, j) is the sum over k of B(k, i) B(k, j).
Matrix CrossProduct(const Matrix& B);

// LL' of a square matrix: element (i, j) is the sum over k of L(i, k) L(j, k).
Matrix OuterProduct(const Matrix& L);

} // namespace lorvane
