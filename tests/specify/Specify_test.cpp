#include <gtest/gtest.h>

#include <cmath>

#include "frame/NumberText.h"
#include "specify/CHEBPOL.h"
#include "specify/Deterministic.h"
#include "specify/InformationCriteria.h"
#include "support/E1Road.h"
#include "support/Reference.h"

using namespace lorvane;
using lorvane::test::Ctl;
using lorvane::test::E1Reference;
using lorvane::test::ReadFile;
using lorvane::test::StartWith;
using lorvane::test::TestModule;
using lorvane::test::WalkToVARDetermin;

TEST(CHEBPOL, RegularPolynomialsAreOrthonormal) {
    const int n = 73;
    for (int k = 1; k <= 6; ++k) {
        for (int l = k; l <= 6; ++l) {
            double product = 0;
            for (int t = 1; t <= n; ++t) {
                product += CHEBPOL::RegularChebishev(t, k, n) * CHEBPOL::RegularChebishev(t, l, n);
            }
            EXPECT_NEAR(product / n, k == l ? 1.0 : 0.0, 1e-12) << k << " " << l;
        }
    }
    EXPECT_EQ(CHEBPOL::RegularChebishev(5, 0, n), 1.0);
}

TEST(CHEBPOL, DetrendedPolynomialsAreStandardizedAndOrthogonalToTheTrend) {
    CHEBPOL chebishev;
    for (const int n : {20, 73}) {
        const int q = 8;
        for (int k = 2; k <= q; ++k) {
            double sum = 0;
            double squares = 0;
            double withTrend = 0;
            for (int t = 1; t <= n; ++t) {
                const double value = chebishev.DetrendedChebishev(t, k, n, q);
                sum += value;
                squares += value * value;
                withTrend += value * chebishev.DetrendedChebishev(t, 1, n, q);
            }
            EXPECT_NEAR(sum / n, 0.0, 1e-12) << n << " " << k;
            EXPECT_NEAR(withTrend / n, 0.0, 1e-12) << n << " " << k;
            // pi is taken to fifteen digits, which leaves the variance off by a few 1e-11.
            EXPECT_NEAR(squares / n, 1.0, 1e-10) << n << " " << k;
        }
    }
    // Odd orders are the regular cosines one order down; 0 and 1 are the constant and the trend.
    EXPECT_EQ(chebishev.DetrendedChebishev(7, 3, 30, 4), CHEBPOL::RegularChebishev(7, 2, 30));
    EXPECT_EQ(chebishev.DetrendedChebishev(7, 0, 30, 4), 1.0);
    EXPECT_NEAR(chebishev.DetrendedChebishev(1, 1, 3, 4), -std::sqrt(1.5), 1e-15);
}

namespace {

std::vector<double> Column(const Module& module, int j) {
    std::vector<double> values;
    for (int t = 1; t <= module.store().ObsCount; ++t) {
        values.push_back(module.store().DetermValue(t, j));
    }
    return values;
}

} // namespace

TEST(Deterministic, NamesAndColumnsOnQuarterlyData) {
    TestModule test;
    StartWith(test,
              "date,a,b\n1990Q3,1,2\n1990Q4,2,1\n1991Q1,3,5\n1991Q2,4,3\n1991Q3,5,1\n1991Q4,1,7\n");
    Module& module = test.module();
    module.store().ReadHeader(module.DataFile("INPUT1.RAN"));
    module.SampleFirst = 1;
    module.SampleLast = 6;
    module.Intercept = 1;
    module.Trend = 1;
    module.Seasonal = 1;
    BuildDeterministic(module, 1);
    EXPECT_EQ(DeterministicNames(module),
              (std::vector<std::string>{"1", "t (1990.3=1)", "Seasonal dummy 1", "Seasonal dummy 2",
                                        "Seasonal dummy 3"}));
    EXPECT_EQ(module.store().DetermCount(), 5);
    EXPECT_EQ(Column(module, 1), (std::vector<double>{1, 1, 1, 1, 1, 1}));
    EXPECT_EQ(Column(module, 2), (std::vector<double>{1, 2, 3, 4, 5, 6}));
    // The first observation is the third quarter.
    EXPECT_EQ(Column(module, 3), (std::vector<double>{0, 0, 1, 0, 0, 0}));
    EXPECT_EQ(Column(module, 5), (std::vector<double>{1, 0, 0, 0, 1, 0}));

    module.Intercept = 0;
    module.Trend = 0;
    EXPECT_EQ(DeterministicNames(module),
              (std::vector<std::string>{"Seasonal dummy 1", "Seasonal dummy 2", "Seasonal dummy 3",
                                        "Seasonal dummy 4"}));
    module.Seasonal = 0;
    BuildDeterministic(module, 1);
    EXPECT_EQ(module.store().DetermCount(), 0);
    EXPECT_NE(
        VarModelText(module).find("where d(t) is a vector of deterministic variables:\r\nd(t)="),
        std::string::npos);
    EXPECT_EQ(VarModelText(module).substr(VarModelText(module).size() - 5), "d(t)=");
}

TEST(Deterministic, AnnualTrendAndChebishevColumnsOverTheEffectiveSample) {
    TestModule test;
    StartWith(test,
              "year,a,b\n1961,1,2\n1962,2,1\n1963,3,5\n1964,4,3\n1965,5,1\n1966,1,7\n1967,2,2\n");
    Module& module = test.module();
    module.store().ReadHeader(module.DataFile("INPUT1.RAN"));
    module.SampleFirst = 2;
    module.SampleLast = 7;
    module.Intercept = 1;
    module.Trend = 1;
    module.SetChebishevOn(1);
    module.q = 3;
    BuildDeterministic(module, 2);
    EXPECT_EQ(
        DeterministicNames(module),
        (std::vector<std::string>{"1", "t (1961=1)", "Detr.Cheb.Pol(2)", "Detr.Cheb.Pol(3)"}));
    const double missing = module.store().MissingCode;
    const std::vector<double> order3 = Column(module, 4);
    // Effective sample t = 4..7, four positions.
    EXPECT_EQ(order3[0], missing);
    EXPECT_EQ(order3[2], missing);
    EXPECT_EQ(order3[3], CHEBPOL::RegularChebishev(1, 2, 4));
    EXPECT_EQ(order3[6], CHEBPOL::RegularChebishev(4, 2, 4));

    module.Trend = 0;
    module.q = 2;
    EXPECT_EQ(DeterministicNames(module),
              (std::vector<std::string>{"1", "Cheb.Pol(1)", "Cheb.Pol(2)"}));
    module.q = 0;
    EXPECT_EQ(DeterministicNames(module), (std::vector<std::string>{"1"}));
}

TEST(InformationCriteria, AgreeWithTheReferenceOnTheExampleData) {
    TestModule test;
    WalkToVARDetermin(test);
    ASSERT_EQ(test.module().CurrentScreen, "VARDetermin");
    for (const auto& expected : E1Reference()["var2_intercept"]["criteria_p1_to_4"]) {
        InformationCriteria criteria;
        const int q = expected["p"];
        ASSERT_TRUE(ComputeCriteria(test.module(), q, criteria));
        EXPECT_NEAR(criteria.Akaike, expected["akaike"].get<double>(), 1e-10) << q;
        EXPECT_NEAR(criteria.HannanQuinn, expected["hannan_quinn"].get<double>(), 1e-10) << q;
        EXPECT_NEAR(criteria.Schwarz, expected["schwarz"].get<double>(), 1e-10) << q;
        EXPECT_EQ(FormatNumber(criteria.Akaike, "0.00000E+00"),
                  FormatNumber(expected["akaike"].get<double>(), "0.00000E+00"));
    }
}

TEST(VAR2, CriteriaTableAndChosenOrders) {
    TestModule test;
    WalkToVARDetermin(test);
    Module& module = test.module();
    EXPECT_EQ(
        Ctl(module, "VARDetermin", "Text1").Caption,
        "Vector time series: z(t), with components:\r\nz(t, 1) = dlinvest\r\nz(t, 2) = dlincome\r\n"
        "z(t, 3) = dlcons\r\n\r\nVAR(p) model:\r\nz(t) = A(1)z(t-1) + ... +A(p)z(t-p) + B.d(t) + "
        "u(t),\r\n"
        "where d(t) is a vector of deterministic variables:\r\nd(t)=1");
    module.Click("VARDetermin", "Command5");
    ASSERT_EQ(module.CurrentScreen, "VAR2");
    for (int i = 0; i < 3; ++i) {
        module.Click("VAR2", "Command2");
    }
    EXPECT_EQ(Ctl(module, "VAR2", "Check1").Caption,
              "Compute the Akaike, Hannan-Quinn, and Schwarz information criteria for p = 1,..,4");
    Ctl(module, "VAR2", "Check1").Value = 1;
    module.Click("VAR2", "Command5");
    EXPECT_EQ(Ctl(module, "VAR2", "Text1").Caption,
              "Chosen VAR(p) order: p = 4\r\n"
              "Information criteria:\r\n"
              "  p        Akaike  Hannan-Quinn       Schwarz\r\n"
              "  1  -2.44124E+01  -2.42633E+01  -2.40387E+01\r\n"
              "  2  -2.45494E+01  -2.42869E+01  -2.38905E+01\r\n"
              "  3  -2.43452E+01  -2.39676E+01  -2.33966E+01\r\n"
              "  4  -2.42730E+01  -2.37787E+01  -2.30301E+01\r\n"
              "p =             2             2             1\r\n\r\n");
    EXPECT_EQ(Ctl(module, "VAR2", "Check1").Value, 0);
    module.Click("VAR2", "Command1");
    module.Click("VAR2", "Command1");
    EXPECT_FALSE(Ctl(module, "VAR2", "Command4").Enabled);
    module.Click("VAR2", "Command5");
    ASSERT_EQ(module.CurrentScreen, "VAR3");
    EXPECT_EQ(module.p, 2);
    EXPECT_NE(module.ResultText.find("p =             2             2             1\r\n\r\n"
                                     "Chosen VAR(p) order: p = 2\r\n\r\n"),
              std::string::npos);
}

// The "p =" line names orders among the rows above it, also when p went down since the last
// table.
TEST(VAR2, TheChosenOrdersAreAmongThePrintedRows) {
    TestModule test;
    WalkToVARDetermin(test);
    Module& module = test.module();
    module.Click("VARDetermin", "Command5");
    for (int i = 0; i < 3; ++i) {
        module.Click("VAR2", "Command2");
    }
    Ctl(module, "VAR2", "Check1").Value = 1;
    module.Click("VAR2", "Command5");
    for (int i = 0; i < 3; ++i) {
        module.Click("VAR2", "Command1");
    }
    Control& text = Ctl(module, "VAR2", "Text1");
    text.Caption.clear();
    Ctl(module, "VAR2", "Check1").Value = 1;
    module.Click("VAR2", "Command5");
    EXPECT_EQ(text.Caption, "Chosen VAR(p) order: p = 1\r\n"
                            "Information criteria:\r\n"
                            "  p        Akaike  Hannan-Quinn       Schwarz\r\n"
                            "  1  -2.44124E+01  -2.42633E+01  -2.40387E+01\r\n"
                            "p =             1             1             1\r\n\r\n");
}

// Help! opens the help page of the start folder; when the page cannot be opened the user is
// told why.
TEST(VAR2, HelpOpensTheHelpPage) {
    TestModule test;
    WalkToVARDetermin(test);
    Module& module = test.module();
    module.Click("VARDetermin", "Command5");
    ASSERT_TRUE(Ctl(module, "VAR2", "Command6").Enabled);
    module.Click("VAR2", "Command6");
    const std::string page = module.StartFile("INFCRIT.PDF").string();
    EXPECT_EQ(test.processes().Requests().back(), "[open] " + page);
}

// Oops, or a second visit, starts the choice over: the model text holds the present choice.
TEST(ChebishevPol, EachChoiceReplacesTheEarlierOne) {
    TestModule test;
    WalkToVARDetermin(test);
    Module& module = test.module();
    auto augmented = [&module] {
        const std::string& text = Ctl(module, "ChebishevPol", "Text1").Caption;
        std::size_t count = 0;
        for (std::size_t at = text.find("d(t) is augmented"); at != std::string::npos;
             at = text.find("d(t) is augmented", at + 1)) {
            ++count;
        }
        return count;
    };
    module.Click("VARDetermin", "Command6");
    module.Click("ChebishevPol", "qup");
    module.Click("ChebishevPol", "qup");
    module.Click("ChebishevPol", "Klaar");
    EXPECT_EQ(augmented(), 1u);
    EXPECT_NE(module.ModelText.find("with 2 Chebishev time polynomials"), std::string::npos);
    EXPECT_NE(module.ModelText.find("d(t)=1, Cheb.Pol(1), Cheb.Pol(2)"), std::string::npos)
        << module.ModelText;

    module.Click("ChebishevPol", "Command1");
    EXPECT_EQ(augmented(), 0u);
    EXPECT_EQ(module.ChebishevOn(), 0);
    module.Click("ChebishevPol", "qup");
    module.Click("ChebishevPol", "Klaar");
    EXPECT_EQ(augmented(), 1u);
    EXPECT_EQ(module.ModelText.find("with 2 Chebishev"), std::string::npos);
    EXPECT_NE(module.ModelText.find("with one Chebishev time polynomial,"), std::string::npos);

    // Back on VARDetermin and in again: the earlier choice is gone from the text.
    module.Click("ChebishevPol", "Command2");
    module.Click("VARDetermin", "Command6");
    EXPECT_EQ(augmented(), 0u);
    EXPECT_EQ(module.ModelText.find("Cheb"), std::string::npos);
}

TEST(VAR2, WarnsWhenTheDataMayNotCarryTheModel) {
    TestModule test;
    StartWith(test, "a,b\n1,2\n2,1\n3,5\n4,3\n2,6\n5,1\n");
    Module& module = test.module();
    module.DoubleClick("SelVar1", "List2", 0);
    module.DoubleClick("SelVar1", "List2", 1);
    module.Click("SelVar1", "Command1");
    module.Click("SELOBS", "SubsetNo");
    module.Click("SELOBS", "SubsetNo");
    module.Click("SELOBS", "Continue");
    module.Click("SelvarYInfo", "Command1");
    module.Click("VARDetermin", "Command5");
    test.dialogs().QueueAnswer("OK");
    module.Click("VAR2", "Command2");
    // R = 2 x 2 + 1 = 5 regressors against 2/3 of N = 6 observations.
    EXPECT_EQ(test.dialogs().Shown().back(),
              "[box] WARNING! | There may not be enough data available for this "
              "model. If you choose this p or larger, Lorvane may crash! -> OK");
    EXPECT_FALSE(module.Ended());
}

TEST(VAR3, ThePatternFileFollowsWhatIsShown) {
    TestModule test;
    WalkToVARDetermin(test);
    Module& module = test.module();
    module.Click("VARDetermin", "Command5");
    module.Click("VAR2", "Command2");
    module.Click("VAR2", "Command5");
    ASSERT_EQ(module.CurrentScreen, "VAR3");
    const auto file = module.DataFile("VARZERO.TMP");
    EXPECT_EQ(ReadFile(file), "1\r\n1\r\n1\r\n1\r\n1\r\n1\r\n1\r\n1\r\n1\r\n");
    EXPECT_EQ(Ctl(module, "VAR3", "Label3").Caption, "Zeros in matrices A(1), A(2):");
    module.Click("VAR3", "RowUp");
    module.Click("VAR3", "Command3");
    module.Click("VAR3", "RowUp");
    module.Click("VAR3", "RowUp");
    module.Click("VAR3", "Command3");
    EXPECT_EQ(Ctl(module, "VAR3", "Index1").Caption, "3");
    EXPECT_EQ(Ctl(module, "VAR3", "aij").Caption, "0");
    EXPECT_EQ(Ctl(module, "VAR3", "List2").Items,
              (std::vector<std::string>{"1 1 1 ", "0 1 1 ", "0 1 1 "}));
    EXPECT_EQ(ReadFile(file), "1\r\n1\r\n1\r\n0\r\n1\r\n1\r\n0\r\n1\r\n1\r\n");
    module.Click("VAR3", "Command3");
    EXPECT_EQ(ReadFile(file), "1\r\n1\r\n1\r\n0\r\n1\r\n1\r\n1\r\n1\r\n1\r\n");
    module.Click("VAR3", "Command1");
    EXPECT_NE(module.ModelText.find(
                  "Zeros in matrices A(1), A(2): (1 = nonzero)\r\n1 1 1 \r\n0 1 1 \r\n1 1 1 \r\n"),
              std::string::npos);
}
