#pragma once

#include "frame/Screen.h"

namespace lorvane {

// What the chosen variables make available, and the question whether to use a subset of the
// observations; SELSS1 sets the bounds of the subset.
class SELOBS : public Screen {
public:
    explicit SELOBS(Module& module);

    void Load() override;
    void Activate() override;
    void Click(Control& control) override;

    // The report of the available range; false when missing values inside a time series
    // ended the attempt (the module has started again).
    bool ReportAvailable(Control& list);
    // The report of the chosen range, likewise.
    bool ReportChosen(Control& list);

private:
    // The count of incomplete observations; a time series with any ends the attempt.
    bool ReportMissing(Control& list, Int16 missing);
};

// The step out of SELOBS: all selected variables are the dependent variables.
void ListSelectedAsY(Module& module);

} // namespace lorvane
