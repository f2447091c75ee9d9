#pragma once

#include "frame/Screen.h"

namespace lorvane {

// Chebishev time polynomials of orders up to q join d(t): detrended ones when d(t) holds a
// linear trend, regular ones otherwise.
class ChebishevPol : public Screen {
public:
    explicit ChebishevPol(Module& module);

    void Load() override;
    void Activate() override;
    void Click(Control& control) override;

    // "d(t) is augmented with ..." for the current q, with the reference line.
    std::string AugmentationText() const;

private:
    void ShowQ();
};

} // namespace lorvane
