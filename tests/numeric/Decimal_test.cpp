// The 96-bit decimal against the published test vectors of two runtimes that implement it.
//
// Wine: dlls/oleaut32/tests/vartype.c, test_VarDecFromR8, test_VarDecAdd, test_VarDecSub,
// test_VarDecMul, test_VarDecDiv and test_VarDecCmp. Operands and results are written as the
// raw DECIMAL fields there: scale, sign, Hi32, Mid32, Lo32.
//
// .NET runtime: src/libraries/System.Runtime/tests/System.Runtime.Tests/System/DecimalTests.cs,
// Ctor_Double_TestData, Add_Valid_TestData, Add_Overflows_TestData, Multiply_Valid_TestData,
// Multiply_Invalid_TestData, Divide_Valid_TestData, Divide_Overflows_TestData and
// Divide_ZeroDenominator_TestData. Operands and results are decimal literals there, read here
// with Decimal::FromText, which rounds surplus digits as the literals are rounded.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <tuple>
#include <vector>

#include "frame/RuntimeError.h"
#include "numeric/Decimal.h"
#include "support/Errors.h"

using lorvane::Decimal;
using lorvane::test::ErrorNumberOf;

namespace {

constexpr std::uint32_t kAll = 0xFFFFFFFF;

// The raw fields of a DECIMAL as the Wine tests write them: scale, sign (1 negative), Hi32,
// Mid32, Lo32.
using Raw = std::tuple<int, int, std::uint32_t, std::uint32_t, std::uint32_t>;

Decimal Make(const Raw& r) {
    return Decimal::FromParts(std::get<4>(r), std::get<3>(r), std::get<2>(r), std::get<1>(r) != 0,
                              std::get<0>(r));
}

Raw Fields(const Decimal& d) {
    return {d.Scale(), d.IsNegative() ? 1 : 0, d.Hi32(), d.Mid32(), d.Lo32()};
}

Decimal D(const char* text) {
    return Decimal::FromText(text);
}

const Decimal kMax = D("79228162514264337593543950335");

const auto kAdd = [](const Decimal& a, const Decimal& b) { return a + b; };
const auto kSubtract = [](const Decimal& a, const Decimal& b) { return a - b; };
const auto kMultiply = [](const Decimal& a, const Decimal& b) { return a * b; };
const auto kDivide = [](const Decimal& a, const Decimal& b) { return a / b; };

// Each case: left, right, and the expected fields, or an expected error number.
template <typename Operation>
void ExpectRaw(Operation op, const std::vector<std::tuple<Raw, Raw, Raw>>& cases) {
    for (const auto& [left, right, expected] : cases) {
        const Decimal result = op(Make(left), Make(right));
        EXPECT_EQ(Fields(result), expected)
            << Make(left).ToText() << " with " << Make(right).ToText();
    }
}

template <typename Operation>
void ExpectRawError(Operation op, const Raw& left, const Raw& right, int error) {
    EXPECT_EQ(ErrorNumberOf([&] { op(Make(left), Make(right)); }), error) << Make(left).ToText();
}

// Compares values: the literals of the source carry no particular scale.
template <typename Operation>
void ExpectText(Operation op,
                const std::vector<std::tuple<const char*, const char*, const char*>>& cases) {
    for (const auto& [left, right, expected] : cases) {
        const Decimal result = op(D(left), D(right));
        EXPECT_EQ(result, D(expected)) << left << " with " << right << " gave " << result.ToText();
    }
}

} // namespace

TEST(Decimal, WineAddAndSubtract) {
    const Raw max{0, 0, kAll, kAll, kAll};
    ExpectRaw(
        kAdd,
        {
            {{0, 0, 0, 0, 1}, {0, 1, 0, 0, 1}, {0, 0, 0, 0, 0}},
            {{0, 0, 0, 0, 1}, {0, 1, 0, 0, 2}, {0, 1, 0, 0, 1}},
            {{0, 1, 0, 0, 0}, {0, 0, 0, 0, 1}, {0, 0, 0, 0, 1}},
            {{0, 1, 0, 0, 1}, {0, 0, 0, 0, 2}, {0, 0, 0, 0, 1}},
            // Carries and borrows between the 32-bit parts.
            {{0, 0, 0, 0, kAll}, {0, 1, 0, 0, 1}, {0, 0, 0, 0, 0xFFFFFFFE}},
            {{0, 0, 0, 0, kAll}, {0, 0, 0, 0, 1}, {0, 0, 0, 1, 0}},
            {{0, 0, 0, kAll, 0}, {0, 1, 0, 0, 1}, {0, 0, 0, 0xFFFFFFFE, kAll}},
            {{0, 0, 0, kAll, kAll}, {0, 0, 0, 0, 1}, {0, 0, 1, 0, 0}},
            {{0, 0, 0, kAll, kAll}, {0, 1, 0, 0, 1}, {0, 0, 0, kAll, 0xFFFFFFFE}},
            {{0, 0, kAll, 0, 0}, {0, 1, 0, 0, 1}, {0, 0, 0xFFFFFFFE, kAll, kAll}},
            {max, {0, 1, 0, 0, 1}, {0, 0, kAll, kAll, 0xFFFFFFFE}},
            // A sum that does not fit is rounded one scale down, half to even.
            {{1, 0, kAll, kAll, kAll}, {1, 0, 0, 0, 1}, {0, 0, 0x19999999, 0x99999999, 0x9999999A}},
            {{1, 0, 0xE22EA493, 0xB30310A7, 0x70000000},
             {1, 0, 0xE22EA493, 0xB30310A7, 0x70000000},
             {0, 0, 0x2D3C8750, 0xBD670354, 0xB0000000}},
            {{3, 1, 0, 0, 123456}, max, {0, 0, kAll, kAll, 0xFFFFFF84}},
            {{6, 0, 0, 0, 123456}, max, max},
            {{3, 1, 0, 0, 123456},
             {0, 0, 0x19999999, 0x99999999, 0x99999999},
             {1, 0, kAll, kAll, 0xFFFFFB27}},
            {{3, 1, 0, 0, 123567},
             {0, 0, 0x19999999, 0x99999999, 0x99999999},
             {1, 0, kAll, kAll, 0xFFFFFB26}},
            // The sum keeps the larger scale.
            {{2, 0, 0, 0, 0}, {0, 0, 0, 0, 0}, {2, 0, 0, 0, 0}},
            {{2, 0, 0, 0, 100}, {0, 0, 0, 0, 1}, {2, 0, 0, 0, 200}},
        });
    ExpectRaw(kSubtract, {
                             {{0, 0, 0, 0, 0}, {0, 0, 0, 0, 1}, {0, 1, 0, 0, 1}},
                             {{0, 0, 0, 0, 1}, {0, 1, 0, 0, 1}, {0, 0, 0, 0, 2}},
                         });
    ExpectRawError(kAdd, max, {0, 0, 0, 0, 1}, lorvane::Overflow);
    ExpectRawError(kAdd, {0, 0, 0xE22EA493, 0xB30310A7, 0x70000000},
                   {0, 0, 0xE22EA493, 0xB30310A7, 0x70000000}, lorvane::Overflow);
    for (const int scale : {3, 4, 5}) {
        ExpectRawError(kAdd, {scale, 0, 0, 0, 123456}, max, lorvane::Overflow);
    }
}

TEST(Decimal, WineMultiply) {
    const Raw near{0, 0, 1999999999, kAll, 0x88CA6C00};
    ExpectRaw(kMultiply,
              {
                  {{0, 0, 0, 0, 1}, {0, 0, 0, 0, 0}, {0, 0, 0, 0, 0}},
                  {{0, 1, 0, 0, 2}, {0, 1, 0, 0, 2}, {0, 0, 0, 0, 4}},
                  // Scales add up, and an exact product is not reduced.
                  {{4, 0, 0, 0, 2}, {0, 0, 0, 0, 2}, {4, 0, 0, 0, 4}},
                  {{4, 0, 0, 0, 2}, {3, 0, 0, 0, 2}, {7, 0, 0, 0, 4}},
                  {{4, 0, 0, 0, 5}, {3, 0, 0, 0, 2}, {7, 0, 0, 0, 10}},
                  {{0, 0, 0, kAll, kAll}, {0, 0, 0, 0, 2}, {0, 0, 1, kAll, 0xFFFFFFFE}},
                  {{0, 0, 1, 0, 1}, {0, 0, 0, 0, 0x80000000}, {0, 0, 0x80000000, 0, 0x80000000}},
                  {{0, 0, 0, kAll, kAll}, {0, 0, 0, 0, 2000000000}, near},
                  // Reducing the scale averts an overflow ...
                  {{1, 0, 0, kAll, kAll}, {0, 0, 0, 4, 0xA817C800}, near},
                  {{1, 0, 1, kAll, 0xFFFFFFFE}, {0, 0, 0, 2, 0x540BE400}, near},
                  // ... even at the price of significant digits.
                  {{2, 0, 0, kAll, kAll},
                   {0, 0, 0, 9, 0x502F9001},
                   {1, 0, 0xEE6B2800, 0x19999998, 0xAB2E719A}},
              });
    ExpectRawError(kMultiply, {0, 0, 0, kAll, kAll}, {0, 0, 0, 4, 0xA817C800}, lorvane::Overflow);
    ExpectRawError(kMultiply, {0, 0, 1, kAll, 0xFFFFFFFE}, {0, 0, 0, 2, 0x540BE400},
                   lorvane::Overflow);
}

TEST(Decimal, WineDivide) {
    const Raw third{28, 0, 180700362, 0x14B700CB, 0x05555555};
    ExpectRaw(kDivide,
              {
                  // Exact quotients keep the smallest scale that holds them, not below 0.
                  {{1, 0, 0, 0, 45}, {0, 0, 0, 0, 9}, {1, 0, 0, 0, 5}},
                  {{0, 0, 0, 0, 45}, {1, 0, 0, 0, 9}, {0, 0, 0, 0, 50}},
                  {{1, 0, 0, 0, 45}, {1, 0, 0, 0, 9}, {0, 0, 0, 0, 5}},
                  // Either form is accepted there; this is the .NET runtime's.
                  {{2, 0, 0, 0, 450}, {1, 0, 0, 0, 9}, {1, 0, 0, 0, 50}},
                  {{0, 0, 0, 0, 1}, {0, 0, 0, 0, 3}, third},
                  {{2, 0, 0, 0, 10}, {1, 0, 0, 0, 3}, third},
                  {{1, 0, 0, 0, 1}, {0, 0, 0, 0, 3}, {28, 0, 18070036, 0x35458014, 0x4D555555}},
                  {{0, 0, 0, 0, 1}, {1, 0, 0, 0, 3}, {28, 0, 1807003620, 0xCF2607EE, 0x35555555}},
                  // The 28th digit is rounded.
                  {{0, 0, 0, 0, 2}, {0, 0, 0, 0, 3}, {28, 0, 361400724, 0x296E0196, 0x0AAAAAAB}},
                  {{0, 1, 0, 0, 45}, {0, 1, 0, 0, 9}, {0, 0, 0, 0, 5}},
                  {{0, 0, 0, 0, 45}, {0, 1, 0, 0, 9}, {0, 1, 0, 0, 5}},
              });
    ExpectRawError(kDivide, {0, 0, 0, 0, 0}, {0, 0, 0, 0, 0}, lorvane::DivisionByZero);
    ExpectRawError(kDivide, {0, 0, 0, 0, 1}, {0, 0, 0, 0, 0}, lorvane::DivisionByZero);
}

TEST(Decimal, WineCompareAndConvert) {
    const Raw one{0, 0, 0, 0, 1};
    const Raw max{0, 0, kAll, kAll, kAll};
    const Raw min{0, 1, kAll, kAll, kAll};
    const std::vector<std::tuple<Raw, Raw, int>> cases = {
        {one, max, -1}, {one, {0, 1, 0, 0, 0}, 1},
        {one, min, 1},  {{0, 1, 0, 0, 1}, {0, 0, 0, 0, 0}, -1},
        {max, min, 1},  {{0, 0, 0, 0, 0}, {0, 1, 0, 0, 0}, 0},
        {min, min, 0},  {{3, 0, 0, 0, 123456}, max, -1},
    };
    for (const auto& [left, right, expected] : cases) {
        const auto order = Make(left) <=> Make(right);
        EXPECT_EQ(order < 0 ? -1 : (order > 0 ? 1 : 0), expected)
            << Make(left).ToText() << " vs " << Make(right).ToText();
    }
    // VarDecFromR8
    EXPECT_EQ(Fields(Decimal::FromDouble(-0.6)), Raw(1, 1, 0, 0, 6));
    EXPECT_EQ(Fields(Decimal::FromDouble(0.0)), Raw(0, 0, 0, 0, 0));
    EXPECT_EQ(Fields(Decimal::FromDouble(0.5)), Raw(1, 0, 0, 0, 5));
}

TEST(Decimal, DotNetFromDouble) {
    // The bits of System.Decimal: lo, mid, hi as signed 32-bit numbers, then scale << 16.
    const std::vector<std::tuple<double, int, int, int, int>> cases = {
        {123456789.123456, -2045800064, 28744, 0, 393216},
        {2.0123456789123456, -1829795549, 46853, 0, 917504},
        {2E-28, 2, 0, 0, 1835008},
        {2E-29, 0, 0, 0, 0},
        {2E28, 536870912, 2085225666, 1084202172, 0},
        {1.5, 15, 0, 0, 65536},
        {100000000000000.1, 276447232, 23283, 0, 0},
        {10000000000000.1, 276447233, 23283, 0, 65536},
        {100000000000.1, -727379967, 232, 0, 65536},
        {0.01, 1, 0, 0, 131072},
        {0.0000000000000000000000000001, 1, 0, 0, 1835008},
        {0.00000000000000000000000000001, 0, 0, 0, 0},
    };
    for (const auto& [x, lo, mid, hi, flags] : cases) {
        const Decimal d = Decimal::FromDouble(x);
        const Raw expected{flags >> 16, 0, hi, mid, lo}; // the signed parts as unsigned bits
        EXPECT_EQ(Fields(d), expected) << x << " gave " << d.ToText();
    }
    for (const double x :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::max(),
          -std::numeric_limits<double>::max(), std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity()}) {
        EXPECT_EQ(ErrorNumberOf([x] { Decimal::FromDouble(x); }), lorvane::Overflow) << x;
    }
}

TEST(Decimal, DotNetAddAndMultiply) {
    ExpectText(kAdd, {
                         {"79228162514264337593543950330", "5", "79228162514264337593543950335"},
                         {"-79228162514264337593543950330", "-5", "-79228162514264337593543950335"},
                         {"-1234.5678", "0.00009", "-1234.56771"},
                         {"0.5555555555555555555555555555", "0.5555555555555555555555555555",
                          "1.1111111111111111111111111110"},
                     });
    ExpectText(kMultiply,
               {
                   {"7922816251426433759354395033.5", "10", "79228162514264337593543950335"},
                   {"0.2352523523423422342354395033", "56033525474612414574574757495",
                    "13182018677937129120135020796"},
                   {"46161363632634613634.093453337", "461613636.32634613634083453337",
                    "21308714924243214928823669051"},
                   // Rounded at the 28th decimal.
                   {"0.0000000000000345435353453563", ".0000000000000023525235234234",
                    "0.0000000000000000000000000001"},
                   {"79228162514264337593543950335", "0.99", "78435880889121694217608510832"},
                   {"-79228162514264337593543950335", "0.9999999999999999999999999999",
                    "-79228162514264337593543950327"},
               });
    EXPECT_EQ(ErrorNumberOf([] { kMax + kMax; }), lorvane::Overflow);
    EXPECT_EQ(ErrorNumberOf([] { D("-79228162514264337593543950330") + D("-6"); }),
              lorvane::Overflow);
    for (const char* factor :
         {"1.1", "1.0000001", "1.0000000000000000001", "1.000000000000000000000000001"}) {
        EXPECT_EQ(ErrorNumberOf([&] { kMax* D(factor); }), lorvane::Overflow) << factor;
    }
    EXPECT_EQ(ErrorNumberOf([] { kMax * -kMax; }), lorvane::Overflow);
    EXPECT_EQ(ErrorNumberOf([] { (kMax / D("2")) * D("2"); }), lorvane::Overflow);
}

TEST(Decimal, DotNetDivide) {
    ExpectText(kDivide,
               {
                   {"15", "2", "7.5"},
                   // Below 1E-28 the quotient is 0.
                   {"0.9214206543486529434634231456", "79228162514264337593543950335", "0"},
                   {"38214206543486529434634231456", "0.49214206543486529434634231456",
                    "77648730371625094566866001277"},
                   {"-78228162514264337593543950335", "79228162514264337593543950335",
                    "-0.987378225516463811113412343"},
                   // Near the end of the range: the last digit that still fits, rounded.
                   {"792281625142643375935439503.4", "0.1", "7922816251426433759354395034"},
                   {"79228162514264337593543950335", "10", "7922816251426433759354395033.5"},
                   {"79228162514264337567774146561", "10", "7922816251426433756777414656.1"},
                   {"79228162514264337567774146559", "10", "7922816251426433756777414655.9"},
                   {"79228162514264337593543950335", "1.1", "72025602285694852357767227577"},
                   {"79228162514264337593543950335", "1.001", "79149013500763574019524425909.091"},
                   {"79228162514264337593543950335", "1.00000000000001",
                    "79228162514263545311918807699.547"},
                   {"79228162514264337593543950335", "1.000000000000000000000000001",
                    "79228162514264337593543950255.772"},
                   {"7922816251426433759354395033.5", "0.9999999999999999999999999999",
                    "7922816251426433759354395034"},
                   {"79228162514264337593543950335", "10000000", "7922816251426433759354.3950335"},
                   {"7922816251426433759354395033.5", "1.0000000000000000000000000002",
                    "7922816251426433759354395031.9"},
                   {"79228162514264337593543950335", "1.0000000000000000000000000001",
                    "79228162514264337593543950327"},
                   {"7922816251426433759354.3950335", "0.0000001", "79228162514264337593543950335"},
               });
    // new decimal(429, 2133437386, 0, false, 0) and its successor
    const Decimal divisor = D("0.000000100000000000000000001");
    EXPECT_EQ(Decimal::FromParts(429, 2133437386, 0, false, 0) / divisor,
              D("91630438009337286849083695.62"));
    EXPECT_EQ(Decimal::FromParts(429, 2133437387, 0, false, 0) / divisor,
              D("91630438052286959809083695.62"));
    for (const char* b :
         {"-0.9999999999999999999999999", "0.1", "0.99999999", "0.9999999999999999999999999999"}) {
        EXPECT_EQ(ErrorNumberOf([&] { kMax / D(b); }), lorvane::Overflow) << b;
    }
    EXPECT_EQ(ErrorNumberOf([] { D("7922816251426433759354395034") / D("0.1"); }),
              lorvane::Overflow);
    EXPECT_EQ(ErrorNumberOf([] { (kMax / D("2")) / D("0.5"); }), lorvane::Overflow);
    EXPECT_EQ(ErrorNumberOf([] { D("0.0") / D("0.0"); }), lorvane::DivisionByZero);
}

TEST(Decimal, RoundsHalfToEvenAtTheTwentyEighthDecimal) {
    const Decimal unit = D("0.0000000000000000000000000001");
    EXPECT_TRUE((unit * D("0.5")).IsZero()); // a tie goes to the even 0
    EXPECT_TRUE((unit * D("0.4")).IsZero());
    EXPECT_TRUE((unit / D("3")).IsZero());
    EXPECT_EQ(unit * D("0.6"), unit);
    EXPECT_EQ(D("0.0000000000000000000000000003") * D("0.5"), D("0.0000000000000000000000000002"));
    EXPECT_EQ(D("0.0000000000000000000000000005") * D("0.5"), D("0.0000000000000000000000000002"));
    EXPECT_EQ(D("0.0000000000000000000000000007") * D("0.5"), D("0.0000000000000000000000000004"));
    // Ties of a sum at scale 0 go to even, and up to 2^96 is an overflow.
    EXPECT_EQ(kMax - D("0.5"), D("79228162514264337593543950334"));
    EXPECT_EQ(D("79228162514264337593543950334") + D("0.5"), D("79228162514264337593543950334"));
    EXPECT_EQ(ErrorNumberOf([] { kMax + D("0.5"); }), lorvane::Overflow);
}

TEST(Decimal, FromDoubleKeepsFifteenDigits) {
    EXPECT_EQ(Decimal::FromDouble(0.1 + 0.2).ToText(), "0.3");
    EXPECT_EQ(Decimal::FromDouble(1.0 / 3.0).ToText(), "0.333333333333333");
    EXPECT_EQ(Decimal::FromDouble(-2.0 / 3.0).ToText(), "-0.666666666666667");
    EXPECT_EQ(Decimal::FromDouble(123456789012345678.0).ToText(), "123456789012346000");
    EXPECT_EQ(Decimal::FromDouble(999999999999999.9).ToText(), "1000000000000000");
    EXPECT_EQ(Decimal::FromDouble(1999).ToText(), "1999");
    // Ties of the sixteenth digit go to even.
    EXPECT_EQ(Decimal::FromDouble(1000000000000005.0).ToText(), "1000000000000000");
    EXPECT_EQ(Decimal::FromDouble(1000000000000015.0).ToText(), "1000000000000020");
    // Digits beyond scale 28 are rounded away.
    EXPECT_EQ(Decimal::FromDouble(1.23456789e-20).ToText(), "0.0000000000000000000123456789");
    EXPECT_EQ(Decimal::FromDouble(1.6e-28).ToText(), "0.0000000000000000000000000002");
    EXPECT_EQ(Decimal::FromDouble(6e-29).ToText(), "0.0000000000000000000000000001");
    EXPECT_TRUE(Decimal::FromDouble(4e-29).IsZero());
    EXPECT_TRUE(Decimal::FromDouble(-1e-300).IsZero());
    // The range ends at 79228162514264337593543950335; the largest double below 2^96 fits.
    EXPECT_EQ(Decimal::FromDouble(std::nextafter(0x1p96, 0.0)).ToText(),
              "79228162514264300000000000000");
    EXPECT_EQ(ErrorNumberOf([] { Decimal::FromDouble(0x1p96); }), lorvane::Overflow);
    EXPECT_EQ(ErrorNumberOf([] { Decimal::FromDouble(-8e28); }), lorvane::Overflow);
}

TEST(Decimal, TextDoubleAndIntegerForms) {
    EXPECT_EQ(D("-0.25").ToText(), "-0.25");
    EXPECT_EQ(D("1.50").ToText(), "1.50");
    EXPECT_EQ(D("-0").ToText(), "0");
    EXPECT_EQ(D("0.0000000000000000000000000001").ToText(), "0.0000000000000000000000000001");
    EXPECT_EQ(Decimal::FromParts(150, 0, 0, false, 2).ToText(), "1.50");
    EXPECT_EQ(Decimal::FromInteger(-1999).ToText(), "-1999");
    EXPECT_EQ(Decimal::FromInteger(std::numeric_limits<long long>::min()).ToText(),
              "-9223372036854775808");
    EXPECT_EQ(ErrorNumberOf([] { D("79228162514264337593543950336"); }), lorvane::Overflow);
    EXPECT_EQ(ErrorNumberOf([] { D("1e5"); }), lorvane::TypeMismatch);
    EXPECT_EQ(ErrorNumberOf([] { Decimal::FromParts(1, 0, 0, false, 29); }),
              lorvane::InvalidProcedureCall);
    EXPECT_EQ(D("-0.25").ToDouble(), -0.25);
    EXPECT_EQ(kMax.ToDouble(), 0x1p96);
    EXPECT_EQ(D("0.0000000001").ToDouble(), 1e-10);
    EXPECT_DOUBLE_EQ(D("0.0000000000000000000000000001").ToDouble(), 1e-28); // 1 / 1E28 in doubles
    EXPECT_EQ(D("-7.5").Sign(), -1);
    EXPECT_EQ(D("-0.0").Sign(), 0);
    EXPECT_EQ(Abs(D("-7.5")), D("7.5"));
}

TEST(Decimal, TryFormsSkipInsteadOfRaising) {
    Decimal result = D("42");
    EXPECT_FALSE(Decimal::TryAdd(kMax, D("1"), result));
    EXPECT_FALSE(Decimal::TryDivide(D("1"), Decimal(), result));
    EXPECT_FALSE(Decimal::TryMultiplySubtract(D("1"), kMax, D("2"), result));
    EXPECT_EQ(result, D("42"));
    // The product is rounded before the subtraction: 1 - round(0.5 * 3E-28) = 1 - 2E-28.
    ASSERT_TRUE(Decimal::TryMultiplySubtract(D("1.0000000000000000000000000000"), D("0.5"),
                                             D("0.0000000000000000000000000003"), result));
    EXPECT_EQ(result, D("0.9999999999999999999999999998"));
    ASSERT_TRUE(Decimal::TryMultiplyAdd(D("2"), D("-3"), D("0.5"), result));
    EXPECT_EQ(result, D("0.5"));

    // A row operation: each element as its own statement; the one that overflows is kept.
    std::vector<Decimal> row = {D("1"), D("0.3333333333333333333333333333"), kMax, D("-2.5")};
    const std::vector<Decimal> source = {D("0.1428571428571428571428571429"), D("7"), D("-1"),
                                         D("1")};
    const std::vector<int> positions = {0, 1, 2, 3};
    Decimal::SubtractMultiple(row.data(), D("0.6666666666666666666666666667"), source.data(),
                              positions.data(), positions.size());
    EXPECT_EQ(row, (std::vector<Decimal>{D("0.9047619047619047619047619047"),
                                         D("-4.3333333333333333333333333336"), kMax,
                                         D("-3.1666666666666666666666666667")}));
}

TEST(Decimal, MovingThePointIsExact) {
    // The fifteen digits of the double, the point moved: none is lost to scale 28 on the way.
    EXPECT_EQ(Decimal::FromDouble(1.23456789012345e-20, 25).ToText(), "123456.789012345");
    EXPECT_EQ(Decimal::FromDouble(-2.5e-40, 40).ToText(), "-2.5");
    EXPECT_EQ(Decimal::FromDouble(1.0 / 3.0, -3).ToText(), "0.000333333333333333");
    EXPECT_EQ(Decimal::FromDouble(6.02214076e23, -23).ToText(), "6.02214076");
    EXPECT_EQ(Decimal::FromDouble(7.9, 28).ToText(), "79000000000000000000000000000");
    EXPECT_TRUE(Decimal::FromDouble(0.0, 7).IsZero());
    // Digits moved beyond scale 28 are rounded half to even, and the range still ends.
    EXPECT_EQ(Decimal::FromDouble(1.5, -28).ToText(), "0.0000000000000000000000000002");
    EXPECT_EQ(Decimal::FromDouble(2.5, -28).ToText(), "0.0000000000000000000000000002");
    EXPECT_TRUE(Decimal::FromDouble(4.0, -29).IsZero());
    EXPECT_EQ(ErrorNumberOf([] { Decimal::FromDouble(8.0, 28); }), lorvane::Overflow);
    EXPECT_EQ(ErrorNumberOf([] { Decimal::FromDouble(1.0, 400); }), lorvane::Overflow);
    EXPECT_EQ(ErrorNumberOf([] { Decimal::FromDouble(std::nan(""), 1); }), lorvane::Overflow);

    // The digits are those of FromDouble, ties of the sixteenth digit included: a move of three
    // places is a multiplication by 1000, which is exact here.
    std::uint64_t state = 77;
    for (int k = 0; k < 2000; ++k) {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        const double unit = static_cast<double>(state >> 11) / 9007199254740992.0;
        const double x = (k % 2 == 0 ? 1 : -1) * (1 + 9 * unit) * std::pow(10.0, k % 21 - 10);
        EXPECT_EQ(Decimal::FromDouble(x, 3), Decimal::FromDouble(x) * D("1000")) << x;
        EXPECT_EQ(Decimal::FromDouble(x, 0).ToText(), Decimal::FromDouble(x).ToText()) << x;
    }
    EXPECT_EQ(Decimal::FromDouble(1000000000000005.0, -1).ToText(), "100000000000000");
}

TEST(Decimal, BackToDoublesWithAPowerOfTen) {
    EXPECT_EQ(D("123.456").ToDouble(3), 123456.0);
    EXPECT_EQ(D("0.3").ToDouble(-1), 0.03);
    EXPECT_EQ(D("-7").ToDouble(-310), -7e-310);
    EXPECT_EQ(D("1").ToDouble(-400), 0.0);
    EXPECT_EQ(D("-1").ToDouble(400), -HUGE_VAL);
    EXPECT_EQ(D("0.0000000000000000000000000001").ToDouble(0),
              D("0.0000000000000000000000000001").ToDouble());
    EXPECT_EQ(Decimal().ToDouble(5), 0.0);

    EXPECT_EQ(D("0.00123").LeadingPower(), -3);
    EXPECT_EQ(D("-99.5").LeadingPower(), 1);
    EXPECT_EQ(D("0.00123").Normalized(), D("1.23"));
    EXPECT_EQ(D("-99.5").Normalized(), D("-9.95"));
    EXPECT_EQ(kMax.Normalized().ToText(), "7.9228162514264337593543950335");
    EXPECT_EQ(kMax.LeadingPower(), 28);
    EXPECT_EQ(D("0.0000000000000000000000000001").LeadingPower(), -28);
    EXPECT_TRUE(Decimal().Normalized().IsZero());
}
