#pragma once

#include "frame/Screen.h"

namespace lorvane {

// The order p of the VAR, with the Akaike, Hannan-Quinn and Schwarz criteria for the orders up
// to p when the user asks for them.
class VAR2 : public Screen {
public:
    explicit VAR2(Module& module);

    void Load() override;
    void Activate() override;
    void Click(Control& control) override;

private:
    void ShowP();
    void WarnAboutData();
    void ConfirmP();
    void PrintCriteria();
    void Leave();
};

} // namespace lorvane
