#pragma once

#include "frame/Screen.h"

namespace lorvane {

// The choice of d(t): intercept, linear trend, seasonal dummies, and through ChebishevPol
// Chebishev time polynomials.
class VARDetermin : public Screen {
public:
    explicit VARDetermin(Module& module);

    void Load() override;
    void Activate() override;
    void Click(Control& control) override;

private:
    void ShowModel();
};

} // namespace lorvane
