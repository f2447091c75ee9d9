#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "estimate/LFiles.h"
#include "frame/NumberText.h"
#include "frame/TextFile.h"
#include "numeric/MatrixProducts.h"
#include "numeric/Matsubs.h"
#include "structural/LikelihoodSearch.h"
#include "structural/SimplexRecords.h"
#include "structural/StartValues.h"
#include "structural/StructuralRoad.h"
#include "structural/StructuralVariance.h"
#include "support/Reference.h"

namespace lorvane {
namespace {

using test::Ctl;
using test::ExpectRelative;
using test::Lines;
using test::NumbersOf;
using test::PatternOf;
using test::ReadFile;
using test::TestModule;
using test::WriteFile;

std::string Report(Module& module) {
    return Ctl(module, "VBernanke2", "Text1").Caption;
}

bool Has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

// The number between the brackets of the first line of text that contains `after`, searching
// from the line that contains `from`.
double BracketValue(const std::string& text, const std::string& from, int lineOffset) {
    const std::vector<std::string> lines = Lines(text);
    for (std::size_t q = 0; q < lines.size(); ++q) {
        if (Has(lines[q], from)) {
            const std::string& line = lines[q + static_cast<std::size_t>(lineOffset)];
            return Val(line.substr(line.find_first_of("([") + 1));
        }
    }
    ADD_FAILURE() << "no line with " << from;
    return 0;
}

// The failure state: the report and "Respecify model", no way on.
void ExpectRespecification(Module& module, const std::string& title) {
    EXPECT_EQ(module.Caption, title);
    EXPECT_TRUE(Ctl(module, "VBernanke2", "Command2").Visible);
    EXPECT_TRUE(Ctl(module, "VBernanke2", "Command2").Enabled);
    EXPECT_FALSE(Ctl(module, "VBernanke2", "Command1").Visible);
    EXPECT_TRUE(Ctl(module, "VBernanke2", "Text1").Visible);
    EXPECT_FALSE(Ctl(module, "VBernanke2", "Text2").Visible);
}

// A model whose moment equations have no analytic solution: the words, and method 2 alone.
void ExpectMaximumLikelihoodAlone(Module& module) {
    EXPECT_TRUE(
        Has(Report(module),
            "\r\nThe moment equations have no analytic solution, although the model is \r\n"
            "identified by the count of its moment conditions. It can be estimated \r\n"
            "by maximum likelihood (method 2) alone, starting from numeric start values.\r\n"));
    EXPECT_FALSE(Has(Report(module), "System cannot be solved analytically"));
    EXPECT_EQ(module.Caption, " Structural model");
    EXPECT_FALSE(Ctl(module, "VBernanke2", "Command1").Visible);
    EXPECT_TRUE(Ctl(module, "VBernanke2", "Command2").Visible);
    EXPECT_EQ(Ctl(module, "VBernanke2", "Command4").Caption, "Method 2");
    EXPECT_TRUE(Ctl(module, "VBernanke2", "Command4").Visible);
    EXPECT_TRUE(Ctl(module, "VBernanke2", "Command4").Enabled);
    EXPECT_TRUE(Ctl(module, "VBernanke2", "Text1").Visible);
    EXPECT_FALSE(Ctl(module, "VBernanke2", "Text2").Visible);
}

TEST(VBernanke1, EquationsMakeThePatternInVariableOrder) {
    TestModule test;
    test::WalkE1ToVARSTR1(test);
    Module& module = test.module();
    module.Click("VARSTR1", "Command2");
    ASSERT_EQ(module.CurrentScreen, "VBernanke1");
    EXPECT_EQ(Ctl(module, "VBernanke1", "Label4").Caption, "OLS residuals of dlinvest");
    EXPECT_EQ(Ctl(module, "VBernanke1", "List2").Items,
              (std::vector<std::string>{"OLS residuals of dlincome", "OLS residuals of dlcons"}));
    module.Click("VBernanke1", "Command1");

    // The second equation: a row marked twice keeps one mark.
    EXPECT_EQ(Ctl(module, "VBernanke1", "Label4").Caption, "OLS residuals of dlincome");
    module.DoubleClick("VBernanke1", "List2", 0);
    module.DoubleClick("VBernanke1", "List2", 0);
    EXPECT_EQ(Ctl(module, "VBernanke1", "List2").Items[0], "* OLS residuals of dlinvest");
    module.Click("VBernanke1", "Command1");

    // The third: its second row is the second variable.
    module.DoubleClick("VBernanke1", "List2", 1);
    module.Click("VBernanke1", "Command1");
    EXPECT_EQ(NumbersOf(module.DataFile("SVARA.TMP"), 0),
              (std::vector<double>{1, 0, 0, -1, 1, 0, 0, -1, 1}));
    EXPECT_EQ(module.CurrentScreen, "VBernanke2");
}

TEST(VBernanke1, RedoGoesBackToTheForkWithTheSavedFiles) {
    TestModule test;
    test::WalkE1ToVARSTR1(test);
    Module& module = test.module();
    module.Click("VARSTR1", "Command2");
    module.DoubleClick("VBernanke1", "List2", 1);
    WriteFile(module.DataFile("VARL.TMP"), "damaged\r\n");
    module.Click("VBernanke1", "Command3");
    EXPECT_EQ(module.CurrentScreen, "VARSTR1");
    EXPECT_EQ(ReadFile(module.DataFile("VARL.TMP")), ReadFile(module.DataFile("BVARL.TMP")));
    module.Click("VARSTR1", "Command2");
    EXPECT_EQ(Ctl(module, "VBernanke1", "List2").Items[1], "OLS residuals of dlcons");
}

// The residuals' names of another model: the equations would name variables the model lacks.
TEST(VBernanke1, ResidualsOfAnotherModelAreTheirFilesReadError) {
    TestModule test;
    test::WalkE1ToVARSTR1(test);
    Module& module = test.module();
    WriteFile(module.DataFile("U.TMP"), "2\r\n\"dlinvest\"\r\n\"dlincome\"\r\n");
    module.Click("VARSTR1", "Command2");
    ASSERT_TRUE(module.Failure());
    EXPECT_EQ(module.Failure()->Number(), InputPastEndOfFile);
}

class E1Structural : public ::testing::Test {
protected:
    Module& module() { return test.module(); }
    const nlohmann::json& Reference(const char* entry) { return test::E1Reference()[entry]; }

    TestModule test;
};

TEST_F(E1Structural, RecursiveModelGivesTheReferenceAndTheFactorL) {
    test::WalkE1ToVARSTR1(test);
    const Matrix L = ReadLFile(module(), "BVARL.TMP");
    test::SpecifyStructural(test, test::Recursive);
    const std::string report = Report(module());
    EXPECT_TRUE(Has(report, "Structural model seems just identified"));
    EXPECT_FALSE(Has(report, "(*)"));
    EXPECT_TRUE(Has(report, "b(6)b(6) = 19160.474609375\r\n"));

    const nlohmann::json& reference = Reference("structural_lower_triangular");
    // WALDTSV.TMP: T, the count, three rows, the coefficients a(2,1), a(3,1), a(3,2).
    TextInput tests(module().DataFile("WALDTSV.TMP"));
    EXPECT_EQ(tests.ReadNumber(), 73);
    ASSERT_EQ(tests.ReadWhole(), 3);
    std::vector<std::string> rows;
    for (int q = 0; q < 3; ++q) {
        rows.push_back(tests.ReadField());
    }
    EXPECT_EQ(rows[0], "x(2,1)=dlincome                x              +0.0336        (0.9180)");
    const char* places[] = {"(2,1)", "(3,1)", "(3,2)"};
    for (int q = 0; q < 3; ++q) {
        ExpectRelative(tests.ReadNumber(), reference["a"][places[q]].get<double>(), 1e-6,
                       places[q]);
        ExpectRelative(Val(rows[static_cast<std::size_t>(q)].substr(rows[q].find('(', 8) + 1)),
                       reference["method1_t_a"][places[q]].get<double>(), 1e-3, places[q]);
    }
    // B^-1 is L; its diagonal holds the innovations' coefficients.
    const Matrix F = ReadLFile(module());
    for (int i = 1; i <= 3; ++i) {
        for (int j = 1; j <= 3; ++j) {
            EXPECT_NEAR(F(i, j), L(i, j), 1e-6 * std::abs(L(1, 1)));
        }
        ExpectRelative(F(i, i), reference["c"][static_cast<std::size_t>(i - 1)].get<double>(), 1e-6,
                       "c");
    }
    EXPECT_EQ(NumbersOf(module().DataFile("VARLPAT.TMP"), 0),
              (std::vector<double>{1, 0, 0, 1, 1, 0, 1, 1, 1}));
    const char* innovations[] = {"dlinvest =", "dlincome =", "dlcons ="};
    const int offsets[] = {2, 5, 8};
    for (int i = 0; i < 3; ++i) {
        ExpectRelative(BracketValue(report, innovations[i], offsets[i]),
                       reference["method1_t_c"][static_cast<std::size_t>(i)].get<double>(), 1e-3,
                       innovations[i]);
    }
    EXPECT_TRUE(Has(report, "Since your model is just-identified, methods 1 and 2 are "
                            "asymptotically\r\nequivalent. Therefore method 1 is recommended."));
    EXPECT_EQ(Ctl(module(), "VBernanke2", "Command1").Caption, "Method 1");
    EXPECT_EQ(Ctl(module(), "VBernanke2", "Command4").Caption, "Method 2");
    EXPECT_TRUE(Ctl(module(), "VBernanke2", "Command4").Visible);
    EXPECT_EQ(module().Caption, " Structural model");

    // WALDT.TMP: the coefficients, then the six elements of B^-1 named as such.
    const std::string tests2 = ReadFile(module().DataFile("WALDT.TMP"));
    EXPECT_TRUE(Has(tests2, "\"B^-1(3,3)"));
    EXPECT_FALSE(Has(tests2, "\"L(1,1)"));

    // Method 1: the log says so, the scratch copy says "Method 2".
    module().Click("VBernanke2", "Command1");
    const std::string log = ReadFile(module().DataFile("OUTPUT.TXT"));
    EXPECT_TRUE(Has(log, "equivalent. Therefore method 1 is recommended.\r\n\r\n\r\nMethod 1 has "
                         "been chosen.\r\n"));
    EXPECT_TRUE(
        ReadFile(module().DataFile("OUTPUT.TMP")).ends_with("\r\nMethod 2 has been chosen.\r\n"));
    EXPECT_EQ(module().CurrentScreen, "VWaldT3");
}

TEST_F(E1Structural, OveridentifiedModelTestsItsMomentZero) {
    test::WalkE1ToVARSTR1(test);
    test::SpecifyStructural(test, test::Overidentified);
    const std::string report = Report(module());
    const nlohmann::json& reference = Reference("structural_overidentified");
    EXPECT_TRUE(Has(report, "\r\n0 = -8138.83935546875 (*)\r\n"));
    EXPECT_TRUE(Has(report, "\r\n(*) This moment restriction cannot be used for identification, "
                            "\r\n    but will be tested.\r\n"));
    EXPECT_TRUE(Has(report, "Wald test of the hypothesis that the moment restriction (*) hold:"
                            "\r\n\r\nChi-square(1) test statistic: 14.125\r\n\r\n"));
    EXPECT_TRUE(Has(report, "Structural model is overidentified.\r\n"));
    EXPECT_TRUE(Has(report, "Since your model is over-identified, method 2 is recommended."));

    const std::vector<double> b = ReadStartValues(module(), "BERNSV.TMP", 5).values;
    ASSERT_EQ(b.size(), 5u);
    for (std::size_t p = 0; p < 5; ++p) {
        ExpectRelative(b[p], reference["moment_solution_b"][p].get<double>(), 1e-6, "b");
    }
    const std::vector<double> tests = NumbersOf(module().DataFile("WALDTSV.TMP"), 3);
    ExpectRelative(tests[0], reference["a"]["(2,1)"].get<double>(), 1e-6, "a(2,1)");
    ExpectRelative(tests[1], reference["a"]["(3,1)"].get<double>(), 1e-6, "a(3,1)");
    const std::vector<std::string> lines = Lines(report);
    std::vector<double> t;
    for (std::size_t q = 0; q + 1 < lines.size(); ++q) {
        if (lines[q].ends_with(" x dlinvest")) {
            t.push_back(Val(lines[q + 1].substr(lines[q + 1].find('(') + 1)));
        }
    }
    ASSERT_EQ(t.size(), 2u);
    ExpectRelative(t[0], reference["method1_t_a"]["(2,1)"].get<double>(), 1e-3, "t of a(2,1)");
    ExpectRelative(t[1], reference["method1_t_a"]["(3,1)"].get<double>(), 1e-3, "t of a(3,1)");
}

TEST_F(E1Structural, DiagonalModelHasThreeTestedZerosAndGoesStraightToTheResponses) {
    test::WalkE1ToVARSTR1(test);
    test::SpecifyStructural(test, {{}, {}, {}});
    const std::string report = Report(module());
    EXPECT_TRUE(Has(report, "(*) These moment restrictions cannot be used for identification, "));
    EXPECT_TRUE(
        Has(report, "Wald test of the hypothesis that the moment restrictions (*) hold:\r\n"));
    EXPECT_TRUE(Has(report, "Chi-square(3) test statistic: "));
    EXPECT_TRUE(Has(report, "Structural model is overidentified.\r\n"));
    EXPECT_EQ(NumbersOf(module().DataFile("WALDTSV.TMP"), 0), (std::vector<double>{73, 0}));
    module().Click("VBernanke2", "Command1");
    EXPECT_EQ(module().CurrentScreen, "VARIR2");
}

TEST_F(E1Structural, PatternsThatCannotBeIdentifiedAskForRespecification) {
    test::WalkE1ToVARSTR1(test);
    // All variables in every equation: the 0-1 pattern is singular.
    test::SpecifyStructural(test, {{0, 1}, {0, 1}, {0, 1}});
    EXPECT_TRUE(Has(Report(module()),
                    "\r\nHowever, this specification does not link the non-structural \r\n"
                    "VAR errors uniquely to the innovations of the structural VAR, \r\n"
                    "and is therefore invalid. Respecify your structural model!\r\n"));
    ExpectRespecification(module(), " Respecify the structural model");

    module().Click("VBernanke2", "Command2");
    EXPECT_EQ(module().CurrentScreen, "VARSTR1");
    EXPECT_TRUE(ReadFile(module().DataFile("OUTPUT.TXT"))
                    .ends_with("\r\n\r\nModel will be respecified or abandoned!\r\n"));
    EXPECT_EQ(ReadFile(module().DataFile("VARL.TMP")), ReadFile(module().DataFile("BVARL.TMP")));

    // Seven parameters of an invertible 0-1 pattern for six moments.
    test::SpecifyStructural(test, {{0}, {1}, {0, 1}});
    EXPECT_TRUE(Has(Report(module()),
                    "Structural model is underidentified. There are more parameters than \r\n"
                    "moment restrictions. Try again.\r\n"));
    ExpectRespecification(module(), " Respecify the structural model");
}

// The data in other units (L times 1000): the report's lines of the moment system are the very
// rows the solver is given, number for number.
TEST_F(E1Structural, PrintedSystemIsTheSolvedSystem) {
    test::WalkE1ToVARSTR1(test);
    const Matrix L = ReadLFile(module(), "BVARL.TMP");
    std::string file = "3\r\n";
    for (int i = 1; i <= 3; ++i) {
        for (int j = 1; j <= 3; ++j) {
            file += NumberToText(1000 * L(i, j)) + "\r\n";
        }
    }
    WriteFile(module().DataFile("BVARL.TMP"), file);
    test::SpecifyStructural(test, test::Recursive);
    const std::vector<std::string> report = Lines(Report(module()));
    const std::vector<std::string> steps = Lines(Ctl(module(), "VBernanke2", "Text2").Caption);
    std::size_t printed = 0;
    while (printed < report.size() &&
           report[printed] !=
               "This is a system of quadratic equations in the non-zero elements of B:") {
        ++printed;
    }
    ASSERT_LT(printed + 7, report.size());
    ASSERT_GE(steps.size(), 7u);
    ASSERT_EQ(steps[0], "System of equations:");
    for (std::size_t r = 1; r <= 6; ++r) {
        EXPECT_EQ(report[printed + 1 + r], steps[r]);
    }
}

TEST_F(E1Structural, SystemWithoutASingleUnknownGoesToMaximumLikelihood) {
    // Four variables; the first stands alone, the others form a cycle.
    test::WalkE1ToVARSTR1(test, true, {2, 3, 4, 5});
    test::SpecifyStructural(test, {{}, {1}, {2}, {1}});
    EXPECT_TRUE(Has(Ctl(module(), "VBernanke2", "Text2").Caption,
                    "System could not be solved completely!\r\n"));
    ExpectMaximumLikelihoodAlone(module());
}

TEST_F(E1Structural, TwoVariablesInBothEquationsFailTheZeroOneTest) {
    test::WalkE1ToVARSTR1(test, true, {3, 4});
    test::SpecifyStructural(test, {{0}, {0}});
    EXPECT_TRUE(Has(Report(module()), "  b(1)  b(2)\r\n  b(3)  b(4)\r\n\r\nHowever, this "
                                      "specification does not link the non-structural \r\n"));
    ExpectRespecification(module(), " Respecify the structural model");
}

TEST_F(E1Structural, SquareWithoutPositiveRightHandSideGoesToMaximumLikelihood) {
    test::WalkE1ToVARSTR1(test, true, {3, 4});
    // An L whose inverse variance loses the square in single precision.
    WriteFile(module().DataFile("BVARL.TMP"), "2\r\n1\r\n0\r\n1\r\n.0001\r\n");
    test::SpecifyStructural(test, {{}, {0}});
    EXPECT_TRUE(Has(Ctl(module(), "VBernanke2", "Text2").Caption,
                    "\r\nHowever, the right-hand side is not positive!\r\n"));
    ExpectMaximumLikelihoodAlone(module());
}

// Method 2, one run of option 1 and the estimate: the record is the maximum that plain gradient
// searches find on their own.
void ExpectEstimatedAtTheMaximum(Module& module, const Pattern& Apat) {
    module.Click("VBernanke2", "Command4");
    ASSERT_EQ(module.CurrentScreen, "VBernanke3");
    EXPECT_TRUE(
        ReadFile(module.DataFile("OUTPUT.TXT")).ends_with("\r\n\r\nMethod 2 has been chosen.\r\n"));
    module.platform().random.seed(3);
    module.Click("VBernanke3", "Command2");
    const std::vector<SimplexRecord> records = ReadSimplexRecords(module, Apat.Ones());
    ASSERT_EQ(records.size(), 1u);
    const Matrix L = ReadLFile(module, "BVARL.TMP");
    const Matrix S = OuterProduct(L);
    std::vector<double> start;
    for (int i = 1; i <= Apat.Size(); ++i) {
        for (int j = 1; j <= Apat.Size(); ++j) {
            if (Apat(i, j) != 0) {
                start.push_back(i == j ? 1 / std::sqrt(S(i, i)) : 0.0);
            }
        }
    }
    std::vector<double> independent;
    const double maximum = test::IndependentMaximum(Apat, S, start, independent);
    double reached = 0;
    std::vector<double> gradient;
    ASSERT_TRUE(test::PlainLikelihood(Apat, S, records[0].b, reached, gradient));
    EXPECT_NEAR(reached, maximum, 1e-8 * std::abs(maximum));
    module.Click("VBernanke3", "Command4");
    EXPECT_EQ(Ctl(module, "VBernanke3", "Label0").Caption,
              " Structural VAR model: Estimation results");
}

// dlcons on dlinvest and dlincome, the others alone: six moments, five parameters, no zero
// moment to set aside, and one equation more than the solve by hand can use.
TEST_F(E1Structural, SurplusEquationWithoutAZeroMomentIsEstimatedByMaximumLikelihood) {
    test::WalkE1ToVARSTR1(test);
    test::SpecifyStructural(test, {{}, {}, {0, 1}});
    EXPECT_FALSE(Has(Report(module()), "(*)"));
    ExpectMaximumLikelihoodAlone(module());
    ExpectEstimatedAtTheMaximum(module(), test::PatternOf({{1, 0, 0}, {0, 1, 0}, {1, 1, 1}}));
}

// dlincome and dlcons on dlinvest alone, on variances where dlinvest is so closely tied to both
// that the square of b(1) left by the others is negative: no real moment solution.
TEST_F(E1Structural, NegativeSquareIsEstimatedByMaximumLikelihood) {
    test::WalkE1ToVARSTR1(test);
    // L = the Cholesky factor of the inverse of [[1, .8, .8], [.8, 1, .9], [.8, .9, 1]].
    const double inverse[3][3] = {{1, .8, .8}, {.8, 1, .9}, {.8, .9, 1}};
    Matrix moments(3, 3);
    for (int i = 1; i <= 3; ++i) {
        for (int j = 1; j <= 3; ++j) {
            moments(i, j) = inverse[i - 1][j - 1];
        }
    }
    Matrix S(3, 3);
    double determinant = 0;
    Int16 flag;
    InvertMatrix(moments, S, determinant, 3, flag);
    Matrix L(3, 3);
    for (int j = 1; j <= 3; ++j) {
        double diagonal = S(j, j);
        for (int m = 1; m < j; ++m) {
            diagonal -= L(j, m) * L(j, m);
        }
        L(j, j) = std::sqrt(diagonal);
        for (int i = j + 1; i <= 3; ++i) {
            double below = S(i, j);
            for (int m = 1; m < j; ++m) {
                below -= L(i, m) * L(j, m);
            }
            L(i, j) = below / L(j, j);
        }
    }
    std::string file = "3\r\n";
    for (int i = 1; i <= 3; ++i) {
        for (int j = 1; j <= 3; ++j) {
            file += NumberToText(L(i, j)) + "\r\n";
        }
    }
    WriteFile(module().DataFile("BVARL.TMP"), file);
    test::SpecifyStructural(test, test::Overidentified);
    EXPECT_TRUE(Has(Ctl(module(), "VBernanke2", "Text2").Caption,
                    "\r\nHowever, the right-hand side is not positive!\r\n"));
    ExpectMaximumLikelihoodAlone(module());
    ExpectEstimatedAtTheMaximum(module(), test::PatternOf({{1, 0, 0}, {1, 1, 0}, {1, 0, 1}}));
}

TEST_F(E1Structural, WithoutFimlTheFactorGoesOnWithoutVariances) {
    test::WalkE1ToVARSTR1(test, false);
    const std::string L = ReadFile(module().DataFile("BVARL.TMP"));
    test::SpecifyStructural(test, test::Overidentified);
    const std::string report = Report(module());
    EXPECT_TRUE(Has(report, "However, this test cannot be conducted without the FIML variance of "
                            "L.\r\n"));
    EXPECT_TRUE(Has(report, "x Innovation\r\n\r\nThe t-values cannot be computed without the "
                            "FIML variance of L.\r\n"));
    EXPECT_FALSE(Has(report, "(t-values in parenthesis)"));
    EXPECT_FALSE(Has(report, "There are two methods"));
    EXPECT_EQ(Ctl(module(), "VBernanke2", "Command1").Caption, "Continue");
    EXPECT_TRUE(Ctl(module(), "VBernanke2", "Command1").Enabled);
    EXPECT_FALSE(Ctl(module(), "VBernanke2", "Command4").Visible);
    EXPECT_NE(ReadFile(module().DataFile("VARL.TMP")), L);
    module().Click("VBernanke2", "Command1");
    EXPECT_EQ(module().CurrentScreen, "VARIR2");
    EXPECT_FALSE(Has(ReadFile(module().DataFile("OUTPUT.TXT")), "has been chosen"));
}

TEST_F(E1Structural, SingularScoresOfTheFactorStopTheMethodChoice) {
    test::WalkE1ToVARSTR1(test);
    module().Click("VARSTR1", "Command2");
    // Residuals of zero: the scores depend on the determinant alone.
    std::string residuals = "3\r\n\"a\"\r\n\"b\"\r\n\"c\"\r\n";
    for (int q = 0; q < 3 * 73; ++q) {
        residuals += "0\r\n";
    }
    WriteFile(module().DataFile("U.TMP"), residuals);
    test::SpecifyEquations(test, test::Recursive);
    EXPECT_TRUE(Has(Report(module()), "Variance matrix of the nonzero elements of B^-1 cannot be "
                                      "calculated, due to singularity.\r\n"));
    ExpectRespecification(module(), " Respecify model");
}

TEST_F(E1Structural, RecursiveResponsesEqualTheNonstructuralOnes) {
    test::WalkE1ToVARSTR1(test);
    test::SpecifyStructural(test, test::Recursive);
    module().Click("VBernanke2", "Command1");
    module().Click("VWaldT3", "Command2");
    ASSERT_EQ(module().CurrentScreen, "VARIR2");
    module().Click("VARIR2", "Command1");
    ASSERT_FALSE(module().Ended());
    const nlohmann::json& reference = Reference("var2_intercept");
    TextInput file(module().DataFile("VARIR2.TMP"));
    ASSERT_EQ(file.ReadWhole(), 10);
    ASSERT_EQ(file.ReadWhole(), 3);
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 3; ++j) {
            file.ReadField();
            file.ReadNumber();
            for (std::size_t h = 0; h <= 10; ++h) {
                const double psi = reference["responses"][h][i][j].get<double>();
                const double se = reference["response_se"][h][i][j].get<double>();
                EXPECT_NEAR(file.ReadNumber(), psi, 1e-3 * std::abs(psi) + 1e-12);
                EXPECT_NEAR(file.ReadNumber(), se, 1e-3 * se + 1e-12);
            }
        }
    }
}

TEST(StructuralVariance, TablesSolveAsTheTextsDoAtPerturbedL) {
    const std::vector<std::vector<std::vector<int>>> patterns = {
        {{1, 0, 0}, {-1, 1, 0}, {-1, -1, 1}},
        {{1, 0, 0}, {-1, 1, 0}, {-1, 0, 1}},
        {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
        {{1, -1, 0}, {0, 1, 0}, {-1, 0, 1}},
        {{1, 0, 0, 0}, {-1, 1, 0, 0}, {0, -1, 1, 0}, {-1, 0, -1, 1}}};
    unsigned long long state = 11;
    auto uniform = [&state] {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<double>(state >> 11) / 9007199254740992.0;
    };
    int solved = 0;
    for (const auto& rows : patterns) {
        const StructuralSystem system(PatternOf(rows));
        const int k = static_cast<int>(rows.size());
        for (int draw = 0; draw < 40; ++draw) {
            Matrix L(k, k);
            for (int i = 1; i <= k; ++i) {
                for (int j = 1; j <= i; ++j) {
                    L(i, j) = (i == j ? 0.5 : -0.5) + uniform();
                }
            }
            Vector textA;
            Vector textC;
            Vector tableA;
            Vector tableC;
            Int16 textOk;
            Int16 tableOk;
            system.SolveAtL(L, textA, textC, textOk);
            system.SolveAtLFast(L, tableA, tableC, tableOk);
            ASSERT_EQ(textOk, tableOk);
            EXPECT_EQ(textA, tableA);
            EXPECT_EQ(textC, tableC);
            solved += textOk;
        }
    }
    EXPECT_GT(solved, 100);
}

// A solve that fails while L(1, 1) is more than `reach` away from 1.
SolveAt FailingAway(double reach) {
    return [reach](const Matrix& L, Vector& CoefA, Vector& CoefC, Int16& ok, bool* singular) {
        ok = std::abs(L(1, 1) - 1) > reach ? 0 : 1;
        if (singular != nullptr) {
            *singular = false;
        }
        CoefA.Resize(1);
        CoefA(1) = 2 * L(1, 1) + L(2, 1);
        CoefC.Resize(2);
        CoefC(1) = L(2, 2);
        CoefC(2) = 3 * L(1, 1);
    };
}

TEST(StructuralVariance, FailingSolvesMakeTheStepSmallerFiveTimesAtMost) {
    Matrix L(2, 2);
    L(1, 1) = 1;
    L(2, 1) = 0.5;
    L(2, 2) = 2;
    Matrix W(3, 3);
    for (int c = 1; c <= 3; ++c) {
        W(c, c) = 1;
    }
    StructuralVariance result;
    std::vector<int> done;
    // Row 1 of L is in units a hundred times those the first step of 1E-05 was made for: steps
    // of 1E-03 down to 1E-08, and the solve works from the fifth reduction on.
    ASSERT_EQ(ComputeStructuralVariance(FailingAway(2e-8), L, W, 4, result,
                                        [&done](int percent) { done.push_back(percent); }),
              StructuralVarianceResult::Done);
    EXPECT_EQ(done, (std::vector<int>{33, 67, 100}));
    // dA = (2, 1, 0), dC1 = (0, 0, 1), dC2 = (3, 0, 0): VA = 5, VC = diag(1, 9).
    EXPECT_NEAR(result.VA(1, 1), 5, 1e-3);
    EXPECT_NEAR(result.VC(1, 1), 1, 1e-9);
    EXPECT_NEAR(result.VC(2, 2), 9, 1e-3);
    EXPECT_NEAR(result.tA(1), 2 * 2.5 / std::sqrt(5.0), 1e-3);
    // A sixth failure stops it.
    EXPECT_EQ(ComputeStructuralVariance(FailingAway(2e-9), L, W, 4, result, {}),
              StructuralVarianceResult::SolveFailed);
}

} // namespace
} // namespace lorvane
