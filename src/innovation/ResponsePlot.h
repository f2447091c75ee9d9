#pragma once

#include <string>
#include <vector>

#include "frame/Int16.h"

namespace lorvane {

struct Workspace;

// One response of VARIR2.TMP as the plot screen draws it.
struct ResponsePlot {
    // The largest horizon and the number of variables.
    Int16 H;
    Int16 n;
    std::string Title;
    // The largest absolute response of the responding variable, over all shocks and horizons.
    double M = 0;
    // The response and its standard error at horizons 0..H.
    std::vector<double> Psi;
    std::vector<double> SE;
    // Whether the impact response (horizon 0) is drawn with its bands.
    bool ImpactBand = true;
};

// The k-th response (counted from 1, the responding variable outer, the shock inner) of
// VARIR2.TMP. A k beyond the file's responses reads past its end (run-time error 62).
ResponsePlot ReadResponsePlot(const Workspace& workspace, int k);

// Whether the responses of VARIR2.TMP carry the uncertainty of L. The impact responses are L
// itself, so without a variance of L every one of them has a standard error of exactly 0.
bool ResponsesWithVarianceOfL(const Workspace& workspace);

} // namespace lorvane
