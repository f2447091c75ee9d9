#pragma once

#include "frame/Screen.h"

namespace lorvane {

// The bounds of a subsample, walked in steps within the available range; pinned on top of
// SELOBS.
class SELSS1 : public Screen {
public:
    explicit SELSS1(Module& module);

    void Load() override;
    void Activate() override;
    void Click(Control& control) override;

    void ShowBounds();

private:
    int Step() const;
    void ShowStep(int step);
    void ShowLabels(int lower, int upper);
    void MoveBound(const std::string& button);
    void ChangeStep(const std::string& button);
    void ConfirmBounds();
};

} // namespace lorvane
