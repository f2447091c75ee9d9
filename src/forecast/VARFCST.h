#pragma once

#include "frame/Screen.h"

namespace lorvane {

// Forecasts of the estimated model from the end of the sample: the horizon in Horizon, the
// estimation uncertainty in the standard errors on request (Check1); Compute shows the report
// in Text1 and appends it to the log, Continue goes back to the tests.
class VARFCST : public Screen {
public:
    explicit VARFCST(Module& module);

    void Click(Control& control) override;

private:
    void Compute();
};

} // namespace lorvane
