#pragma once

#include <string>

#include "estimate/JointTestScreen.h"

namespace lorvane {

// Joint significance tests of the structural parameters of WALDTSV.TMP after the structural
// estimation by maximum likelihood. The mark of a selected parameter opens its row, each test's
// report also goes to the log, and with fewer than two parameters the screen goes straight on to
// the innovation responses.
// The screen after the structural model: on the maximum likelihood route these tests when
// WALDTSV.TMP holds at least two structural coefficients, else the innovation responses. The file
// is read whole, with the checks of the tests' reader; a model without coefficients off the
// diagonal has a count of 0.
std::string ScreenAfterStructuralModel(Module& module);

class VWaldT3 : public JointTestScreen {
public:
    explicit VWaldT3(Module& module);

    void Load() override;
    void Click(Control& control) override;

private:
    ParameterFile ReadParameters() const override;
};

} // namespace lorvane
