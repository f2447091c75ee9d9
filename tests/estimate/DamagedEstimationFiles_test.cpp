#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "estimate/EstimateRoad.h"
#include "estimate/LFiles.h"
#include "estimate/WaldTest.h"
#include "support/Errors.h"

using namespace lorvane;
using namespace lorvane::test;

namespace {

// The first line of a work file replaced.
void ReplaceFirstLine(const std::filesystem::path& file, const std::string& line) {
    const std::string content = ReadFile(file);
    WriteFile(file, line + content.substr(content.find('\n')));
}

// The example VAR(2) with Granger zeros after OLS, with a work file changed behind the
// estimation; then SUR. The number of the run-time error that ended the module, or 0.
int SurAfterDamage(const std::function<void(Module&)>& damage) {
    TestModule test;
    WalkE1ToVARSUR(test, {{2, 1}, {3, 1}});
    Module& module = test.module();
    module.Click("VARSUR", "Command3");
    EXPECT_TRUE(Ctl(module, "VARSUR", "Command4").Enabled);
    damage(module);
    module.Click("VARSUR", "Command4");
    return module.Failure() ? module.Failure()->Number() : 0;
}

} // namespace

TEST(DamagedEstimationFiles, RegressionHeadsThatNoLongerFitTheModelAreAnInternalError) {
    // XSURE.TMP starts with K(1) = 7 (two lags of three variables and the intercept), YSURE.TMP
    // with k = 3.
    for (const auto& [file, line] :
         std::vector<std::pair<const char*, const char*>>{{"XSURE.TMP", "8"},
                                                          {"XSURE.TMP", "0"},
                                                          {"XSURE.TMP", "-1"},
                                                          {"YSURE.TMP", "0"},
                                                          {"YSURE.TMP", "-1"},
                                                          {"YSURE.TMP", "4"}}) {
        EXPECT_EQ(SurAfterDamage([file, line](Module& module) {
                      ReplaceFirstLine(module.DataFile(file), line);
                  }),
                  InternalError)
            << file << " " << line;
    }
    // An L of another size than the system's.
    EXPECT_EQ(SurAfterDamage([](Module& module) {
                  WriteFile(module.DataFile("VARL.TMP"), "2\r\n1\r\n0\r\n0.5\r\n1\r\n");
              }),
              InternalError);
    // Unharmed files: the round goes through.
    EXPECT_EQ(SurAfterDamage([](Module&) {}), 0);
}

TEST(DamagedEstimationFiles, CountsBeyondTheFileAreItsReadErrorBeforeAnyAllocation) {
    TestModule test;
    Module& module = test.module();
    const std::filesystem::path waldt = module.DataFile("WALDT.TMP");
    // A parameter count of 0 or below would leave the reader nothing to read ever after.
    for (const char* count : {"0", "-1"}) {
        WriteFile(waldt, "75\r\n" + std::string(count) + "\r\n1\r\n2\r\n");
        EXPECT_EQ(ErrorNumberOf([&] { ReadParameterFile(waldt); }), InputPastEndOfFile) << count;
        EXPECT_EQ(ErrorNumberOf([&] { ReadStructuralParameterFile(waldt); }), InputPastEndOfFile);
    }
    // Two parameters want 2 rows, 2 values and 4 variances: 7 fields are one short.
    WriteFile(waldt, "75\r\n2\r\n\"a\"\r\n\"b\"\r\n1\r\n2\r\n1\r\n0\r\n0\r\n");
    EXPECT_EQ(ErrorNumberOf([&] { ReadParameterFile(waldt); }), InputPastEndOfFile);
    WriteFile(waldt, "75\r\n2\r\n\"a\"\r\n\"b\"\r\n1\r\n2\r\n1\r\n0\r\n0\r\n1\r\n");
    const ParameterFile parameters = ReadParameterFile(waldt);
    EXPECT_EQ(parameters.values(2), 2);
    EXPECT_EQ(parameters.variances.size(), 1u);

    // k = 32767 in VARL.TMP would be a matrix of 8.6 GB.
    WriteFile(module.DataFile("VARL.TMP"), "32767\r\n1\r\n2\r\n");
    EXPECT_EQ(ErrorNumberOf([&] { ReadLFile(module); }), InputPastEndOfFile);
    WriteFile(module.DataFile("VARL.TMP"), "0\r\n");
    EXPECT_EQ(ErrorNumberOf([&] { ReadLFile(module); }), InputPastEndOfFile);
    WriteFile(module.DataFile("VARL.TMP"), "1\r\n2.5\r\n");
    EXPECT_EQ(ReadLFile(module)(1, 1), 2.5);
}
