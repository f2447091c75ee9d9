#pragma once

#include <cstdint>
#include <functional>

namespace lorvane {

// Counts the units of work of the innovation analysis and refreshes the status line after
// each one. Decision: unlike the module's other counters, Done and Total are 64-bit. Their only
// use is the progress display, and a 16-bit total overflowed for ordinary models (six
// variables, four lags, a horizon of 100); 64 bits hold the total of any model the data store
// can hold.
struct WorkCounter {
    std::int64_t Done = 0;
    std::int64_t Total = 0;
    std::function<void()> Refresh;

    // One unit done: the count goes up, progress is reported, the status is refreshed.
    void Step();
    // Only the status.
    void RefreshOnly() const;
};

// The units of work of one analysis with horizons 0..H: (H + 1) for the responses,
// 2 (H + 1)(NA + NL) for the derivatives, n^2 (H + 1) each for the standard errors and the
// report.
std::int64_t TotalWork(int n, int H, int NA, int NL);

// Receives the progress of the analysis. It shows nothing: a hook for a progress bar.
inline void ShowProgress(std::int64_t /*done*/, std::int64_t /*total*/) {}

} // namespace lorvane
