#pragma once

#include <string>
#include <vector>

#include "frame/Screen.h"

namespace lorvane {

// Granger-causality zeros: one pattern for all lag matrices A(1)..A(p). VARZERO.TMP always
// holds the pattern on show.
class VAR3 : public Screen {
public:
    explicit VAR3(Module& module);

    void Load() override;
    void Activate() override;
    void Click(Control& control) override;

private:
    int Index(const char* box) const;
    char& Element(int i, int j);
    void ShowElement();
    void ShowRow(int i);
    void WritePattern();

    // Row by row, "0" or "1".
    std::vector<std::string> pattern_;
};

} // namespace lorvane
