#include <gtest/gtest.h>

#include <cmath>

#include "checks/CheckModel.h"
#include "checks/Portmanteau.h"
#include "checks/SerialCorrelationLM.h"
#include "checks/Stability.h"
#include "estimate/EstimateRoad.h"

using namespace lorvane;
using namespace lorvane::test;

namespace {

std::vector<double> Moduli(const std::vector<CompanionRoot>& roots) {
    std::vector<double> moduli;
    for (const CompanionRoot& root : roots) {
        moduli.push_back(root.Modulus);
    }
    return moduli;
}

// Roots known in closed form: y = 0.5 y(-1) + 0.24 y(-2) has the roots 0.8 and -0.3;
// y = -0.81 y(-2) the pair +-0.9i; a block-diagonal VAR(1) the roots on its diagonal.
TEST(Stability, RootsOfKnownCompanionMatrices) {
    const auto ar2 = CompanionRoots(Eigen::RowVector2d(0.5, 0.24));
    ASSERT_EQ(ar2.size(), 2u);
    EXPECT_NEAR(ar2[0].Real, 0.8, 1e-12);
    EXPECT_NEAR(ar2[1].Real, -0.3, 1e-12);
    EXPECT_NEAR(ar2[1].Modulus, 0.3, 1e-12);

    const auto pair = CompanionRoots(Eigen::RowVector2d(0, -0.81));
    EXPECT_NEAR(pair[0].Imaginary, 0.9, 1e-12);
    EXPECT_NEAR(pair[1].Imaginary, -0.9, 1e-12);
    EXPECT_EQ(pair[0].Modulus, pair[1].Modulus);
    EXPECT_TRUE(IsStable(pair));

    Eigen::Matrix2d A;
    A << 0.2, 0, 0.7, -0.6;
    const auto var1 = Moduli(CompanionRoots(A));
    EXPECT_NEAR(var1[0], 0.6, 1e-12);
    EXPECT_NEAR(var1[1], 0.2, 1e-12);
}

// A root close enough to the unit circle to show a modulus of 1.000000 is a unit root; one just
// inside the shown precision is not; an explosive root is not stable either.
TEST(Stability, RootsNearTheUnitCircle) {
    Eigen::Matrix2d A;
    A << 0.9999996, 0.3, 0, 0.5;
    EXPECT_FALSE(IsStable(CompanionRoots(A)));
    A(0, 0) = 0.99999;
    EXPECT_TRUE(IsStable(CompanionRoots(A)));
    A(0, 0) = 1.02;
    EXPECT_FALSE(IsStable(CompanionRoots(A)));
    // The second lag carries the VAR to a unit root: y = 0.6 y(-1) + 0.4 y(-2).
    EXPECT_FALSE(IsStable(CompanionRoots(Eigen::RowVector2d(0.6, 0.4))));
}

// The example VAR(2) with dlinvest kept out of the equations of dlincome and dlcons, after one
// SUR round.
TEST(CheckModel, RestrictedModelAndItsDegreesOfFreedom) {
    TestModule test;
    WalkE1ToVARSUR(test, {{2, 1}, {3, 1}});
    test.module().Click("VARSUR", "Command3");
    test.module().Click("VARSUR", "Command4");
    const CheckModel model = ReadCheckModel(test.module(), 3, 2, 73);

    // Nine places of the pattern less two zeros, at two lags: 14 free lag coefficients, whose
    // zeros stand in both lag matrices.
    EXPECT_EQ(model.FreeLags, 14);
    for (const int lag : {0, 1}) {
        EXPECT_EQ(model.A(1, 3 * lag), 0);
        EXPECT_EQ(model.A(2, 3 * lag), 0);
        EXPECT_NE(model.A(0, 3 * lag), 0);
    }
    // Every regressor once: six lags and the intercept, though two equations lack two of them.
    EXPECT_EQ(model.X.cols(), 7);
    EXPECT_EQ(model.U.rows(), 73);

    // Portmanteau: k^2 h less the free lag coefficients, 9 * 12 - 14 = 94 (four more than the
    // unrestricted 9 * (12 - 2) = 90); Breusch-Godfrey: k^2 q = 36 whatever the restrictions.
    EXPECT_EQ(Portmanteau(model.U, 12, model.FreeLags).DegreesOfFreedom, 94);
    EXPECT_EQ(Portmanteau(model.U, 12, 18).DegreesOfFreedom, 90);
    const SerialCorrelationTest lm = SerialCorrelationLM(model.U, model.X, 4);
    EXPECT_EQ(lm.DegreesOfFreedom, 36);
    EXPECT_EQ(lm.Numerator, 36);
    EXPECT_GT(lm.LM, 0);
}

// On 73 observations with 7 regressors and 3 variables the ARCH regression bounds the order: at
// q = 9 it has 73 - 9 = 64 observations for 1 + 6 * 9 regressors and 6 more to spare, at q = 10
// only 63 for 61 + 6; the F form's denominator at 9 is 111.5.
TEST(SerialCorrelationLM, LargestOrder) {
    EXPECT_EQ(LargestTestOrder(73, 7, 3), 9);
    EXPECT_NEAR(EdgertonShukurDenominator(73, 7, 3, 9), 50.5 * std::sqrt(6557.0 / 733) - 39.5,
                1e-12);
    EXPECT_EQ(LargestTestOrder(12, 7, 3), 0);
}

} // namespace
