#include <gtest/gtest.h>

#include "estimate/EstimateRoad.h"
#include "estimate/WaldTest.h"
#include "frame/ScreenTable.h"
#include "support/Reference.h"
#include "support/TestScreens.h"

using namespace lorvane;
using namespace lorvane::test;

namespace {

// The joint tests after OLS and FIML on the example VAR(2).
class E1WaldTests : public ::testing::Test {
protected:
    void SetUp() override { WalkE1ToVWaldT2(test); }

    Module& module() { return test.module(); }
    Control& control(const char* name) { return Ctl(module(), "VWaldT2", name); }
    void Select(int item) { module().DoubleClick("VWaldT2", "List1", item); }
    // The text the test button adds to the results.
    std::string Test() {
        const std::size_t before = control("Text1").Caption.size();
        module().Click("VWaldT2", "Command1");
        return control("Text1").Caption.substr(before);
    }

    TestModule test;
};

constexpr const char* Variables = "y(1) = dlinvest\r\ny(2) = dlincome\r\ny(3) = dlcons\r\n";

} // namespace

TEST_F(E1WaldTests, TheScreenListsEveryParameterOfTheEstimation) {
    EXPECT_EQ(control("Label0").Caption,
              " Tests of joint significance (Nonstructural VAR model estimated by FIML)");
    EXPECT_EQ(control("Text1").Caption, Variables);
    const std::vector<std::string>& rows = control("List1").Items;
    EXPECT_EQ(rows, ReadParameterFile(module().DataFile("WALDT.TMP")).rows);
    ASSERT_EQ(rows.size(), 27u);
    EXPECT_EQ(rows[0], "x(1,1) = LAG1[dlinvest]                    -31.96310E-02     -2.68");
    EXPECT_TRUE(rows[26].starts_with("L(3,3)"));
}

TEST_F(E1WaldTests, FewerThanTwoParametersAreNotTested) {
    EXPECT_EQ(Test(), "Test results:\r\nNo parameters to test!\r\n");
    const std::string row = control("List1").Items[3];
    Select(3);
    EXPECT_EQ(control("List1").Items[3], row + "(*)");
    EXPECT_EQ(Test(), "Testing the significance of one parameter can be done by the t-test!\r\n");
    // A second double click takes the mark away and leaves the row as it was.
    Select(3);
    EXPECT_EQ(control("List1").Items[3], row);
}

TEST_F(E1WaldTests, TheLagsOfIncomeInTheInvestmentEquation) {
    const auto& reference = E1Reference()["var2_intercept"]["wald_dlincome_in_dlinvest"];
    std::vector<int> selected;
    for (const auto& position : reference["parameters"]) {
        Select(position.get<int>());
        selected.push_back(position.get<int>() + 1);
    }
    const std::vector<std::string>& rows = control("List1").Items;
    const std::string expected =
        "Test results:\r\n"
        "Test of the null hypothesis that the parameters indicated by (*) are \r\n"
        "jointly zero: \r\n" +
        rows[1] + "\r\n" + rows[4] +
        "\r\n"
        "Wald test:                               .11\r\n"
        "Asymptotic null distribution:Chi-square(2)\r\n"
        "  p-value = 0.94779\r\n"
        "  Significance levels:        10%         5%\r\n"
        "  Critical values:           4.61       5.99\r\n"
        "  Conclusions:             accept     accept\r\n";
    EXPECT_EQ(Test(), expected);
    EXPECT_TRUE(rows[1].starts_with("x(1,2) = LAG1[dlincome]") && rows[1].ends_with("(*)"));
    EXPECT_TRUE(rows[4].starts_with("x(1,5) = LAG2[dlincome]"));

    const ParameterFile parameters = ReadParameterFile(module().DataFile("WALDT.TMP"));
    int flag = 0;
    ExpectRelative(
        WaldStatistic(parameters.T, parameters.values, parameters.variances[0], selected, flag),
        reference["statistic"].get<double>(), 1e-9, "Wald statistic");
    EXPECT_EQ(flag, 0);
}

TEST_F(E1WaldTests, ACoefficientAndAnElementOfLAreTestedWithZeroCovariance) {
    // Independent blocks: the statistic is the sum of the squared t-values.
    const auto& reference = E1Reference()["var2_intercept"];
    const double tCoefficient = reference["t_values"][0];
    const double tL = reference["L_t_values"][0];
    Select(0);
    Select(21);
    const std::string text = Test();
    EXPECT_NE(
        text.find(
            "Wald test:                   " +
            RightAligned(FormatNumber(tCoefficient * tCoefficient + tL * tL, "##########.00"), 15) +
            "\r\n"),
        std::string::npos)
        << text;
    EXPECT_NE(text.find("  Conclusions:             reject     reject\r\n"), std::string::npos);
}

TEST_F(E1WaldTests, AgainClearsTheSelection) {
    Select(1);
    Select(2);
    Test();
    module().Click("VWaldT2", "Command3");
    EXPECT_EQ(module().CurrentScreen, "VWaldT2");
    EXPECT_EQ(control("Text1").Caption, Variables);
    for (const std::string& row : control("List1").Items) {
        EXPECT_FALSE(row.ends_with("(*)"));
    }
}

TEST_F(E1WaldTests, RespecifyingLogsTheDecisionAndStartsAgain) {
    const std::string log = ReadFile(module().DataFile("OUTPUT.TXT"));
    module().Click("VWaldT2", "Command5");
    EXPECT_EQ(module().CurrentScreen, "SelVar1");
    const std::string added = ReadFile(module().DataFile("OUTPUT.TXT")).substr(log.size());
    EXPECT_TRUE(added.starts_with(
        "\r\n----------------------------------------------\r\nLorvane International"))
        << added;
    EXPECT_TRUE(added.ends_with(
        "----------------------------------------------\r\nModel will be respecified!\r\n"));
    EXPECT_FALSE(std::filesystem::exists(module().DataFile("WALDT.TMP")));
}

// The section opens as every section does: the header, then a report that is still pending.
TEST_F(E1WaldTests, RespecifyingPrintsAPendingReportAfterTheHeader) {
    module().ResultText = "pending\r\n";
    module().Click("VWaldT2", "Command5");
    EXPECT_TRUE(ReadFile(module().DataFile("OUTPUT.TXT"))
                    .ends_with("----------------------------------------------\r\npending\r\n\r\n"
                               "Model will be respecified!\r\n"));
    EXPECT_TRUE(module().ResultText.empty());
}

TEST_F(E1WaldTests, ContinueGoesOnToTheFork) {
    module().UseScreenTable([](Module& owner, std::string_view name) {
        std::unique_ptr<Screen> screen = CreateScreen(owner, name);
        return screen ? std::move(screen) : ProbeTable({"VARSTR1"})(owner, name);
    });
    module().Click("VWaldT2", "Command2");
    EXPECT_EQ(module().CurrentScreen, "VARSTR1");
}

namespace {

// The test screen on a parameter file written by hand: three parameters with T = 4.
class HandMadeParameters : public ::testing::Test {
protected:
    void Open(const std::string& variances) {
        // A VAR(1) on five observations: T = 4, as the file says.
        module().p = 1;
        module().SampleFirst = 1;
        module().SampleLast = 5;
        WriteFile(module().DataFile("WALDT.TMP"),
                  "4,3\r\n\"a\"\r\n\"b\"\r\n\"c\"\r\n1\r\n2\r\n3\r\n" + variances);
        WriteFile(module().DataFile("ROUTE.TMP"), "\"nsvarsur\"\r\n");
        module().Run([this] { module().GoToScreen("VWaldT2"); });
        ASSERT_EQ(module().CurrentScreen, "VWaldT2");
    }

    Module& module() { return test.module(); }
    std::string Test(std::initializer_list<int> items) {
        for (const int item : items) {
            module().DoubleClick("VWaldT2", "List1", item);
        }
        module().Click("VWaldT2", "Command1");
        return Ctl(module(), "VWaldT2", "Text1").Caption;
    }

    TestModule test;
};

constexpr const char* Diagonal149 = "1\r\n0\r\n0\r\n0\r\n4\r\n0\r\n0\r\n0\r\n9\r\n";

} // namespace

TEST_F(HandMadeParameters, ASecondVarianceMatrixGivesASecondTest) {
    Open(std::string(Diagonal149) + "2\r\n0\r\n0\r\n0\r\n2\r\n0\r\n0\r\n0\r\n1\r\n");
    EXPECT_EQ(Ctl(module(), "VWaldT2", "Label0").Caption,
              " Tests of joint significance (Nonstructural VAR model estimated by OLS or SUR)");
    EXPECT_EQ(Test({0, 1}),
              "Test results:\r\n"
              "Test of the null hypothesis that the parameters indicated by (*) are \r\n"
              "jointly zero: \r\n"
              "a(*)\r\n"
              "b(*)\r\n"
              "Wald test:                              8.00\r\n"
              "Asymptotic null distribution:Chi-square(2)\r\n"
              "  p-value = 0.01832\r\n"
              "  Significance levels:        10%         5%\r\n"
              "  Critical values:           4.61       5.99\r\n"
              "  Conclusions:             reject     reject\r\n"
              "Test result on the basis of the heteroskedasticity consistent variance\r\n"
              "matrix:\r\n"
              "Wald test:                             10.00\r\n"
              "Asymptotic null distribution:Chi-square(2)\r\n"
              "  p-value = 0.00674\r\n"
              "  Significance levels:        10%         5%\r\n"
              "  Critical values:           4.61       5.99\r\n"
              "  Conclusions:             reject     reject\r\n");
}

TEST_F(HandMadeParameters, ASingularBlockStopsTheTestButNotTheScreen) {
    Open("1\r\n0\r\n0\r\n0\r\n4\r\n0\r\n0\r\n0\r\n0\r\n");
    const std::string text = Test({0, 2});
    EXPECT_TRUE(text.ends_with("c(*)\r\nTest cannot be conducted, due to near singularity\r\n"
                               "of the variance matrix of the parameters involved!\r\n"))
        << text;
    EXPECT_FALSE(module().Ended());
    // The selection stays for another test: a is still marked, c is unmarked, b joins.
    EXPECT_TRUE(Test({2, 1}).ends_with(
        "a(*)\r\nb(*)\r\nWald test:                              8.00\r\n"
        "Asymptotic null distribution:Chi-square(2)\r\n  p-value = 0.01832\r\n"
        "  Significance levels:        10%         5%\r\n"
        "  Critical values:           4.61       5.99\r\n"
        "  Conclusions:             reject     reject\r\n"));
}
