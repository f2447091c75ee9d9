#include <gtest/gtest.h>

#include "estimate/EstimateRoad.h"

using namespace lorvane;
using namespace lorvane::test;

namespace {

constexpr int Length = 60;
constexpr const char* SingularSystem =
    "Attempt to invert a (near-)singular matrix. Respecify the VAR model.";

// A VAR(1) with an intercept on three simulated variables, on the estimation screen.
class SingularPaths : public ::testing::Test {
protected:
    void Walk(const std::vector<std::vector<double>>& columns,
              const std::vector<std::pair<int, int>>& zeros) {
        WalkCsvToVARSUR(test, CsvOf({"a", "b", "c"}, columns), {0, 1, 2}, 1, zeros);
        ASSERT_EQ(module().CurrentScreen, "VARSUR");
    }

    Module& module() { return test.module(); }
    Control& control(const char* name) { return Ctl(module(), "VARSUR", name); }
    std::string File(const char* name) { return ReadFile(module().DataFile(name)); }
    bool Exists(const char* name) { return std::filesystem::exists(module().DataFile(name)); }
    // The text one press adds to the results.
    std::string Press(const char* button) {
        const std::size_t before = control("Text1").Caption.size();
        module().Click("VARSUR", button);
        return control("Text1").Caption.substr(before);
    }
    std::vector<bool> Enabled() {
        std::vector<bool> enabled;
        for (const char* button : {"Command1", "Command2", "Command3", "Command4", "Command5"}) {
            enabled.push_back(control(button).Enabled);
        }
        return enabled;
    }

    TestModule test;
    const std::vector<std::vector<double>> simulated = SimulatedVar(Length, 1.0);
};

} // namespace

TEST_F(SingularPaths, ADuplicatedVariableMakesXXSingular) {
    Walk({simulated[0], simulated[1], simulated[0]}, {});
    EXPECT_EQ(Press("Command3"), "Singular matrix in procedure OLS (Equation 1)\r\n" +
                                     std::string(SingularSystem) + "\r\n");
    EXPECT_EQ(control("Label0").Caption, " " + std::string(SingularSystem));
    // Only respecifying is left.
    EXPECT_EQ(Enabled(), (std::vector<bool>{false, true, false, false, false}));
    EXPECT_FALSE(Exists("U.TMP"));
    EXPECT_FALSE(Exists("WALDT.TMP"));
    EXPECT_FALSE(Exists("VARL.TMP"));
}

TEST_F(SingularPaths, TwoEquationsWithTheSameResidualsLeaveSigmaUndecomposable) {
    // b is a copy of a that enters no equation: the equations of a and b are the same
    // regression, so the second pivot of Sigma is exactly zero.
    Walk({simulated[0], simulated[0], simulated[1]}, {{1, 2}, {2, 2}, {3, 2}});
    test.dialogs().QueueAnswer("OK");
    const std::string text = Press("Command3");
    EXPECT_EQ(test.dialogs().Shown().back(),
              "[box] " + module().ModuleCaption +
                  " | LL decomposition of a symmetric matrix failed due to "
                  "near-singularity -> OK");
    EXPECT_TRUE(text.starts_with("OLS estimation results:\r\n"));
    EXPECT_TRUE(text.ends_with(
        " residuals:\r\n\r\n" + RightAligned("7.28512E-002", 15) +
        RightAligned("7.28512E-002", 15) + RightAligned("-5.39983E-003", 15) + "\r\n" +
        RightAligned("7.28512E-002", 15) + RightAligned("7.28512E-002", 15) +
        RightAligned("-5.39983E-003", 15) + "\r\n" + RightAligned("-5.39983E-003", 15) +
        RightAligned("-5.39983E-003", 15) + RightAligned("8.73728E-002", 15) + "\r\n" +
        SingularSystem + "\r\n"))
        << text;
    EXPECT_EQ(control("Label0").Caption, " " + std::string(SingularSystem));
    EXPECT_EQ(Enabled(), (std::vector<bool>{false, true, false, false, false}));
    EXPECT_FALSE(Exists("VARL.TMP"));
}

TEST_F(SingularPaths, ANearCopyMakesTheSurMomentsAndLSingular) {
    // c is a plus a millionth of b's noise: OLS and Sigma go through, but the weighted moments of
    // SUR and the L of FIML fall below the pivot tolerance of the inversion. A change of units
    // would not help here, the near copy is in the data.
    std::vector<double> near(Length);
    for (std::size_t t = 0; t < near.size(); ++t) {
        near[t] = simulated[0][t] + 1e-6 * simulated[2][t];
    }
    Walk({simulated[0], simulated[1], near}, {{2, 1}});
    Press("Command3");
    const std::string wald = File("WALDT.TMP");
    const std::string files = File("VARL.TMP") + File("VARB.TMP") + wald;

    EXPECT_EQ(Press("Command4"), "Singular X'X matrix in procedure SUR at call 1\r\n"
                                 "SUR estimation is not possible, due to singularity. \r\n"
                                 "OLS results will be used.\r\n\r\n");
    EXPECT_EQ(control("Label0").Caption, " Incomplete SUR estimation results:");
    EXPECT_EQ(Enabled(), (std::vector<bool>{false, true, false, false, true}));
    EXPECT_EQ(File("VARL.TMP") + File("VARB.TMP") + File("WALDT.TMP"), files);

    EXPECT_EQ(Press("Command5"), "L matrix is singular. The last results will be used.\r\n");
    EXPECT_EQ(control("Label0").Caption, " Full information maximum likelihood failed");
    EXPECT_EQ(control("Text6").Caption, "0");
    EXPECT_EQ(File("ROUTE.TMP"), "\"NSVARSUR\"\r\n");
    EXPECT_EQ(Enabled(), (std::vector<bool>{true, true, false, false, false}));
    EXPECT_EQ(File("WALDT.TMP"), wald);

    // The way on without a variance of L.
    const std::string results = control("Text1").Caption;
    module().Click("VARSUR", "Command1");
    EXPECT_TRUE(File("OUTPUT.TXT")
                    .ends_with("OLS-SUR estimation of a nonstructural VAR model:\r\n" +
                               module().ModelText + "\r\n" + results + "\r\n"));
    EXPECT_EQ(Ctl(module(), "VWaldT2", "Label0").Caption,
              " Tests of joint significance (Nonstructural VAR model estimated by OLS or SUR)");
}
