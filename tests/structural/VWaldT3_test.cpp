#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/ScreenTable.h"
#include "frame/TextFile.h"
#include "support/TestModule.h"
#include "support/TestScreens.h"

namespace lorvane {
namespace {

using test::Ctl;
using test::ProbeTable;
using test::ReadFile;
using test::TestModule;
using test::WriteFile;

// A display row as the estimation writes it: the name part in 30 columns, " x ", the signed
// value right-aligned in 20, a blank, the t-value right-aligned in 15.
std::string Row(std::string name, const std::string& value, const std::string& t) {
    name.resize(30, ' ');
    return name + " x " + std::string(20 - value.size(), ' ') + value + " " +
           std::string(15 - t.size(), ' ') + t;
}

const std::vector<std::string> Rows = {
    Row("x(1,2)=dlincome", "+0.2000", "(2.0000)"),
    Row("x(2,1)=consumption_of_nondur..", "-0.1000", "(-1.0000)"),
    Row("x(3,1)=dlcons", "+0.3000", "(1.7321)"),
};

// The values and the variance of the three parameters.
constexpr double T = 50;
constexpr double Values[] = {0.2, -0.1, 0.3};
constexpr double Variance[3][3] = {{2, 0.5, 1}, {0.5, 1, 0.2}, {1, 0.2, 3}};

std::string ParameterFileText(const std::vector<std::string>& rows,
                              const double (&variance)[3][3]) {
    std::string text = ShortestText(T) + "," + std::to_string(rows.size()) + "\r\n";
    for (const std::string& row : rows) {
        text += "\"" + row + "\"\r\n";
    }
    for (std::size_t q = 0; q < rows.size(); ++q) {
        text += ShortestText(Values[q]) + "\r\n";
    }
    for (std::size_t r = 0; r < rows.size(); ++r) {
        for (std::size_t c = 0; c < rows.size(); ++c) {
            text += ShortestText(variance[r][c]) + "\r\n";
        }
    }
    return text;
}

// The structural test screen on a parameter file written by hand, with probe screens in the
// places of the innovation responses and the structural specification.
class StructuralJointTests : public ::testing::Test {
protected:
    void SetUp() override {
        module().UseScreenTable([](Module& owner, std::string_view name) {
            std::unique_ptr<Screen> probe = ProbeTable({"VARIR2", "VBernanke1"})(owner, name);
            return probe ? std::move(probe) : CreateScreen(owner, name);
        });
        module().store().SelectedNames.Assign({"dlincome", "dlinvest", "dlcons"});
        WriteFile(module().DataFile("ROUTE.TMP"), "\"SVARMLBERNANKE\"\r\n");
        WriteFile(module().DataFile("OUTPUT.TXT"), "Earlier results\r\n");
    }

    void Open(const std::vector<std::string>& rows = Rows,
              const double (&variance)[3][3] = Variance) {
        WriteFile(module().DataFile("WALDTSV.TMP"), ParameterFileText(rows, variance));
        // The model the file belongs to: its T observations, and a pattern with one free place
        // off the diagonal for each coefficient.
        module().p = 1;
        module().SampleFirst = 1;
        module().SampleLast = static_cast<int>(T) + 1;
        std::string pattern;
        std::size_t free = 0;
        for (int i = 1; i <= 3; ++i) {
            for (int j = 1; j <= 3; ++j) {
                pattern += i == j || free++ < rows.size() ? "1\r\n" : "0\r\n";
            }
        }
        WriteFile(module().DataFile("SVARA.TMP"), pattern);
        module().Run([this] { module().GoToScreen("VWaldT3"); });
    }

    Module& module() { return test.module(); }
    Control& control(const char* name) { return Ctl(module(), "VWaldT3", name); }
    void Select(int item) { module().DoubleClick("VWaldT3", "List1", item); }
    // The text a press of the test button adds to the results.
    std::string Test() {
        const std::size_t before = control("Text1").Caption.size();
        module().Click("VWaldT3", "Command1");
        return control("Text1").Caption.substr(before);
    }
    std::string Log() { return ReadFile(module().DataFile("OUTPUT.TXT")); }

    TestModule test;
};

TEST_F(StructuralJointTests, TheScreenListsTheParametersAndMarksThem) {
    Open();
    ASSERT_EQ(module().CurrentScreen, "VWaldT3");
    EXPECT_EQ(module().Route, "SVARMLBERNANKE");
    EXPECT_EQ(control("Label0").Caption,
              " Tests of joint significance of structural VAR parameters");
    EXPECT_EQ(control("Label1").Caption, "Double click to select parameters to be tested. "
                                         "Selected parameters are indicated by (*)");
    EXPECT_EQ(control("Text1").Caption, "y(1) = dlincome\r\ny(2) = dlinvest\r\ny(3) = dlcons\r\n");
    // The rows come whole, with the comma of their place and the blanks of their columns, also
    // where a long name was cut to its 30 columns.
    EXPECT_EQ(control("List1").Items, Rows);
    for (const std::string& row : control("List1").Items) {
        EXPECT_EQ(row.size(), 30u + 3u + 20u + 1u + 15u);
        EXPECT_EQ(row.find(" x "), 30u) << row;
    }

    // The mark opens a row, marked rows keep their columns among themselves, and a second
    // double click gives the row back as it was.
    Select(1);
    Select(2);
    const std::vector<std::string>& items = control("List1").Items;
    EXPECT_EQ(items[1], "(*)" + Rows[1]);
    EXPECT_EQ(items[1].find(" x "), items[2].find(" x "));
    Select(1);
    EXPECT_EQ(items[1], Rows[1]);
    EXPECT_EQ(items[2], "(*)" + Rows[2]);
}

TEST_F(StructuralJointTests, TwoParametersAreTestedWithTheirBlockOfTheVariance) {
    Open();
    Select(0);
    Select(2);
    // T v' R^-1 v with the 2 by 2 block R of the first and third parameter.
    const double a = Variance[0][0];
    const double b = Variance[0][2];
    const double d = Variance[2][2];
    const double v1 = Values[0];
    const double v2 = Values[2];
    const double statistic = T * (d * v1 * v1 - 2 * b * v1 * v2 + a * v2 * v2) / (a * d - b * b);
    ASSERT_NEAR(statistic, 1.8, 1e-12);
    const std::string report =
        "Tests of joint significance\r\n"
        "Test results:\r\n"
        "Test of the null hypothesis that the parameters indicated by (*) are \r\n"
        "jointly zero: \r\n"
        "(*)" +
        Rows[0] + "\r\n(*)" + Rows[2] + "\r\nWald test:                   " +
        RightAligned(FormatNumber(statistic, "##########.00"), 15) +
        "\r\n"
        "Asymptotic null distribution:Chi-square(2)\r\n"
        "  p-value = 0.40657\r\n"
        "  Significance levels:        10%         5%\r\n"
        "  Critical values:           4.61       5.99\r\n"
        "  Conclusions:             accept     accept\r\n";
    EXPECT_EQ(Test(), report);
    EXPECT_EQ(Log(), "Earlier results\r\n" + report);

    // Every further test adds its report to the log as well.
    Select(1);
    const std::string second = Test();
    EXPECT_TRUE(second.find("Chi-square(3)") != std::string::npos) << second;
    EXPECT_EQ(Log(), "Earlier results\r\n" + report + second);
}

TEST_F(StructuralJointTests, FewerThanTwoParametersOnlyGetAdvice) {
    Open();
    EXPECT_EQ(Test(), "Test results:\r\nNo parameters to test!\r\n");
    Select(1);
    EXPECT_EQ(Test(), "Testing the significance of one parameter can be done by the t-test!\r\n");
    EXPECT_EQ(Log(), "Earlier results\r\n");
    EXPECT_EQ(control("List1").Items[1], "(*)" + Rows[1]);
}

TEST_F(StructuralJointTests, ASingularBlockStopsTheTestButNotTheScreen) {
    const double proportional[3][3] = {{1, 2, 0}, {2, 4, 0}, {0, 0, 1}};
    Open(Rows, proportional);
    Select(0);
    Select(1);
    const std::string text = Test();
    EXPECT_TRUE(text.ends_with("Test cannot be conducted, due to near singularity\r\n"
                               "of the variance matrix of the parameters involved!\r\n"))
        << text;
    EXPECT_FALSE(module().Ended());
    // The selection stays for another test.
    Select(1);
    Select(2);
    EXPECT_NE(Test().find("Wald test:"), std::string::npos);
}

TEST_F(StructuralJointTests, TheButtonsLeadOnBackAndAgain) {
    Open();
    Select(0);
    Select(1);
    Test();
    module().Click("VWaldT3", "Command3");
    ASSERT_EQ(module().CurrentScreen, "VWaldT3");
    EXPECT_EQ(control("List1").Items, Rows);
    EXPECT_EQ(control("Text1").Caption, "y(1) = dlincome\r\ny(2) = dlinvest\r\ny(3) = dlcons\r\n");

    module().Click("VWaldT3", "Command2");
    EXPECT_EQ(module().CurrentScreen, "VARIR2");
    Open();
    module().Click("VWaldT3", "Command5");
    EXPECT_EQ(module().CurrentScreen, "VBernanke1");
}

TEST_F(StructuralJointTests, OneParameterGoesStraightOnToTheResponses) {
    const double variance[3][3] = {{4, 0, 0}, {0, 0, 0}, {0, 0, 0}};
    Open({Rows[0]}, variance);
    EXPECT_EQ(module().CurrentScreen, "VARIR2");
    EXPECT_EQ(module().LoadedScreen("VWaldT3"), nullptr);
    EXPECT_EQ(module().Route, "SVARMLBERNANKE");
    EXPECT_FALSE(module().Ended());
}

} // namespace
} // namespace lorvane
