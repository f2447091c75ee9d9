#pragma once

#include "frame/Screen.h"

namespace lorvane {

// The explanation of the fork, saved in VARTEXT.TMP, shown flush left above VARSTR1: the
// user may open it in the text editor or add it to the log.
class VARSTR2 : public Screen {
public:
    explicit VARSTR2(Module& module);

    void Load() override;
    void Activate() override;
    void Click(Control& control) override;

private:
    void Edit();
    void AddToLog();
};

} // namespace lorvane
