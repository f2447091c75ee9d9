#include <gtest/gtest.h>

#include "estimate/EstimateRoad.h"
#include "estimate/EstimationReport.h"
#include "estimate/EstimationView.h"
#include "estimate/FimlVariance.h"
#include "estimate/RouteFile.h"
#include "support/Errors.h"

using namespace lorvane;
using namespace lorvane::test;

TEST(EstimationReport, TheNameColumnPadsUpToFortyAndCutsBeyond) {
    const std::string forty(40, 'n');
    EXPECT_EQ(NameColumn(forty), forty + " ");
    EXPECT_EQ(NameColumn(forty + "m"), std::string(38, 'n') + ".. ");
    EXPECT_EQ(NameColumn("L(2,1)"), "L(2,1)" + std::string(35, ' '));
    // A row keeps its columns whatever the length of the name.
    EXPECT_EQ(DisplayRow(forty + "xyz", -1234.5, 12345678.9),
              std::string(38, 'n') + ".. " + "  -12.34500E+02" + "12345678.90");
    EXPECT_EQ(PValueRow(0.5), std::string(56, ' ') + " [0.50000]");
}

TEST(EstimationView, TheStatusCountsWholeSecondsFromTheStartOfTheStage) {
    TestModule test;
    Control status;
    status.Caption = " Wait for OLS estimation";
    Control results;
    EstimationView view(test.module(), status, results);
    test.clock().seconds = 100.2;
    view.Begin();
    test.clock().seconds = 103.9;
    view.Working();
    EXPECT_EQ(status.Caption, " Wait for OLS estimation. Working time = 3");
    // A stage that runs past midnight goes on counting.
    status.Caption = " Wait for SUR estimation";
    test.clock().seconds = 86399.5;
    view.Begin();
    test.clock().seconds = 1.0;
    view.Working();
    EXPECT_EQ(status.Caption, " Wait for SUR estimation. Working time = 1");
}

TEST(EstimationView, AnOverflowOfTheResultsLosesOneLineOnly) {
    TestModule test;
    Control status;
    Control results;
    EstimationView view(test.module(), status, results);
    const std::string line = std::string(98, 'x') + "\r\n";
    std::string report;
    for (int i = 0; i < 400; ++i) {
        report += line;
    }
    test.dialogs().QueueAnswer("OK");
    view.Append(report);
    // 327 lines fit; the 328th is lost with the message, the rest start a new box.
    EXPECT_EQ(results.Caption.size(), (400 - 328) * line.size());
    EXPECT_EQ(ReadFile(test.module().DataFile("OUTPUT.TXT")).size(), 327 * line.size() + 2);
    EXPECT_EQ(test.dialogs().Shown().size(), 1u);
}

TEST(RouteFile, TheWordIsQuotedAndReadBackTrimmedInUpperCase) {
    TestModule test;
    WriteRoute(test.module(), RouteMaximumLikelihood);
    EXPECT_EQ(ReadFile(test.module().DataFile("ROUTE.TMP")), "\"NSVARML\"\r\n");
    WriteFile(test.module().DataFile("Route.TMP"), "\" nsvarsur \"\r\n");
    EXPECT_EQ(ReadRoute(test.module()), "NSVARSUR");
    // A word of none of the roads is the file's read error, and the route in force stays.
    WriteFile(test.module().DataFile("ROUTE.TMP"), "\"NSVARGMM\"\r\n");
    EXPECT_EQ(test::ErrorNumberOf([&] { ReadRoute(test.module()); }), InputPastEndOfFile);
    EXPECT_EQ(test.module().Route, "NSVARSUR");
}

TEST(ObservationLogLikelihood, IsTheNormalDensityWithoutItsConstant) {
    // L = [[2, 0], [1, 1]]: Sigma = [[4, 2], [2, 2]], det 4, inverse [[0.5, -0.5], [-0.5, 1]].
    Matrix L(2, 2);
    L(1, 1) = 2;
    L(2, 1) = 1;
    L(2, 2) = 1;
    Matrix u(1, 2);
    u(1, 1) = 1;
    u(1, 2) = 3;
    Int16 flag = 7;
    const double value = ObservationLogLikelihood(L, 2, flag).At(1, u);
    EXPECT_EQ(flag, 0);
    // u' Sigma^-1 u = 0.5 - 3 + 9 = 6.5.
    EXPECT_NEAR(value, -0.5 * 6.5 - 0.5 * std::log(4.0), 1e-12);
    EXPECT_NEAR(ConcentratedLogLikelihood(L, 10), 10 * (-std::log(2.0) - 1 - std::log(2 * M_PI)),
                1e-12);
    L(2, 2) = 0;
    const ObservationLogLikelihood singular(L, 2, flag);
    EXPECT_EQ(flag, 1);
    EXPECT_EQ(singular.At(1, u), 0);
    EXPECT_EQ(FreeElementCount(3), 6);
}

TEST(RegressionFiles, AnEquationWithoutLagsKeepsOnlyDt) {
    // Equation 1 loses both variables: it is a regression on the intercept alone.
    TestModule test;
    WalkCsvToVARSUR(test, "a,b\n1,2\n2,1\n3,5\n4,3\n2,6\n5,1\n", {0, 1}, 1, {{1, 1}, {1, 2}});
    Module& module = test.module();
    ASSERT_EQ(module.CurrentScreen, "VARSUR");
    EXPECT_EQ(Ctl(module, "VARSUR", "Text3").Caption, " 4");
    EXPECT_EQ(Ctl(module, "VARSUR", "Text4").Caption, " 2");
    EXPECT_EQ(Ctl(module, "VARSUR", "Text5").Caption, " 5");
    EXPECT_EQ(ReadFile(module.DataFile("YSURE.TMP")),
              "2\r\n\"a\"\r\n\"b\"\r\n2\r\n1\r\n3\r\n5\r\n4\r\n3\r\n2\r\n6\r\n5\r\n1\r\n");
    EXPECT_EQ(ReadFile(module.DataFile("XSURE.TMP")),
              "1\r\n3\r\n\"1\"\r\n\"LAG1[a]\"\r\n\"LAG1[b]\"\r\n\"1\"\r\n"
              "1\r\n1\r\n2\r\n1\r\n"
              "1\r\n2\r\n1\r\n1\r\n"
              "1\r\n3\r\n5\r\n1\r\n"
              "1\r\n4\r\n3\r\n1\r\n"
              "1\r\n2\r\n6\r\n1\r\n");
    module.Click("VARSUR", "Command3");
    // The intercept is the mean of a over t = 2..6, (2 + 3 + 4 + 2 + 5) / 5.
    EXPECT_NE(Ctl(module, "VARSUR", "Text1")
                  .Caption.find("\r\nx(1,1) = 1" + std::string(31, ' ') + "   32.00000E-01"),
              std::string::npos);
}
