#pragma once

#include <optional>

#include "frame/Screen.h"

namespace lorvane {

// Model checks of the estimated VAR, reached from the joint tests: the roots of the companion
// matrix with their picture, and the residual tests of autocorrelation (up to lag h, of order
// q), normality and ARCH. Compute shows the report, appends it to the log and saves the
// picture as a numbered bitmap, which the log notes; Continue goes back to the joint tests.
class VARCHECK : public Screen {
public:
    explicit VARCHECK(Module& module);

    void Load() override;
    void Activate() override;
    void Click(Control& control) override;

private:
    void Compute();
    // The whole number in the text box when it lies in lowest..highest.
    std::optional<int> WholeIn(const char* box, int lowest, int highest);

    int T_ = 0;
};

} // namespace lorvane
