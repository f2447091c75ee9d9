#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "numeric/Matrix.h"

namespace lorvane {

// A parameter file of the joint tests (WALDT.TMP): T, the display row of each of the n
// parameters, their values, their variance matrix and, when present, a second (heteroskedasticity
// consistent) variance matrix.
struct ParameterFile {
    double T = 0;
    std::vector<std::string> rows;
    Vector values;
    std::vector<Matrix> variances;
};

ParameterFile ReadParameterFile(const std::filesystem::path& file);

// The head of a parameter file (T, the count n, the n display rows and the n values) and its
// first n by n variance matrix, one value a line. A count below `fewest`, or one the file has no
// room for, is the file's read error.
ParameterFile ReadFirstParameterSet(const std::filesystem::path& file, int fewest);

// The parameter file of the structural joint tests (WALDTSV.TMP): T and the count n, the n
// display rows, the n values and exactly one n by n variance matrix, one value a line.
ParameterFile ReadStructuralParameterFile(const std::filesystem::path& file);

// The Wald test of the parameters at `selected` (1-based) being jointly zero with the given
// variance matrix: T c' W^-1 c with c the selected values and W their block of the variance.
// Gives the lines of its report: the statistic, its null distribution and the four lines of the
// chi-square report; or the two lines that say a singular W stops the test.
std::vector<std::string> WaldTestLines(double T, const Vector& values, const Matrix& variance,
                                       const std::vector<int>& selected);

// The statistic alone; flag 1 when W is singular.
double WaldStatistic(double T, const Vector& values, const Matrix& variance,
                     const std::vector<int>& selected, int& flag);

} // namespace lorvane
