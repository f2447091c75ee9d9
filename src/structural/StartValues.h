#pragma once

#include <vector>

#include "numeric/Pattern.h"

namespace lorvane {

class StructuralSystem;
struct Workspace;

// The moment solution b(1..P) with a mark each (BERNSV.TMP, BERNSV2.TMP): the count, then one
// line per parameter with its value and the mark 1 when the value stands as a start value.
struct StartValues {
    std::vector<double> values;
    std::vector<int> marks;
};
void WriteStartValues(const Workspace& workspace, const char* name, const StartValues& start);
// The start values of a model with m free parameters: a count other than m, or a file too short
// for m values and marks, is the file's read error.
StartValues ReadStartValues(const Workspace& workspace, const char* name, int m);

// The start values of the likelihood search, BERNSV2.TMP: a copy of the moment solution at
// once, so that the file exists in any case; then, when every variable has others on both sides
// of its row and column of the pattern, the system solved again from the term tables at the L
// of VARL.TMP, each parameter that the solve fixes marked 1.
void FindStartValues(const Workspace& workspace, const StructuralSystem& system,
                     const Pattern& Apat);

} // namespace lorvane
