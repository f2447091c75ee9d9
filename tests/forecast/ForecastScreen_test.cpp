// The forecast screen on the example model: reached from the joint tests, the report in Text1
// and in the log with the figures of the peers at the printed digits.

#include <gtest/gtest.h>

#include <string>

#include "data/DataStore.h"
#include "estimate/EstimateRoad.h"
#include "estimate/WaldFileWriter.h"
#include "frame/NumberText.h"
#include "support/Reference.h"

namespace lorvane::test {
namespace {

std::string Cell(double value) {
    return RightAligned(FormatNumber(value, "0.000000"), 11);
}

class E1ForecastScreen : public ::testing::Test {
protected:
    void SetUp() override {
        WalkE1ToVWaldT2(test);
        module().Click("VWaldT2", "Forecast");
        ASSERT_EQ(module().CurrentScreen, "VARFCST");
    }

    Module& module() { return test.module(); }
    const nlohmann::json& Reference() {
        return E1Reference()["var2_intercept_checks_and_forecasts"];
    }

    TestModule test;
};

TEST_F(E1ForecastScreen, TheReportShowsForecastsErrorsAndObservedValues) {
    EXPECT_EQ(Ctl(module(), "VARFCST", "Horizon").Caption, "8");
    module().Click("VARFCST", "Compute");
    const std::string report = Ctl(module(), "VARFCST", "Text1").Caption;
    EXPECT_NE(report.find("estimation uncertainty not added"), std::string::npos) << report;
    const nlohmann::json& points = Reference()["forecast"];
    const nlohmann::json& se = Reference()["forecast_se_sigma_over_T"];
    const nlohmann::json& actual = Reference()["actual_after_origin"];
    for (std::size_t i = 0; i < 3; ++i) {
        double squares = 0;
        for (std::size_t h = 0; h < 8; ++h) {
            const double y = points[h][i].get<double>();
            const double a = actual[h][i].get<double>();
            squares += (a - y) * (a - y);
            const std::string line =
                RightAligned(std::to_string(77 + h), 3) + Cell(y) + Cell(se[h][i].get<double>());
            const std::string tail = Cell(a) + Cell(a - y) + "\r\n";
            const std::size_t at = report.find(line, i == 0 ? 0 : report.find(" dlinc"));
            ASSERT_NE(at, std::string::npos) << line << "\n" << report;
            EXPECT_EQ(report.substr(at + line.size() + 44, tail.size()), tail) << line;
        }
        EXPECT_NE(report.find(" RMSE over 8 observed steps:" + Cell(std::sqrt(squares / 8))),
                  std::string::npos)
            << i;
    }
    const std::string log = ReadFile(module().DataFile("OUTPUT.TXT"));
    // The report, then a fan chart per variable, each named in the log (the pictures' files
    // and numbers are the scripted runs' part: this module draws on a recording surface).
    const std::size_t at = log.rfind(report);
    ASSERT_NE(at, std::string::npos) << log;
    const std::string after = log.substr(at + report.size());
    std::size_t named = 0;
    for (std::size_t p = after.find("\r\nInsert picture file LORVANE.DAT/IRP");
         p != std::string::npos; p = after.find("\r\nInsert picture file LORVANE.DAT/IRP", p + 1)) {
        ++named;
    }
    EXPECT_EQ(named, 3u) << after;

    module().Click("VARFCST", "Continue");
    EXPECT_EQ(module().CurrentScreen, "VWaldT2");
}

TEST_F(E1ForecastScreen, TheOptionAddsTheEstimationUncertaintyAndBadHorizonsAreRefused) {
    Control& horizon = Ctl(module(), "VARFCST", "Horizon");
    for (const char* text : {"0", "2.5", "abc", "101"}) {
        horizon.Caption = text;
        module().Click("VARFCST", "Compute");
        EXPECT_EQ(Ctl(module(), "VARFCST", "Text1").Caption,
                  " The horizon is a whole number from 1 to 100.")
            << text;
    }
    horizon.Caption = "2";
    Ctl(module(), "VARFCST", "Check1").Value = 1;
    module().Click("VARFCST", "Compute");
    const std::string report = Ctl(module(), "VARFCST", "Text1").Caption;
    EXPECT_NE(report.find("estimation uncertainty added"), std::string::npos) << report;
    // The peers' figures divide the residuals' squares by T - kp - 1 = 66, ours by T = 73:
    // both shares scale alike, so the ratio of the standard errors is sqrt(66 / 73).
    const double peers = Reference()["forecast_se_with_estimation_uncertainty_peers"][1][0];
    const std::string line = " 78" + Cell(Reference()["forecast"][1][0].get<double>()) +
                             Cell(peers * std::sqrt(66.0 / 73));
    EXPECT_NE(report.find(line), std::string::npos) << line << "\n" << report;
}

} // namespace
} // namespace lorvane::test

namespace lorvane::test {
namespace {

// With Granger zeros and SUR estimates, the first two forecasts follow from the coefficients on
// file: dlinvest's lags are left out of the equations of dlincome and dlcons.
TEST(RestrictedForecastScreen, TheForecastsUseTheRestrictedSurEstimates) {
    TestModule test;
    Module& module = test.module();
    WalkE1ToVARSUR(test, {{2, 1}, {3, 1}});
    // OLS, SUR, FIML, then a SUR round again: the SUR estimates are on file.
    for (const char* button : {"Command3", "Command4", "Command5", "Command4", "Command1"}) {
        module.Click("VARSUR", button);
    }
    ASSERT_EQ(module.CurrentScreen, "VWaldT2");
    module.Click("VWaldT2", "Forecast");
    Ctl(module, "VARFCST", "Horizon").Caption = "2";
    module.Click("VARFCST", "Compute");
    const std::string report = Ctl(module, "VARFCST", "Text1").Caption;

    double T = 0;
    const std::vector<double> b = ReadParameterSet(module, T).values;
    ASSERT_EQ(b.size(), 17u);
    const DataStore& store = module.store();
    // y(t) for t = 75, 76, then the two forecasts.
    std::vector<std::vector<double>> y;
    for (int t = 75; t <= 76; ++t) {
        y.push_back(
            {store.SelectedValue(t, 1), store.SelectedValue(t, 2), store.SelectedValue(t, 3)});
    }
    for (int step = 1; step <= 2; ++step) {
        const std::size_t now = y.size();
        std::vector<double> next(3);
        std::size_t c = 0;
        for (int i = 0; i < 3; ++i) {
            for (std::size_t lag = 1; lag <= 2; ++lag) {
                for (int j = i == 0 ? 0 : 1; j < 3; ++j) {
                    next[i] += b[c++] * y[now - lag][j];
                }
            }
            next[i] += b[c++];
        }
        y.push_back(next);
    }
    for (int i = 0; i < 3; ++i) {
        const std::size_t section = report.find("\r\n " + Trim(store.SelectedName(i + 1)) + "\r\n");
        ASSERT_NE(section, std::string::npos) << report;
        for (int step = 1; step <= 2; ++step) {
            const std::string line = " " + std::to_string(76 + step) + Cell(y[1 + step][i]);
            EXPECT_NE(report.find(line, section), std::string::npos) << line << "\n" << report;
        }
    }
}

} // namespace
} // namespace lorvane::test
