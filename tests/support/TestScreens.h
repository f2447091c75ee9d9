#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "frame/Module.h"
#include "frame/Screen.h"

namespace lorvane::test {

// A screen that records its events, with a list, a check box, a text box and two buttons:
// Command1 goes on to SelObs, Command2 starts again.
class ProbeScreen : public Screen {
public:
    ProbeScreen(Module& module, std::string name);

    void Load() override;
    void Activate() override;
    void Unload() override;
    void Click(Control& control) override;
    void DoubleClick(Control& control, int item) override;
    void Change(Control& control) override;

    // Every event of every probe screen, e.g. "SELVAR1 load", "SELVAR1 click Command1".
    static std::vector<std::string>& Events();
};

// A screen table of probe screens for the given names; other names give nothing.
Module::ScreenMaker ProbeTable(std::vector<std::string> names);

} // namespace lorvane::test
