#pragma once

#include <string>
#include <vector>

#include "numeric/Matrix.h"
#include "numeric/Pattern.h"

namespace lorvane {

class Module;

// The names of the variables as the structural reports show them: the selected variables of the
// data store, trimmed, in the order of the equations.
std::vector<std::string> StructuralNames(const Module& module);

// The structural equations as text, lines ending in CR LF: a line end, "Structural model:", a
// blank line, then for each equation its left-hand side name and " =", a line for each
// coefficient of a u(j) and one for the innovation (sign, value in "###########0.0000"
// right-aligned in 20 characters, " x " and the name, or " x Innovation"), and a blank line.
// Without t-values that is all.
std::string StructuralModelText(const std::vector<std::string>& names, const Pattern& Apat,
                                const Vector& CoefA, const Vector& CoefC);

// The sentence below the equations shown without t-values: why there are none.
std::string NoTValuesText();

// The same with the t-value "(...)" and the two-sided normal p-value "[...]" below each
// coefficient, their brackets ending in the value's column, closed by the two lines that name
// the brackets.
std::string StructuralModelTextWithT(const std::vector<std::string>& names, const Pattern& Apat,
                                     const Vector& CoefA, const Vector& CoefC, const Vector& tA,
                                     const Vector& tC);

// A k by k matrix by rows, each element in the picture, right-aligned in width characters.
std::string MatrixText(const Matrix& matrix, const std::string& picture, std::size_t width);

} // namespace lorvane
