#include <gtest/gtest.h>

#include <cmath>

#include "frame/NumberText.h"
#include "frame/TextFile.h"
#include "innovation/Decomposition.h"
#include "innovation/InnovationModel.h"
#include "innovation/ModelFiles.h"
#include "innovation/MovingAverage.h"
#include "innovation/ResponseErrors.h"
#include "innovation/ResponseOutput.h"
#include "innovation/ResponsePlot.h"
#include "innovation/WorkCounter.h"
#include "support/Errors.h"
#include "support/TestModule.h"

namespace lorvane {
namespace {

using test::ErrorNumberOf;
using test::FirstOrderModel;
using test::HandModel;
using test::MatrixOf;

class InnovationMath : public ::testing::Test {
protected:
    InnovationModel Read(const HandModel& hand) {
        test::WriteModelFiles(test.module(), hand);
        return ReadInnovationModel(test.module(), hand.n, hand.p, hand.T, hand.d);
    }
    static Responses Errors(InnovationModel& model, int H) {
        WorkCounter work{0, TotalWork(model.n, H, model.NA, model.NL), {}};
        return ComputeStandardErrors(model, H, work);
    }
    static void ExpectResponses(const Responses& psi, int h, const Matrix& expected) {
        for (int i = 1; i <= psi.Size(); ++i) {
            for (int j = 1; j <= psi.Size(); ++j) {
                EXPECT_NEAR(psi(i, j, h), expected(i, j), 1e-15)
                    << "h " << h << " i " << i << " j " << j;
            }
        }
    }

    test::TestModule test;
};

TEST_F(InnovationMath, ReadsTheLagAndLBlocksInTheirOrder) {
    HandModel hand = FirstOrderModel();
    hand.p = 2;
    hand.d = 2;
    hand.Z = MatrixOf({{1, 0}, {1, 1}});
    hand.A = {MatrixOf({{0.5, 0}, {0.1, 0.2}}), MatrixOf({{0.25, 0}, {0.3, 0.4}})};
    hand.L = MatrixOf({{1, 0}, {0, 1}});
    hand.VA.Resize(6, 6);
    for (int a = 1; a <= 6; ++a) {
        for (int b = 1; b <= 6; ++b) {
            hand.VA(a, b) = 10 * a + b;
        }
    }
    hand.VL = MatrixOf({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}});
    const InnovationModel model = Read(hand);
    ASSERT_EQ(model.NA, 6);
    ASSERT_EQ(model.NL, 3);
    // Equation by equation, lag by lag, over the variables that enter.
    const std::vector<double> theta = {0.5, 0.25, 0.1, 0.2, 0.3, 0.4};
    for (int a = 1; a <= 6; ++a) {
        EXPECT_EQ(model.Theta(a), theta[static_cast<std::size_t>(a - 1)]) << a;
    }
    EXPECT_EQ(model.VA, hand.VA);
    EXPECT_EQ(model.VL, hand.VL);
    EXPECT_EQ(model.L, hand.L);
    EXPECT_FALSE(IsStructuralPattern(model.LPattern));
    // L = I: Psi(1) = A(1), Psi(2) = A(1)^2 + A(2).
    const Responses psi = ComputeResponses(model, 2);
    ExpectResponses(psi, 1, hand.A[0]);
    ExpectResponses(psi, 2, MatrixOf({{0.5, 0}, {0.37, 0.44}}));
}

TEST_F(InnovationMath, FirstOrderResponsesAndStandardErrorsByHand) {
    InnovationModel model = Read(FirstOrderModel());
    const Responses psi = ComputeResponses(model, 10);
    ExpectResponses(psi, 0, model.L);
    ExpectResponses(psi, 1, MatrixOf({{0.55, 0.2}, {0.35, 0.6}}));
    ExpectResponses(psi, 2, MatrixOf({{0.31, 0.16}, {0.215, 0.22}}));

    const Responses se = Errors(model, 10);
    // At h = 0 only the free elements of L count; L(1,2) is not free.
    EXPECT_NEAR(se(1, 1, 0), std::sqrt(0.5 / 50), 1e-12);
    EXPECT_NEAR(se(2, 2, 0), std::sqrt(0.8 / 50), 1e-12);
    EXPECT_EQ(se(1, 2, 0), 0.0);
    // Psi(1,1,1) = a11 L11 + a12 L21: gradient (L11, L21, 0, 0) in A and (a11, a12, 0) in L.
    EXPECT_NEAR(se(1, 1, 1), std::sqrt((0.04 + 0.25 * 0.09 + 0.25 * 0.5 + 0.01 * 0.2) / 50), 1e-10);
    // Psi(1,2,1) = a12 L22.
    EXPECT_NEAR(se(1, 2, 1), std::sqrt((4 * 0.09 + 0.01 * 0.8) / 50), 1e-10);
    // Psi(1,1,2) = a11 (a11 L11 + a12 L21) + a12 (a21 L11 + a22 L21) is quadratic in A, where
    // a central difference is still exact.
    const double s = 1.05 * 1.05 * 0.04 + 0.36 * 0.09 + 0.01 * 0.16 + 0.0025 * 0.25 + 0.0729 * 0.5 +
                     0.0064 * 0.2;
    EXPECT_NEAR(se(1, 1, 2), std::sqrt(s / 50), 1e-10);
    // The perturbed parameters are back.
    EXPECT_EQ(model.Theta(1), 0.5);
    EXPECT_EQ(model.L(2, 1), 0.5);

    // A longer horizon only adds rows.
    const Responses longer = Errors(model, 13);
    for (int h = 0; h <= 10; ++h) {
        EXPECT_EQ(longer(2, 1, h), se(2, 1, h)) << h;
    }
    const Vector largest = ComputeMaxResponses(model, 10);
    EXPECT_EQ(largest(1), 1.0);
    EXPECT_EQ(largest(2), 2.0);
}

TEST_F(InnovationMath, WithoutLagCoefficientsOnlyTheImpactRemains) {
    HandModel hand = FirstOrderModel();
    hand.p = 3;
    hand.Z = MatrixOf({{0, 0}, {0, 0}});
    InnovationModel model = Read(hand);
    ASSERT_EQ(model.NA, 0);
    const Responses psi = ComputeResponses(model, 10);
    const Responses se = Errors(model, 10);
    EXPECT_EQ(psi(2, 2, 0), 2.0);
    EXPECT_NEAR(se(2, 2, 0), std::sqrt(0.8 / 50), 1e-12);
    for (int h = 1; h <= 10; ++h) {
        ExpectResponses(psi, h, Matrix(2, 2));
        ExpectResponses(se, h, Matrix(2, 2));
    }
}

TEST_F(InnovationMath, StructuralImpactAndUnusableVariances) {
    HandModel hand = FirstOrderModel();
    hand.LPattern = MatrixOf({{1, 1}, {0, 1}});
    hand.L = MatrixOf({{1.0, 0.3}, {0.0, 2.0}});
    hand.VA = test::Diagonal({-1, -1, -1, -1});
    hand.VL = test::Diagonal({-1, -1, -1});
    InnovationModel model = Read(hand);
    EXPECT_TRUE(IsStructuralPattern(model.LPattern));
    EXPECT_EQ(ComputeResponses(model, 10)(1, 2, 0), 0.3);
    // A quadratic form that is not positive gives 0.
    EXPECT_EQ(Errors(model, 10)(1, 2, 3), 0.0);
    model.T = 0;
    EXPECT_EQ(ErrorNumberOf([&] { Errors(model, 10); }), DivisionByZero);
}

TEST(InnovationCounts, DeterministicTermsAndWork) {
    EXPECT_EQ(DeterministicTermCount({0, 0, 0, 4, 0}), 0);
    EXPECT_EQ(DeterministicTermCount({1, 1, 0, 4, 0}), 2);
    EXPECT_EQ(DeterministicTermCount({1, 0, 1, 4, 0}), 4);
    EXPECT_EQ(DeterministicTermCount({0, 0, 1, 12, 0}), 12);
    EXPECT_EQ(DeterministicTermCount({1, 1, 1, 4, 3}), 8);
    EXPECT_EQ(TotalWork(6, 40, 288, 21), 28331);
}

TEST(Decomposition, SharesAndTable) {
    Responses psi(2, 1);
    for (int i = 1; i <= 2; ++i) {
        for (int j = 1; j <= 2; ++j) {
            psi(i, j, 0) = MatrixOf({{1.0, 0.0}, {0.5, 2.0}})(i, j);
            psi(i, j, 1) = MatrixOf({{0.55, 0.2}, {0.35, 0.6}})(i, j);
        }
    }
    const Responses shares = DecompositionShares(psi);
    // Horizon 0: the squares of the rows of L in percent.
    EXPECT_NEAR(shares(2, 1, 0), 100 * 0.25 / 4.25, 1e-12);
    EXPECT_NEAR(shares(2, 2, 1), 100 * 4.36 / (0.25 + 0.1225 + 4.36), 1e-12);
    const std::vector<std::string> lines = DecompositionLines(shares, {"x", "a longer name"});
    ASSERT_EQ(lines.size(), 24u);
    const std::vector<std::string> first(lines.begin(), lines.begin() + 12);
    EXPECT_EQ(first,
              (std::vector<std::string>{
                  "Forecast error variance decomposition of ", "x", "Column 1: Horizon",
                  "Column 2: Contribution (%) of the innovation in", "          x",
                  "Column 3: Contribution (%) of the innovation in", "          a longer name",
                  "   1   2   3", "------------", "   0 100   0", "   1  97   3", " "}));
    EXPECT_EQ(lines[21], "   0   6  94");
    EXPECT_EQ(lines[22], "   1   8  92");

    // One variable: all of its variance is its own. A horizon wider than the column keeps its
    // last four digits.
    Responses single(1, 12345);
    single(1, 1, 0) = 0.7;
    const std::vector<std::string> alone = DecompositionLines(DecompositionShares(single), {"y"});
    EXPECT_EQ(alone[5], "   1   2");
    EXPECT_EQ(alone[7 + 10], "  10 100");
    EXPECT_EQ(alone[7 + 12345], "2345 100");
    // A variable without any response leaves nothing to divide by.
    EXPECT_NE(ErrorNumberOf([] { DecompositionShares(Responses(2, 10)); }), 0);
}

// Iterated SUR without FIML: the standard errors come from the coefficients alone, the report
// says so, and the impact responses, L itself, have none.
TEST_F(InnovationMath, WithoutAVarianceOfLTheImpactHasNoStandardError) {
    HandModel hand = FirstOrderModel();
    hand.varianceOfL = false;
    InnovationModel model = Read(hand);
    EXPECT_FALSE(model.VarianceOfL);
    ExpectResponses(ComputeResponses(model, 10), 0, hand.L);
    const Responses se = Errors(model, 10);
    for (int i = 1; i <= 2; ++i) {
        for (int j = 1; j <= 2; ++j) {
            EXPECT_EQ(se(i, j, 0), 0) << i << j;
            EXPECT_GT(se(i, j, 1), 0) << i << j;
        }
    }
    const std::vector<std::string> names = {"x", "y"};
    const Responses psi = ComputeResponses(model, 10);
    EXPECT_NE(ResponseReport(psi, se, names, false)
                  .find("Econometrics 35, 101-117.\r\nThe uncertainty of the estimate of L is not "
                        "included: no FIML variance of L is available.\r\nResponse of x"),
              std::string::npos);
    WriteResponseFile(test.module(), psi, se, ComputeMaxResponses(model, 10), names);
    EXPECT_FALSE(ResponsesWithVarianceOfL(test.module()));

    InnovationModel fiml = Read(FirstOrderModel());
    EXPECT_TRUE(fiml.VarianceOfL);
    const Responses fimlErrors = Errors(fiml, 10);
    EXPECT_EQ(ResponseReport(ComputeResponses(fiml, 10), fimlErrors, names, true)
                  .find("The uncertainty of the estimate of L"),
              std::string::npos);
    WriteResponseFile(test.module(), psi, fimlErrors, ComputeMaxResponses(fiml, 10), names);
    EXPECT_TRUE(ResponsesWithVarianceOfL(test.module()));
}

TEST(ResponseText, ShortenedNames) {
    EXPECT_EQ(ResponseName("  dlincome "), "dlincome");
    const std::string thirty(30, 'n');
    EXPECT_EQ(ResponseName(" " + thirty + " "), thirty);
    EXPECT_EQ(ResponseName(thirty + "o"), std::string(28, 'n') + "..");
}

TEST_F(InnovationMath, ReportAndResponseFile) {
    InnovationModel model = Read(FirstOrderModel());
    const Responses psi = ComputeResponses(model, 10);
    const Responses se = Errors(model, 10);
    const std::vector<std::string> names = {"x", "y"};
    int lines = 0;
    const std::string report = ResponseReport(psi, se, names, true, [&lines] { ++lines; });
    EXPECT_EQ(lines, 4 * 11);
    const std::string head =
        "The standard errors of the innovation responses are computed according to\r\n"
        "the method of Richard T. Baillie (1987), Inference in Dynamic Models\r\n"
        "Containing 'Surprise' Variables, Journal of Econometrics 35, 101-117.\r\n"
        "Response of x to a unit shock in x\r\n"
        "Horizon  Innovation response      Standard error\r\n"
        "   0           10.00000E-001       10.00000E-002\r\n"
        "   1           55.00000E-002       ";
    EXPECT_EQ(report.substr(0, head.size()), head);
    // An empty line after each response, one more after each variable and at the end.
    const std::size_t second = report.find("\r\n\r\nResponse of x to a unit shock in y\r\n"
                                           "Horizon  Innovation response      Standard error\r\n"
                                           "   0           00.00000E+000       00.00000E+000\r\n");
    ASSERT_NE(second, std::string::npos);
    EXPECT_NE(report.substr(second - 2, 2), "\r\n");
    EXPECT_NE(report.find("\r\n\r\n\r\nResponse of y to a unit shock in x"), std::string::npos);
    EXPECT_TRUE(report.ends_with("\r\n\r\n\r\n\r\n") && !report.ends_with("\r\n\r\n\r\n\r\n\r\n"));

    WriteResponseFile(test.module(), psi, se, ComputeMaxResponses(model, 10), names);
    const std::vector<std::string> file = ReadLines(test.module().DataFile("VARIR2.TMP"));
    ASSERT_EQ(file.size(), 1u + 4 * (2 + 11));
    EXPECT_EQ(file[0], "10,2");
    EXPECT_EQ(file[1], "\"Response of x to a unit shock in x\"");
    EXPECT_EQ(file[2], "1");
    EXPECT_EQ(file[3], "1," + ShortestText(se(1, 1, 0)));
    EXPECT_EQ(file[1 + 3 * 13], "\"Response of y to a unit shock in y\"");
    EXPECT_EQ(file[2 + 3 * 13], "2");
}

} // namespace
} // namespace lorvane
