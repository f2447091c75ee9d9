#pragma once

#include <string>
#include <vector>

#include "innovation/MovingAverage.h"

namespace lorvane {

// The forecast error variance decomposition: share(i, j, h) is the percentage of the forecast
// error variance of variable i at horizon h that comes from innovation j, computed from the
// cumulated squared responses. A variable whose responses are all zero up to some horizon
// ends in the run-time error of 0 / 0.
Responses DecompositionShares(const Responses& psi);

// The lines of the decomposition table of every variable, as VARDECOMP.TMP holds them: the
// title, the column legend, the heading, a rule, one row per horizon and a line with a blank.
// names are the variables' names as the reports show them.
std::vector<std::string> DecompositionLines(const Responses& shares,
                                            const std::vector<std::string>& names);

} // namespace lorvane
