#pragma once

#include <string>
#include <vector>

#include "frame/Int16.h"
#include "numeric/Matrix.h"
#include "numeric/Pattern.h"

namespace lorvane {

// A k by k matrix of texts with subscripts from 1, stored row by row.
class TextMatrix {
public:
    TextMatrix() = default;
    explicit TextMatrix(int k)
        : k_(k), cells_(static_cast<std::size_t>(k) * static_cast<std::size_t>(k)) {}

    int Size() const { return k_; }
    std::string& operator()(int i, int j);
    const std::string& operator()(int i, int j) const;

private:
    std::size_t Offset(int i, int j) const;

    int k_ = 0;
    std::vector<std::string> cells_;
};

// The free elements of B = C^-1 A: Bname(i, j) is "b(p)" for the p-th place of the pattern whose
// absolute value is 1 (counted by rows from the left, the diagonal included) and "0" where the
// pattern is 0; Bnum holds 1 at the free places and 0 elsewhere. The signs of the pattern are
// lost: -1 and 1 are the same free element.
void BuildPattern(const Pattern& Apat, Int16& ParameterCount, TextMatrix& Bname, Matrix& Bnum);

// ok = 1 when the 0-1 pattern itself (every free element at 1) is invertible by the module's
// decimal inversion, else 0.
void CheckPattern(const Matrix& Bnum, int k, Int16& ok);

// The texts of B'B: element (i, j) is the sum over m of Bname(m, i) Bname(m, j) with the zero
// products left out, e.g. "b(1)b(1)+b(3)b(3)", or "0" when every product is zero. Symmetric.
// EquationCount and ZeroCount count the elements on and below the diagonal that are not "0"
// and that are "0".
void BuildMomentMatrix(TextMatrix& Moment, const TextMatrix& Bname, Int16& EquationCount,
                       Int16& ZeroCount, int k);

// B at the values b(1..P) of the free elements, placed by the pattern (row by row, the free
// places being those whose absolute value is 1).
Matrix BuildB(const Pattern& Apat, const std::vector<double>& b);

} // namespace lorvane
