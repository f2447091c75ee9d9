#include "innovation/WorkCounter.h"

namespace lorvane {

void WorkCounter::Step() {
    ++Done;
    ShowProgress(Done, Total);
    RefreshOnly();
}

void WorkCounter::RefreshOnly() const {
    if (Refresh) {
        Refresh();
    }
}

std::int64_t TotalWork(int n, int H, int NA, int NL) {
    const std::int64_t horizons = static_cast<std::int64_t>(H) + 1;
    const std::int64_t derivatives = 2 * horizons * (static_cast<std::int64_t>(NA) + NL);
    const std::int64_t responses = 2 * static_cast<std::int64_t>(n) * n * horizons;
    return horizons + derivatives + responses;
}

} // namespace lorvane
