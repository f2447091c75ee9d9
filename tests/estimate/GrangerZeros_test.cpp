#include <gtest/gtest.h>

#include "estimate/EstimateRoad.h"
#include "estimate/EstimationReport.h"
#include "support/Reference.h"

using namespace lorvane;
using namespace lorvane::test;

namespace {

// The example VAR(2) with the zeros [[1,1,1],[0,1,1],[0,1,1]]: dlinvest does not enter the
// equations of dlincome and dlcons.
class GrangerZeros : public ::testing::Test {
protected:
    void SetUp() override {
        WalkE1ToVARSUR(test, {{2, 1}, {3, 1}});
        ASSERT_EQ(module().CurrentScreen, "VARSUR");
    }

    Module& module() { return test.module(); }
    Control& control(const char* name) { return Ctl(module(), "VARSUR", name); }
    const nlohmann::json& Reference() { return E1Reference()["var2_granger_zeros"]; }

    // One press of a button; the text it added to the results.
    std::string Press(const char* button) {
        Control& results = control("Text1");
        results.Caption.clear();
        module().Click("VARSUR", button);
        return results.Caption;
    }

    TestModule test;
};

// The estimates printed in the report, equation by equation: the estimate column of each
// "x(i,c) = " row.
std::vector<std::vector<std::string>> PrintedEstimates(const std::string& report) {
    std::vector<std::vector<std::string>> estimates(3);
    for (const std::string& line : Lines(report)) {
        if (line.starts_with("x(")) {
            estimates[static_cast<std::size_t>(line[2] - '1')].push_back(line.substr(41, 15));
        }
    }
    return estimates;
}

std::vector<std::vector<std::string>> Formatted(const nlohmann::json& coefficients) {
    std::vector<std::vector<std::string>> estimates;
    for (const auto& equation : coefficients) {
        std::vector<std::string>& row = estimates.emplace_back();
        for (const auto& value : equation) {
            row.push_back(RightAligned(FormatNumber(value.get<double>(), "00.00000E+00"), 15));
        }
    }
    return estimates;
}

// The rows of L printed after "= LL', where L =".
std::string PrintedL(const std::string& report) {
    const std::size_t start = report.find("= LL', where L =\r\n");
    EXPECT_NE(start, std::string::npos);
    const std::vector<std::string> lines = Lines(report.substr(start));
    return lines.at(1) + "|" + lines.at(2) + "|" + lines.at(3);
}

std::string FormattedL(const nlohmann::json& L) {
    std::string rows;
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 3; ++j) {
            rows += RightAligned(j <= i ? FormatNumber(L[i][j].get<double>(), "0.00000E+000") : "0",
                                 15);
        }
        rows += i < 2 ? "|" : "";
    }
    return rows;
}

} // namespace

TEST_F(GrangerZeros, TheRegressionFilesLeaveOutTheRestrictedLags) {
    EXPECT_EQ(control("Text3").Caption, " 17");
    EXPECT_EQ(control("Text4").Caption, " 2");
    const std::vector<std::string> head = Lines(ReadFile(module().DataFile("XSURE.TMP")));
    EXPECT_EQ(std::vector<std::string>(head.begin(), head.begin() + 3),
              (std::vector<std::string>{"7", "5", "5"}));
    EXPECT_EQ(std::vector<std::string>(head.begin() + 10, head.begin() + 15),
              (std::vector<std::string>{"\"LAG1[dlincome]\"", "\"LAG1[dlcons]\"",
                                        "\"LAG2[dlincome]\"", "\"LAG2[dlcons]\"", "\"1\""}));
}

TEST_F(GrangerZeros, OlsThenSurRoundsConvergeToTheReference) {
    const std::string ols = Press("Command3");
    EXPECT_EQ(PrintedEstimates(ols), Formatted(Reference()["ols_coefficients"]));
    EXPECT_TRUE(
        ols.ends_with("Since Granger causality restrictions have been imposed on the VAR\r\n"
                      "parameters, the OLS estimators are not efficient. It is recommended\r\n"
                      "that you conduct SUR estimation.\r\n"));
    // SUR next; Continue and FIML wait.
    EXPECT_FALSE(control("Command1").Enabled);
    EXPECT_TRUE(control("Command4").Enabled);
    EXPECT_FALSE(control("Command5").Enabled);
    EXPECT_EQ(control("Label2").Caption, "By repeating the SUR estimation procedure until the "
                                         "lower triangular matrix L converges you will "
                                         "reach the full information maximum likelihood (FIML) "
                                         "solution. The latter is needed in order to "
                                         "compute confidence bands around the innovation "
                                         "responses. Click the 'FIML estimation'  button  when "
                                         "the maximum likelihood solution has been reached.");

    for (int round = 1; round <= 30; ++round) {
        const std::string report = Press("Command4");
        ASSERT_TRUE(report.starts_with("SUR estimation results for SUR iteration round " +
                                       std::to_string(round) + "\r\n\r\ny(1) = dlinvest\r\n"))
            << report.substr(0, 200);
        for (const auto& expected : Reference()["sur_rounds"]) {
            if (expected["round"].get<int>() != round) {
                continue;
            }
            EXPECT_EQ(PrintedEstimates(report), Formatted(expected["coefficients"])) << round;
            EXPECT_EQ(PrintedL(report), FormattedL(expected["L"])) << round;
            const std::string change =
                report.substr(report.find("\r\n\r\nMaximum absolute difference"));
            const double largest = expected["max_abs_change_L"];
            if (largest > 1e-12) {
                EXPECT_EQ(
                    change,
                    "\r\n\r\nMaximum absolute difference of the elements of the matrix L with\r\n"
                    "the corresponding elements of the previous matrix L: " +
                        FormatNumber(largest, "00.00000E+000") + "\r\n\r\n");
            } else {
                // At convergence the change is rounding noise; it only has to be as small.
                EXPECT_LT(Val(change.substr(change.find(": ") + 2)), 1e-15);
            }
        }
        EXPECT_EQ(control("Label0").Caption, " SUR estimation results:");
        EXPECT_TRUE(control("Command4").Enabled);
        EXPECT_TRUE(control("Command5").Enabled);
        EXPECT_FALSE(control("Command1").Enabled);
    }
    const std::vector<std::string> head = Lines(ReadFile(module().DataFile("U.TMP")));
    EXPECT_EQ(head.at(1), "\"SUR residuals of dlinvest\"");

    const std::string fiml = Press("Command5");
    EXPECT_TRUE(fiml.ends_with(
        "Log-likelihood: " +
        FormatNumber(Reference()["loglik_after_30_rounds"].get<double>(), "00.000000E+000") +
        "\r\n"))
        << fiml;
    EXPECT_TRUE(control("Command1").Enabled);
    EXPECT_FALSE(control("Command5").Enabled);
    EXPECT_EQ(control("Text6").Caption, "1");
}

// A SUR round after FIML writes WALDT.TMP without L: the variance of L and its route word go
// with it, so that the joint tests and the responses see the estimates that are on file.
TEST_F(GrangerZeros, ASurRoundAfterFimlLeavesNoVarianceOfL) {
    Press("Command3");
    Press("Command4");
    Press("Command5");
    EXPECT_EQ(control("Text6").Caption, "1");
    EXPECT_EQ(ReadFile(module().DataFile("ROUTE.TMP")), "\"NSVARML\"\r\n");
    Press("Command4");
    EXPECT_EQ(control("Text6").Caption, "0");
    EXPECT_EQ(ReadFile(module().DataFile("ROUTE.TMP")), "\"NSVARSUR\"\r\n");
    EXPECT_EQ(Lines(ReadFile(module().DataFile("WALDT.TMP"))).at(0), "73,17");

    ASSERT_TRUE(control("Command1").Enabled);
    module().Click("VARSUR", "Command1");
    EXPECT_EQ(ReadFile(module().DataFile("ROUTE.TMP")), "\"NSVARSUR\"\r\n");
    EXPECT_NE(ReadFile(module().DataFile("OUTPUT.TXT"))
                  .find("\r\nOLS-SUR estimation of a nonstructural VAR model:\r\n"),
              std::string::npos);
    EXPECT_EQ(Ctl(module(), "VWaldT2", "Label0").Caption,
              " Tests of joint significance (Nonstructural VAR model estimated by OLS or SUR)");
    EXPECT_EQ(Ctl(module(), "VWaldT2", "List1").ListCount(), 17);

    // The responses keep the standard errors of the coefficients and say what they leave out.
    module().Click("VWaldT2", "Command2");
    module().Click("VARSTR1", "Command1");
    module().Click("VARIR2", "Command1");
    ASSERT_FALSE(module().Ended());
    const std::string report = Ctl(module(), "VARIR2", "Text2").Caption;
    EXPECT_NE(report.find("101-117.\r\nThe uncertainty of the estimate of L is not included: no "
                          "FIML variance of L is available.\r\n"),
              std::string::npos);
    const std::vector<std::string> lines = Lines(report);
    const auto table =
        std::find(lines.begin(), lines.end(), "Horizon  Innovation response      Standard error");
    ASSERT_LT(table + 2, lines.end());
    EXPECT_TRUE(table[1].starts_with("   0 ") && table[1].ends_with(" 00.00000E+000")) << table[1];
    EXPECT_FALSE(table[2].ends_with(" 00.00000E+000")) << table[2];
}
