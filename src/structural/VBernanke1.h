#pragma once

#include <string>
#include <vector>

#include "frame/Screen.h"

namespace lorvane {

// The structural model written down equation by equation: each variable in turn is the
// left-hand side, and the user marks the other variables that stand on its right-hand side.
// The finished pattern A goes to SVARA.TMP.
class VBernanke1 : public Screen {
public:
    explicit VBernanke1(Module& module);

    void Load() override;
    void Activate() override;
    void Click(Control& control) override;
    void DoubleClick(Control& control, int item) override;

private:
    void ShowEquation(int i);
    void EquationOK();
    void WritePattern();

    std::vector<std::string> VarNames;
};

// The mark of a variable chosen for the right-hand side.
inline constexpr std::string_view ChosenMark = "* ";

} // namespace lorvane
