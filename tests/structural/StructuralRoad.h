#pragma once

// Roads into the structural screens on the example data, shared by the tests of this folder.

#include <string>
#include <vector>

#include "estimate/EstimateRoad.h"
#include "frame/Module.h"
#include "numeric/Pattern.h"
#include "support/TestModule.h"

namespace lorvane::test {

// The example data (by default the three log-differences; t = 2..76, intercept, VAR(2))
// estimated by OLS and FIML, or, without fiml, as if the FIML variance had failed; through VWaldT2
// to VARSTR1, where the nonstructural files are saved. items: the variables' rows of SelVar1's
// list.
inline void WalkE1ToVARSTR1(TestModule& test, bool fiml = true,
                            const std::vector<int>& items = {3, 4, 5}) {
    WalkToVARDetermin(test, items);
    SpecifyToVARSUR(test, 2);
    Module& module = test.module();
    module.Click("VARSUR", "Command3");
    const std::string olsTests = ReadFile(module.DataFile("WALDT.TMP"));
    module.Click("VARSUR", "Command5");
    module.Click("VARSUR", "Command1");
    module.Click("VWaldT2", "Command2");
    if (!fiml) {
        // What a FIML whose variance failed leaves: the OLS parameter file and the route of OLS
        // and SUR, as saved by the first arrival at the fork.
        for (const char* name : {"WALDT.TMP", "BWALDT.TMP"}) {
            WriteFile(module.DataFile(name), olsTests);
        }
        for (const char* name : {"ROUTE.TMP", "BROUTE.TMP"}) {
            WriteFile(module.DataFile(name), "\"NSVARSUR\"\r\n");
        }
    }
}

// The structural model written on VBernanke1: for each equation the rows of List2 (0-based) to
// mark, then "Equation OK".
inline void SpecifyEquations(TestModule& test, const std::vector<std::vector<int>>& chosen) {
    Module& module = test.module();
    for (const std::vector<int>& rows : chosen) {
        for (const int row : rows) {
            module.DoubleClick("VBernanke1", "List2", row);
        }
        module.Click("VBernanke1", "Command1");
    }
}

// The recursive model of the example data: each variable on the ones before it.
inline const std::vector<std::vector<int>> Recursive = {{}, {0}, {0, 1}};
// The same, but the third variable does not react to the second.
inline const std::vector<std::vector<int>> Overidentified = {{}, {0}, {0}};

// From VARSTR1: "Structural VAR" and the model.
inline void SpecifyStructural(TestModule& test, const std::vector<std::vector<int>>& chosen) {
    test.module().Click("VARSTR1", "Command2");
    SpecifyEquations(test, chosen);
}

// A pattern of the structural model given by its rows.
inline Pattern PatternOf(const std::vector<std::vector<int>>& rows) {
    const int k = static_cast<int>(rows.size());
    Pattern Apat(k);
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= k; ++j) {
            Apat(i, j) = rows[static_cast<std::size_t>(i - 1)][static_cast<std::size_t>(j - 1)];
        }
    }
    return Apat;
}

} // namespace lorvane::test
