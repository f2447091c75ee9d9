#include <gtest/gtest.h>

#include "support/Errors.h"

#include "frame/NumberText.h"
#include "frame/RuntimeError.h"

using namespace lorvane;

using lorvane::test::ErrorNumberOf;

TEST(NumberToText, LeadingBlankForNonNegativeAndNoZeroBeforeThePoint) {
    EXPECT_EQ(NumberToText(5), " 5");
    EXPECT_EQ(NumberToText(-5), "-5");
    EXPECT_EQ(NumberToText(0), " 0");
    EXPECT_EQ(NumberToText(-0.0), " 0");
    EXPECT_EQ(NumberToText(0.5), " .5");
    EXPECT_EQ(NumberToText(-0.25), "-.25");
    EXPECT_EQ(NumberToText(1999), " 1999");
    EXPECT_EQ(NumberToText(12.5), " 12.5");
    EXPECT_EQ(NumberToText(100), " 100");
}

TEST(NumberToText, FifteenSignificantDigitsAndNoExponent) {
    EXPECT_EQ(NumberToText(0.1 + 0.2), " .3");
    EXPECT_EQ(NumberToText(1.0 / 3.0), " .333333333333333");
    EXPECT_EQ(NumberToText(-2.0 / 3.0), "-.666666666666667");
    EXPECT_EQ(NumberToText(123456789012345678.0), " 123456789012346000");
    EXPECT_EQ(NumberToText(1e20), " 100000000000000000000");
    EXPECT_EQ(NumberToText(1.5e-7), " .00000015");
}

TEST(NumberToText, DecimalResolutionAndRange) {
    EXPECT_EQ(NumberToText(1e-28), " .0000000000000000000000000001");
    EXPECT_EQ(NumberToText(1.5e-29), " 0");
    EXPECT_EQ(NumberToText(-4e-30), " 0");
    EXPECT_EQ(ErrorNumberOf([] { NumberToText(8e28); }), Overflow);
    EXPECT_EQ(ErrorNumberOf([] { NumberToText(-1e300); }), Overflow);
}

TEST(FormatNumber, FixedPicturesShowPointAndOptionalDigitsAsClassicFormatDoes) {
    EXPECT_EQ(FormatNumber(12, "##.##"), "12.");
    EXPECT_EQ(FormatNumber(0.5, "#.00"), ".50");
    EXPECT_EQ(FormatNumber(0.5, "#0.00"), "0.50");
    EXPECT_EQ(FormatNumber(0, "########.##"), ".");
    EXPECT_EQ(FormatNumber(0, "0.00000"), "0.00000");
    EXPECT_EQ(FormatNumber(12.3, "########.##"), "12.3");
    EXPECT_EQ(FormatNumber(0.5, "##########.000000"), ".500000");
    EXPECT_EQ(FormatNumber(1234.5678, "#####0.0000"), "1234.5678");
    EXPECT_EQ(FormatNumber(123456789, "#0"), "123456789");
    EXPECT_EQ(FormatNumber(7, "00"), "07");
}

TEST(FormatNumber, RoundsHalfAwayFromZeroAfterFifteenDigits) {
    EXPECT_EQ(FormatNumber(2.5, "#0"), "3");
    EXPECT_EQ(FormatNumber(3.5, "#0"), "4");
    EXPECT_EQ(FormatNumber(-2.5, "###0"), "-3");
    EXPECT_EQ(FormatNumber(0.125, "0.00"), "0.13");
    // 1.005 is stored as 1.00499999999999989..., but its fifteen digits end in 5.
    EXPECT_EQ(FormatNumber(1.005, "0.00"), "1.01");
    EXPECT_EQ(FormatNumber(12.345, "########0.00"), "12.35");
    EXPECT_EQ(FormatNumber(0.4999, "#0"), "0");
    EXPECT_EQ(FormatNumber(0.004, "#.##"), ".");
}

TEST(FormatNumber, RoundingUpIntoANewDigit) {
    EXPECT_EQ(FormatNumber(9.999995, "0.00000"), "10.00000");
    EXPECT_EQ(FormatNumber(99.5, "#0"), "100");
    EXPECT_EQ(FormatNumber(0.9999999, "#.000"), "1.000");
    EXPECT_EQ(FormatNumber(9.999996, "0.00000E+000"), "1.00000E+001");
    EXPECT_EQ(FormatNumber(99.9999996, "00.00000E+00"), "10.00000E+01");
    EXPECT_EQ(FormatNumber(-9.9999999, "0.0000E+000"), "-1.0000E+001");
}

TEST(FormatNumber, Negatives) {
    EXPECT_EQ(FormatNumber(-0.0123, "0.0000"), "-0.0123");
    EXPECT_EQ(FormatNumber(-1234.5678, "#####0.0000"), "-1234.5678");
    EXPECT_EQ(FormatNumber(-0.5, "#.00"), "-.50");
    EXPECT_EQ(FormatNumber(-0.0123, "0.00000E+000"), "-1.23000E-002");
    EXPECT_EQ(FormatNumber(-0.0, "0.00"), "0.00");
}

TEST(FormatNumber, ExponentDigitsSignsAndMantissaWidth) {
    EXPECT_EQ(FormatNumber(0.0123, "00.00000E+00"), "12.30000E-03");
    EXPECT_EQ(FormatNumber(123456, "0.00000E+000"), "1.23456E+005");
    EXPECT_EQ(FormatNumber(123456, "0.00000E+00"), "1.23456E+05");
    EXPECT_EQ(FormatNumber(1.5e-100, "0.00E+00"), "1.50E-100");
    EXPECT_EQ(FormatNumber(1.5e-100, "00.00000E+000"), "15.00000E-101");
    EXPECT_EQ(FormatNumber(2.5e123, "00.000000E+000"), "25.000000E+122");
    EXPECT_EQ(FormatNumber(0.000123456, "0.00000E-00"), "1.23456E-04");
    EXPECT_EQ(FormatNumber(12345.6, "0.0E-00"), "1.2E04");
    EXPECT_EQ(FormatNumber(1, "0.0000000E+000"), "1.0000000E+000");
    EXPECT_EQ(FormatNumber(0, "0.00000E+000"), "0.00000E+000");
    EXPECT_EQ(FormatNumber(0, "00.00000E+00"), "00.00000E+00");
    EXPECT_EQ(FormatNumber(0.00125, "0.0E+00"), "1.3E-03");
}

TEST(FormatNumber, RejectsAPictureItDoesNotKnow) {
    EXPECT_EQ(ErrorNumberOf([] { FormatNumber(1, "0.0%"); }), InvalidProcedureCall);
    EXPECT_EQ(ErrorNumberOf([] { FormatNumber(1, ""); }), InvalidProcedureCall);
}

TEST(Val, ReadsTheLeadingNumberSkippingBlanksAnywhere) {
    EXPECT_EQ(Val("  1 2 3"), 123);
    EXPECT_EQ(Val("\t7\n8"), 78);
    EXPECT_EQ(Val("12abc"), 12);
    EXPECT_EQ(Val("-.5"), -0.5);
    EXPECT_EQ(Val(" - 3"), -3);
    EXPECT_EQ(Val("+4"), 4);
    EXPECT_EQ(Val("1.2.3"), 1.2);
    EXPECT_EQ(Val("1,5"), 1);
    EXPECT_EQ(Val("12-3"), 12);
    EXPECT_EQ(Val("1.5E2"), 150);
    EXPECT_EQ(Val("1.5d-2"), 0.015);
    EXPECT_EQ(Val("2e"), 2);
    EXPECT_EQ(Val("2E+"), 2);
    EXPECT_EQ(Val("abc"), 0);
    EXPECT_EQ(Val(""), 0);
    EXPECT_EQ(Val("-"), 0);
    EXPECT_EQ(Val("."), 0);
    EXPECT_EQ(Val("1e-400"), 0);
    EXPECT_EQ(Val("-1E-400"), 0);
    EXPECT_EQ(Val("." + std::string(400, '0') + "1"), 0);
    EXPECT_EQ(ErrorNumberOf([] { Val("1" + std::string(400, '0')); }), Overflow);
    EXPECT_EQ(ErrorNumberOf([] { Val("1e400"); }), Overflow);
}

TEST(TextHelpers, AlignmentAndTrimming) {
    EXPECT_EQ(RightAligned("12.5", 6), "  12.5");
    EXPECT_EQ(RightAligned("1234567", 3), "1234567");
    EXPECT_EQ(Trim("  a b  "), "a b");
    EXPECT_EQ(TrimLeft("  a "), "a ");
    EXPECT_EQ(TrimRight("  a "), "  a");
    EXPECT_EQ(UpperCase("Route.tmp"), "ROUTE.TMP");
}
