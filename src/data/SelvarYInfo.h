#pragma once

#include <string>
#include <vector>

#include "frame/Screen.h"

namespace lorvane {

// For each variable of the model: its available sample, its summary values and its kind; a
// constant variable is refused. Continue writes the lists into the pending report.
class SelvarYInfo : public Screen {
public:
    explicit SelvarYInfo(Module& module);

    void Activate() override;
    void Click(Control& control) override;

    void BuildReport();
    void Leave();

private:
    // The report block of dependent variable i; refuses a constant variable.
    void ReportVariable(int i, Control& report);
};

} // namespace lorvane
