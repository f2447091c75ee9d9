#pragma once

#include "frame/Screen.h"

namespace lorvane {

// Joint significance tests of the estimated parameters of WALDT.TMP: the user marks parameters
// by double click and tests them jointly with a Wald test.
class VWaldT2 : public Screen {
public:
    explicit VWaldT2(Module& module);

    void Load() override;
    void Activate() override;
    void Click(Control& control) override;
    void DoubleClick(Control& control, int item) override;

private:
    void Test();
};

// The mark of a selected parameter at the end of its row.
inline constexpr std::string_view SelectionMark = "(*)";

} // namespace lorvane
