#pragma once

#include "estimate/JointTestScreen.h"

namespace lorvane {

// Joint significance tests of the estimated parameters of WALDT.TMP: the user marks parameters
// by double click (the mark closes the row) and tests them jointly with a Wald test.
class VWaldT2 : public JointTestScreen {
public:
    explicit VWaldT2(Module& module);

    void Load() override;
    void Click(Control& control) override;

private:
    ParameterFile ReadParameters() const override;
};

} // namespace lorvane
