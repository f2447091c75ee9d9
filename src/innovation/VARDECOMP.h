#pragma once

#include "frame/Screen.h"

namespace lorvane {

// Shows the forecast error variance decomposition of VARDECOMP.TMP and may add it to the log.
class VARDECOMP : public Screen {
public:
    explicit VARDECOMP(Module& module);

    void Load() override;
    void Activate() override;
    void Click(Control& control) override;
    std::string UnloggedWork() const override;
};

} // namespace lorvane
