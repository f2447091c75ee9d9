#pragma once

#include <string>
#include <string_view>

#include "frame/Screen.h"

namespace lorvane {

// The fork of the analysis: the explanation of the nonstructural (Sims) and the structural
// (Bernanke-Sims) VAR, and the choice between them. The first arrival keeps the
// nonstructural work files; every later arrival puts them back.
class VARSTR1 : public Screen {
public:
    explicit VARSTR1(Module& module);

    void Load() override;
    void Activate() override;
    void Click(Control& control) override;

private:
    void ChooseNonstructural();
    void ChooseStructural();
    void SaveText();
};

// The explanation of the two kinds of VAR for order p and k variables; lines end in CR LF.
std::string ExplanationText(int p, int k);

// The route word of the structural analysis that follows from a nonstructural one
// ("NSVARSUR" -> "SVARSURBERNANKE", "NSVARML" -> "SVARMLBERNANKE"); other words stay.
std::string StructuralRoute(std::string_view route);

} // namespace lorvane
