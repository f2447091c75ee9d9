#pragma once

#include <functional>

#include "frame/Int16.h"

namespace lorvane {

// Counts the units of work of the innovation analysis and refreshes the status line after
// each one. Done and Total are 16-bit whole numbers, like every counter of the module, so a
// total beyond 32767 is an overflow.
struct WorkCounter {
    Int16 Done;
    Int16 Total;
    std::function<void()> Refresh;

    // One unit done: the count goes up, progress is reported, the status is refreshed.
    void Step();
    // Only the status.
    void RefreshOnly() const;
};

// The units of work of one analysis with horizons 0..H: (H + 1) for the responses,
// 2 (H + 1)(NA + NL) for the derivatives, n^2 (H + 1) each for the standard errors and the
// report.
Int16 TotalWork(int n, int H, int NA, int NL);

// Receives the progress of the analysis. It shows nothing: a hook for a progress bar.
inline void ShowProgress(Int16 /*done*/, Int16 /*total*/) {}

} // namespace lorvane
