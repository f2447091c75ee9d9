#pragma once

#include <functional>
#include <string>
#include <vector>

#include "numeric/Matrix.h"

namespace lorvane {

struct Workspace;

// Parameters of a test file: their quoted display rows, values and variance matrix.
struct ParameterSet {
    std::vector<std::string> rows;
    std::vector<double> values;
    Matrix variance;
};

// The first parameter set of WALDT.TMP or of a file of its form (its T in T): the rows, the values
// and the first variance matrix.
ParameterSet ReadParameterSet(const Workspace& workspace, double& T,
                              const std::string& name = "WALDT.TMP");

// Writes WALDTN.TMP with T, the parameters of both sets (first, then second), and their variance
// with zero covariances between the sets, in the layout of WALDT.TMP; then copies it over
// WALDT.TMP. stageDone runs after the rows, the values and the file.
void WriteCombinedWaldFile(const Workspace& workspace, double T, const ParameterSet& first,
                           const ParameterSet& second, const std::function<void()>& stageDone = {});

} // namespace lorvane
