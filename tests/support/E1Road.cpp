#include "support/E1Road.h"

#include "data/CsvImport.h"
#include "frame/Startup.h"

namespace lorvane::test {

std::string E1Csv() {
    return ReadFile(std::filesystem::path(LORVANE_SOURCE_DIR) / "examples" / "e1.csv");
}

void StartWith(TestModule& test, const std::string& csv) {
    // The module's own rules are under test, so undated data come with their gaps, as a
    // cross-section would.
    ImportOptions options;
    options.CrossSection = true;
    WriteDataFiles(ParseCsv(csv, options), test.Root() / "work");
    Module& module = test.module();
    module.Run(
        [&] { ModuleEntry(module, (test.Root() / "work").string(), test.Root() / "start"); });
}

Matrix ExampleFactor() {
    Matrix L(3, 3);
    L(1, 1) = 4.38796e-2;
    L(2, 1) = 1.47561e-3;
    L(2, 2) = 1.10450e-2;
    L(3, 1) = 2.53929e-3;
    L(3, 2) = 4.69159e-3;
    L(3, 3) = 7.22432e-3;
    return L;
}

void ChooseE1Sample(Module& module) {
    module.Click("SELOBS", "SubsetYes");
    module.Click("SELSS1", "StapX10");
    module.Click("SELSS1", "UDown");
    module.Click("SELSS1", "StapOver10");
    for (int i = 0; i < 6; ++i) {
        module.Click("SELSS1", "UDown");
    }
    module.Click("SELSS1", "BoundsOK");
    module.Click("SELSS1", "Continue");
}

void WalkToVARDetermin(TestModule& test, const std::vector<int>& items) {
    StartWith(test, E1Csv());
    Module& module = test.module();
    for (int item : items) {
        module.DoubleClick("SelVar1", "List2", item);
    }
    module.Click("SelVar1", "Command1");
    ChooseE1Sample(module);
    module.Click("SELOBS", "Continue");
    module.Click("SelvarYInfo", "Command1");
}

} // namespace lorvane::test
