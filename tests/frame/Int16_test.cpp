#include <gtest/gtest.h>

#include "support/Errors.h"

#include "frame/Int16.h"

using namespace lorvane;

using lorvane::test::ErrorNumberOf;

TEST(Int16, StoringOutsideSixteenBitsIsOverflow) {
    Int16 n = 32767;
    EXPECT_EQ(ErrorNumberOf([&] { ++n; }), Overflow);
    EXPECT_EQ(n, 32767);
    Int16 m = -32768;
    EXPECT_EQ(ErrorNumberOf([&] { m -= 1; }), Overflow);
    EXPECT_EQ(ErrorNumberOf([] {
                  Int16 product = 200 * 200;
                  (void)product;
              }),
              Overflow);
    Int16 sum = 30000;
    sum += 2767;
    EXPECT_EQ(sum, 32767);
}

TEST(Int16, ClassicConversions) {
    EXPECT_EQ(CInt(2.5), 2);
    EXPECT_EQ(CInt(3.5), 4);
    EXPECT_EQ(CInt(-2.5), -2);
    EXPECT_EQ(CInt(-2.6), -3);
    EXPECT_EQ(CInt(32767.4), 32767);
    EXPECT_EQ(ErrorNumberOf([] { CInt(32767.5); }), Overflow);
    EXPECT_EQ(Int(-2.5), -3);
    EXPECT_EQ(Fix(-2.5), -2);
    EXPECT_EQ(ToSingle(0.1), static_cast<double>(0.1f));
    EXPECT_NE(ToSingle(0.1), 0.1);
    EXPECT_EQ(ErrorNumberOf([] { ToSingle(1e39); }), Overflow);
}

TEST(RuntimeError, ClassicNumbersAndMessage) {
    EXPECT_EQ(RuntimeError::Of(62).Description(), "Input past end of file");
    EXPECT_EQ(RuntimeError::Of(6).MessageText(), "Run-time error '6':\r\n\r\nOverflow");
    EXPECT_EQ(ErrorNumberOf([] { CheckedDivide(1, 0); }), DivisionByZero);
    EXPECT_EQ(ErrorNumberOf([] { CheckedDivide(0, 0); }), Overflow);
    EXPECT_EQ(ErrorNumberOf([] { CheckedDivide(1e308, 1e-308); }), Overflow);
    EXPECT_EQ(ErrorNumberOf([] { CheckedSqrt(-1); }), InvalidProcedureCall);
    EXPECT_EQ(ErrorNumberOf([] { CheckedLog(0); }), InvalidProcedureCall);
    EXPECT_EQ(ErrorNumberOf([] { CheckedExp(1000); }), Overflow);
    EXPECT_EQ(CheckedSqrt(4), 2);
}
