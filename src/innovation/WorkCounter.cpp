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

Int16 TotalWork(int n, int H, int NA, int NL) {
    const Int16 horizons = H + 1;
    const Int16 derivatives = 2 * horizons * (NA + NL);
    const Int16 responses = 2 * n * n * horizons;
    return horizons + derivatives + responses;
}

} // namespace lorvane
