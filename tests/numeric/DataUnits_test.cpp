#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "numeric/DataUnits.h"
#include "support/E1Road.h"

using namespace lorvane;
using lorvane::test::ExampleFactor;

TEST(UnitPowers, FollowTheUnitsOfEachVariable) {
    // The steps were made for these series: no power of ten moves them.
    EXPECT_EQ(UnitPowers(ExampleFactor()), (std::vector<int>{0, 0, 0}));
    for (const int s : {-12, -4, -1, 1, 2, 9, 30}) {
        Matrix L = ExampleFactor();
        for (int i = 1; i <= 3; ++i) {
            for (int j = 1; j <= 3; ++j) {
                L(i, j) *= std::pow(10.0, s);
            }
        }
        EXPECT_EQ(UnitPowers(L), (std::vector<int>{s, s, s})) << s;
    }
    // The second series alone in percent: only its row moves.
    Matrix percent = ExampleFactor();
    for (int j = 1; j <= 3; ++j) {
        percent(2, j) *= 100;
    }
    EXPECT_EQ(UnitPowers(percent), (std::vector<int>{0, 2, 0}));
    // The length of the row counts, not its diagonal: any factor of the same variance will do.
    Matrix rotated(2, 2);
    rotated(1, 2) = 0.05;
    rotated(2, 1) = 3e-4;
    rotated(2, 2) = -4e-4;
    EXPECT_EQ(UnitPowers(rotated), (std::vector<int>{0, -2}));
    // A row of zeros has no units; huge and tiny rows do not overflow.
    Matrix odd(3, 3);
    odd(2, 1) = 1e300;
    odd(2, 2) = 1e300;
    odd(3, 3) = 1e-300;
    EXPECT_EQ(UnitPowers(odd), (std::vector<int>{0, 302, -298}));
}

TEST(PowerOfTen, ExactWhereDoublesAllow) {
    EXPECT_EQ(PowerOfTen(0), 1.0);
    EXPECT_EQ(PowerOfTen(3), 1000.0);
    EXPECT_EQ(PowerOfTen(-3), 0.001);
    EXPECT_EQ(PowerOfTen(22), 1e22);
    EXPECT_EQ(PowerOfTen(-22), 1e-22);
    EXPECT_DOUBLE_EQ(PowerOfTen(-300), 1e-300);
}
