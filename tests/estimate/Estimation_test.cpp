#include <gtest/gtest.h>

#include <cmath>

#include "estimate/EstimateRoad.h"
#include "estimate/EstimationReport.h"
#include "estimate/WaldTest.h"
#include "numeric/DISTRIB.h"
#include "support/Reference.h"

using namespace lorvane;
using namespace lorvane::test;

namespace {

// The example VAR(2) with an intercept and no zeros, on the estimation screen.
class E1Estimation : public ::testing::Test {
protected:
    void SetUp() override {
        WalkE1ToVARSUR(test);
        ASSERT_EQ(module().CurrentScreen, "VARSUR");
    }

    Module& module() { return test.module(); }
    Control& control(const char* name) { return Ctl(module(), "VARSUR", name); }
    std::string Results() { return control("Text1").Caption; }
    const nlohmann::json& Reference() { return E1Reference()["var2_intercept"]; }
    std::filesystem::path File(const char* name) { return module().DataFile(name); }

    TestModule test;
};

std::string SigmaRow(const nlohmann::json& values) {
    std::string row;
    for (const auto& value : values) {
        row += RightAligned(FormatNumber(value.get<double>(), "0.00000E+000"), 15);
    }
    return row;
}

std::string LRow(const nlohmann::json& L, int i, int k) {
    std::string row;
    for (int j = 1; j <= k; ++j) {
        const double value =
            L[static_cast<std::size_t>(i - 1)][static_cast<std::size_t>(j - 1)].get<double>();
        row += RightAligned(j <= i ? FormatNumber(value, "0.00000E+000") : "0", 15);
    }
    return row;
}

bool Contains(const std::string& text, const std::string& line) {
    return text.find("\r\n" + line + "\r\n") != std::string::npos;
}

} // namespace

TEST_F(E1Estimation, TheLoadWritesTheRegressionFilesAndOffersOlsOnly) {
    EXPECT_EQ(control("Text2").Caption, " 3");
    EXPECT_EQ(control("Text3").Caption, " 21");
    EXPECT_EQ(control("Text4").Caption, " 0");
    EXPECT_EQ(control("Text5").Caption, " 73");
    EXPECT_EQ(control("Text6").Caption, "0");
    EXPECT_EQ(control("Label0").Caption, " Click OLS button");
    EXPECT_EQ(control("Text7").Caption, module().ModelText);
    EXPECT_TRUE(control("Command3").Enabled);
    EXPECT_TRUE(control("Command2").Enabled);
    EXPECT_FALSE(control("Command1").Enabled);
    EXPECT_FALSE(control("Command4").Enabled);
    EXPECT_FALSE(control("Command5").Enabled);

    // The first record is observation 4 = first + p; its lag-1 regressors are observation 3.
    const DataStore& store = module().store();
    const std::vector<double> y = NumbersOf(File("YSURE.TMP"), 4);
    ASSERT_EQ(y.size(), 73u * 3u);
    EXPECT_EQ(y[0], store.SelectedValue(4, 1));
    EXPECT_EQ(y[y.size() - 1], store.SelectedValue(76, 3));
    const std::vector<double> x = NumbersOf(File("XSURE.TMP"), 3 + 21);
    ASSERT_EQ(x.size(), 73u * 21u);
    EXPECT_EQ(x[0], store.SelectedValue(3, 1));
    EXPECT_EQ(x[4], store.SelectedValue(2, 2));
    EXPECT_EQ(x[6], 1.0);
    EXPECT_EQ(x[7 + 2], store.SelectedValue(3, 3));
}

TEST_F(E1Estimation, TheOlsReportAgreesWithTheReferenceAtThePrintedDigits) {
    module().Click("VARSUR", "Command3");
    const std::string text = Results();
    const auto& reference = Reference();
    const int k = 3;
    int q = 0;
    for (int i = 1; i <= k; ++i) {
        const auto& names = reference["regressors"][static_cast<std::size_t>(i - 1)];
        for (int c = 1; c <= 7; ++c) {
            const double b = reference["coefficients"][static_cast<std::size_t>(i - 1)]
                                      [static_cast<std::size_t>(c - 1)];
            const double t = reference["t_values"][static_cast<std::size_t>(q++)];
            const std::string label = "x(" + std::to_string(i) + "," + std::to_string(c) + ") = " +
                                      names[static_cast<std::size_t>(c - 1)].get<std::string>();
            EXPECT_TRUE(Contains(text, DisplayRow(label, b, t) + "\r\n" +
                                           PValueRow(NormalPValue(std::abs(t)))))
                << label;
        }
        const double se = reference["se_of_regression"][static_cast<std::size_t>(i - 1)];
        const double rSquare = reference["r_square"][static_cast<std::size_t>(i - 1)];
        EXPECT_TRUE(
            Contains(text, "y(" + std::to_string(i) + ") = " + module().store().SelectedName(i)));
        EXPECT_NE(text.find("s.e.:" + std::string(36, ' ') +
                            RightAligned(FormatNumber(se, "00.00000E+00"), 15) +
                            "\r\nR-Square:" + std::string(32, ' ') +
                            RightAligned(FormatNumber(rSquare, "0.0000"), 15)),
                  std::string::npos)
            << i;
    }
    std::string sigma = "Error variance matrix based on OLS residuals:\r\n\r\n";
    for (const auto& row : reference["Sigma"]) {
        sigma += SigmaRow(row) + "\r\n";
    }
    sigma += "= LL', where L =\r\n";
    for (int i = 1; i <= k; ++i) {
        sigma += LRow(reference["L"], i, k) + "\r\n";
    }
    EXPECT_NE(text.find(sigma), std::string::npos) << text;
    EXPECT_TRUE(text.starts_with("OLS estimation results:\r\n\r\ny(1) = dlinvest\r\n"));
    EXPECT_TRUE(text.ends_with("= LL', where L =\r\n" + LRow(reference["L"], 1, k) + "\r\n" +
                               LRow(reference["L"], 2, k) + "\r\n" + LRow(reference["L"], 3, k) +
                               "\r\n" +
                               "Since no restrictions have been imposed on the VAR parameters,\r\n"
                               "the OLS results are also maximum likelihood results.\r\n\r\n"));
}

TEST_F(E1Estimation, OneEquationBlockHasTheTableLayout) {
    module().Click("VARSUR", "Command3");
    const std::vector<std::string> lines = Lines(Results());
    ASSERT_GT(lines.size(), 24u);
    const std::vector<std::string> block(lines.begin() + 2, lines.begin() + 25);
    EXPECT_EQ(block[0], "y(1) = dlinvest");
    EXPECT_EQ(block[1], "Explanatory variables                           estimate   t-value");
    EXPECT_EQ(block[2], "                                                         [p-value]");
    EXPECT_EQ(block[3], "x(1,1) = LAG1[dlinvest]                    -31.96310E-02     -2.68");
    EXPECT_EQ(block[4], "                                                         [0.00737]");
    EXPECT_EQ(block[5], "x(1,2) = LAG1[dlincome]                     14.59888E-02      0.28");
    EXPECT_EQ(block[15], "x(1,7) = 1                                 -16.72199E-03     -1.02");
    EXPECT_EQ(block[16], "                                                         [0.30730]");
    EXPECT_EQ(block[17], "[The p-values are two-sided and based on the normal approximation]");
    // The three numbers end under the estimates.
    EXPECT_EQ(block[18], "s.e.:                                       46.14790E-03");
    EXPECT_EQ(block[19], "R-Square:                                         0.1286");
    EXPECT_EQ(block[20], "n:                                                    73");
    EXPECT_EQ(block[18].size(), block[3].size() - 10);
    EXPECT_EQ(block[21], "");
    EXPECT_EQ(block[22], "y(2) = dlincome");
}

TEST_F(E1Estimation, TheWorkFilesCarryTheEstimatesInFullPrecision) {
    module().Click("VARSUR", "Command3");
    const auto& reference = Reference();
    const double T = 73;

    const ParameterFile wald = ReadParameterFile(File("WALDT.TMP"));
    EXPECT_TRUE(ReadFile(File("WALDT.TMP")).starts_with("73,21\r\n\"x(1,1) = LAG1[dlinvest]"));
    ASSERT_EQ(wald.rows.size(), 21u);
    ASSERT_EQ(wald.variances.size(), 1u);
    const std::vector<double> varb = NumbersOf(File("VARB.TMP"), 0);
    ASSERT_EQ(varb.size(), 22u);
    EXPECT_EQ(varb[0], 21);
    for (int q = 1; q <= 21; ++q) {
        const double b = reference["coefficients"][static_cast<std::size_t>((q - 1) / 7)]
                                  [static_cast<std::size_t>((q - 1) % 7)];
        const double t = reference["t_values"][static_cast<std::size_t>(q - 1)];
        ExpectRelative(wald.values(q), b, 1e-9, "b " + std::to_string(q));
        EXPECT_EQ(varb[static_cast<std::size_t>(q)], wald.values(q));
        ExpectRelative(std::sqrt(T) * wald.values(q) / std::sqrt(wald.variances[0](q, q)), t, 1e-9,
                       "t " + std::to_string(q));
        // V is symmetric up to the rounding of its block products.
        for (int r = 1; r <= 21; ++r) {
            EXPECT_NEAR(wald.variances[0](q, r), wald.variances[0](r, q), 1e-12);
        }
    }

    const std::vector<double> L = NumbersOf(File("VARL.TMP"), 0);
    ASSERT_EQ(L.size(), 10u);
    EXPECT_EQ(L[0], 3);
    for (std::size_t e = 0; e < 9; ++e) {
        ExpectRelative(L[e + 1], reference["L"][e / 3][e % 3].get<double>(), 1e-9, "L");
    }
    EXPECT_EQ(ReadFile(File("VARLPAT.TMP")), "1\r\n0\r\n0\r\n1\r\n1\r\n0\r\n1\r\n1\r\n1\r\n");

    const std::vector<std::string> head = Lines(ReadFile(File("U.TMP")));
    EXPECT_EQ(
        std::vector<std::string>(head.begin(), head.begin() + 4),
        (std::vector<std::string>{"3", "\"OLS residuals of dlinvest\"",
                                  "\"OLS residuals of dlincome\"", "\"OLS residuals of dlcons\""}));
    const std::vector<double> u = NumbersOf(File("U.TMP"), 4);
    ASSERT_EQ(u.size(), 73u * 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 3; ++j) {
            double sum = 0;
            for (std::size_t t = 0; t < 73; ++t) {
                sum += u[t * 3 + i] * u[t * 3 + j];
            }
            ExpectRelative(sum / T, reference["Sigma"][i][j].get<double>(), 1e-9,
                           "Sigma from U.TMP");
            if (i == j) {
                ExpectRelative(std::sqrt(sum / (T - 7)),
                               reference["se_of_regression"][i].get<double>(), 1e-9, "se");
            }
        }
    }
}

TEST_F(E1Estimation, FimlGivesTheTValuesOfLAndTheLogLikelihood) {
    module().Click("VARSUR", "Command3");
    const std::string afterOls = Results();
    module().Click("VARSUR", "Command5");
    const std::string fiml = Results().substr(afterOls.size());
    const auto& reference = Reference();
    const auto& L = reference["L"];
    const auto& tValues = reference["L_t_values"];
    std::string expected = "L = \r\n";
    std::size_t c = 0;
    for (int i = 1; i <= 3; ++i) {
        std::string ts;
        std::string ps;
        for (int j = 1; j <= i; ++j, ++c) {
            const double t = tValues[c];
            ts += RightAligned("(" + Trim(FormatNumber(t, "########0.00")) + ")", 15);
            ps += RightAligned("[" + FormatNumber(NormalPValue(t), "0.00000") + "]", 15);
        }
        expected += LRow(L, i, 3) + "\r\n" + ts + "\r\n" + ps + "\r\n";
    }
    expected += "(t-values in parenthesis)\r\n"
                "[p-values in parenthesis (two-sided, based on the normal approximation)]\r\n"
                "Log-likelihood: " +
                FormatNumber(reference["loglik"].get<double>(), "00.000000E+000") + "\r\n";
    EXPECT_EQ(fiml, expected);

    // WALDT.TMP now holds the six free elements of L behind the coefficients, with their own
    // variance block and zero covariance against the coefficients.
    const ParameterFile wald = ReadParameterFile(File("WALDT.TMP"));
    EXPECT_EQ(ReadFile(File("WALDT.TMP")), ReadFile(File("WALDTN.TMP")));
    ASSERT_EQ(wald.rows.size(), 27u);
    EXPECT_TRUE(wald.rows[21].starts_with("L(1,1)" + std::string(35, ' ')));
    EXPECT_TRUE(wald.rows[26].starts_with("L(3,3)"));
    EXPECT_EQ(wald.rows[23], DisplayRow("L(2,2)", L[1][1].get<double>(), tValues[2].get<double>()));
    const Matrix& V = wald.variances[0];
    for (int q = 1; q <= 21; ++q) {
        for (int r = 22; r <= 27; ++r) {
            EXPECT_EQ(V(q, r), 0.0);
            EXPECT_EQ(V(r, q), 0.0);
        }
    }
    const int places[6][2] = {{1, 1}, {2, 1}, {2, 2}, {3, 1}, {3, 2}, {3, 3}};
    for (int e = 0; e < 6; ++e) {
        const double value = L[static_cast<std::size_t>(places[e][0] - 1)]
                              [static_cast<std::size_t>(places[e][1] - 1)];
        ExpectRelative(wald.values(22 + e), value, 1e-9, "L in WALDT.TMP");
        ExpectRelative(std::sqrt(73.0) * wald.values(22 + e) / std::sqrt(V(22 + e, 22 + e)),
                       tValues[static_cast<std::size_t>(e)].get<double>(), 1e-6, "t of L");
    }

    EXPECT_EQ(control("Label0").Caption, " Full information maximum likelihood (FIML) results:");
    EXPECT_EQ(control("Text6").Caption, "1");
    EXPECT_FALSE(control("Command5").Enabled);
    EXPECT_TRUE(control("Command1").Enabled);
    EXPECT_EQ(ReadFile(File("ROUTE.TMP")), "\"NSVARML\"\r\n");
}

TEST_F(E1Estimation, WithoutZerosTheButtonsLeadFromOlsStraightToFiml) {
    module().Click("VARSUR", "Command3");
    EXPECT_EQ(control("Label0").Caption, " OLS estimation results");
    EXPECT_FALSE(control("Command3").Enabled);
    EXPECT_FALSE(control("Command4").Enabled);
    EXPECT_TRUE(control("Command5").Enabled);
    EXPECT_FALSE(control("Command1").Enabled);
    EXPECT_EQ(control("Label2").Caption,
              "In order to compute confidence bands around the innovation responses, you need to "
              "compute the "
              "variance matrix of the nonzero elements of the matrix L by conducting full "
              "information maximum "
              "likelihood (FIML). Click the 'FIML estimation' button now.");
    // A disabled button does nothing: OLS runs once per specification.
    const std::string once = Results();
    module().Click("VARSUR", "Command3");
    EXPECT_EQ(Results(), once);
}

// Each step sends the focus to the next one and the guidance follows; once estimates are on the
// screen "Respecify VAR" asks first: "No" keeps them, "Yes" goes back to the start.
TEST_F(E1Estimation, TheFocusLeadsOnAndRespecifyAsksBeforeEstimatesGo) {
    const Screen& screen = *module().LoadedScreen("VARSUR");
    EXPECT_EQ(screen.Focus(), "Command3");
    module().Click("VARSUR", "Command3");
    EXPECT_EQ(screen.Focus(), "Command5");
    test.dialogs().QueueAnswer("No");
    module().Click("VARSUR", "Command2");
    EXPECT_EQ(module().CurrentScreen, "VARSUR");
    module().Click("VARSUR", "Command5");
    EXPECT_EQ(screen.Focus(), "Command1");
    EXPECT_EQ(control("Label2").Caption.find("Click the 'FIML estimation'"), std::string::npos);
    EXPECT_NE(control("Label2").Caption.find("Click 'Continue'"), std::string::npos);
    test.dialogs().QueueAnswer("Yes");
    module().Click("VARSUR", "Command2");
    EXPECT_EQ(module().CurrentScreen, "SelVar1");
    EXPECT_EQ(test.dialogs().Shown().size(), 2u);
    EXPECT_FALSE(std::filesystem::exists(File("OUTPUT.TXT")));
}

// The log is opened when the estimation is accepted: the session header, the description that
// the screens before collected, then the estimation. Nothing was logged before.
TEST_F(E1Estimation, ContinueLogsTheResultsAndLeavesForTheJointTests) {
    module().Click("VARSUR", "Command3");
    module().Click("VARSUR", "Command5");
    const std::string results = Results();
    const std::string model = module().ModelText;
    const std::string description = module().ResultText;
    EXPECT_TRUE(description.starts_with("Selected variables:\r\n")) << description;
    EXPECT_FALSE(std::filesystem::exists(File("OUTPUT.TXT")));
    module().Click("VARSUR", "Command1");
    EXPECT_EQ(ReadFile(File("OUTPUT.TXT")),
              "Lorvane International\r\nSession date: Sunday November 22, 2026\r\n"
              "Session time: 19:36:05\r\n----------------------------------------------\r\n" +
                  description + "\r\nFIML estimation of a nonstructural VAR model:\r\n" + model +
                  "\r\n" + results + "\r\n");
    EXPECT_TRUE(module().ResultText.empty());
    EXPECT_NE(model.find("Zeros in matrices A(1), A(2): (1 = nonzero)"), std::string::npos);
    EXPECT_EQ(ReadFile(File("ROUTE.TMP")), "\"NSVARML\"\r\n");
    EXPECT_EQ(module().CurrentScreen, "VWaldT2");
}
