#include <gtest/gtest.h>

#include "frame/ObsLabel.h"
#include "frame/TextParts.h"

using namespace lorvane;

TEST(ObsLabel, MonthlyAcrossTheYearEnd) {
    EXPECT_EQ(ObsLabel(1, 3, 1990, 11, 12, 40), "1990.11");
    EXPECT_EQ(ObsLabel(2, 3, 1990, 11, 12, 40), "1990.12");
    EXPECT_EQ(ObsLabel(3, 3, 1990, 11, 12, 40), "1991.01");
    EXPECT_EQ(ObsLabel(14, 3, 1990, 11, 12, 40), "1991.12");
    EXPECT_EQ(ObsLabel(15, 3, 1990, 11, 12, 40), "1992.01");
}

TEST(ObsLabel, QuarterlyAnnualAndUndated) {
    EXPECT_EQ(ObsLabel(1, 2, 1960, 1, 4, 92), "1960.1");
    EXPECT_EQ(ObsLabel(4, 2, 1960, 1, 4, 92), "1960.4");
    EXPECT_EQ(ObsLabel(5, 2, 1960, 1, 4, 92), "1961.1");
    EXPECT_EQ(ObsLabel(92, 2, 1960, 1, 4, 92), "1982.4");
    EXPECT_EQ(ObsLabel(2, 2, 1960, 4, 4, 92), "1961.1");
    EXPECT_EQ(ObsLabel(1, 1, 1990, 1, 1, 10), "1990");
    EXPECT_EQ(ObsLabel(10, 0, 1, 1, 1, 10), "10");
    EXPECT_EQ(ObsLabel(1, 5, 1990, 1, 4, 10), "");
}

TEST(FindPart, PositionsAndSplit) {
    Int16 first;
    Int16 last;
    Int16 found;
    FindPart("Y(2) = dlincome", " = ", first, last, found);
    EXPECT_EQ(found, 1);
    EXPECT_EQ(first, 5);
    EXPECT_EQ(last, 7);
    FindPart("ab", "abc", first, last, found);
    EXPECT_EQ(found, 0);
    FindPart("abc", "x", first, last, found);
    EXPECT_EQ(found, 0);

    std::string before = "unchanged";
    std::string after;
    SplitAround("a=b", "=", before, after, found);
    EXPECT_EQ(before, "a");
    EXPECT_EQ(after, "b");
    SplitAround("=b", "=", before, after, found);
    EXPECT_EQ(before, "");
    EXPECT_EQ(after, "b");
    SplitAround("a=", "=", before, after, found);
    EXPECT_EQ(before, "a");
    EXPECT_EQ(after, "");
}

TEST(LargerSmaller, AnyNumericType) {
    EXPECT_EQ(Larger(2.5, -1.0), 2.5);
    EXPECT_EQ(Smaller(2, 7), 2);
    EXPECT_EQ(Larger(Int16(3), Int16(-3)), 3);
}
