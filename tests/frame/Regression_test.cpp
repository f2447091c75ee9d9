#include <gtest/gtest.h>

#include "frame/ObsLabel.h"
#include "frame/TextFile.h"
#include "support/Errors.h"
#include "support/TestModule.h"

using namespace lorvane;
using lorvane::test::ErrorNumberOf;
using lorvane::test::TempFolder;
using lorvane::test::WriteFile;

// A damaged work file with "nan" or "inf" where a number belongs: the standard number reader
// takes these words, but the comma form never holds them, and a NaN read from a work file went
// on into the estimates. Each such field is a type mismatch like any other word; the fields
// around it read as before.
TEST(CommaFormRegression, WordsForNonFiniteValuesAreNotNumbers) {
    TempFolder temp;
    const auto file = temp.Path() / "VARL.TMP";
    WriteFile(file, "nan,1.5,inf,-inf,INFINITY,NaN(1),-2\r\n");
    TextInput in(file);
    EXPECT_EQ(ErrorNumberOf([&] { in.ReadNumber(); }), TypeMismatch);
    EXPECT_EQ(in.ReadNumber(), 1.5);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(ErrorNumberOf([&] { in.ReadNumber(); }), TypeMismatch) << i;
    }
    EXPECT_EQ(in.ReadWhole(), -2);
    EXPECT_TRUE(in.AtEnd());
}

// A damaged INPUT1.RAN with 0 periods a year: the date text of an observation after the first
// year divided by zero in whole numbers and the process died of the signal. The division of the
// year fails first now, as a run-time error (0 / 0 is an overflow); the first year's labels
// need no division and stay as they were.
TEST(ObsLabelRegression, NoPeriodsAYearIsARunTimeError) {
    EXPECT_EQ(ObsLabel(1, 2, 1990, 0, 0, 5), "1990.0");
    EXPECT_EQ(ErrorNumberOf([] { ObsLabel(2, 2, 1990, 0, 0, 5); }), Overflow);
    EXPECT_EQ(ErrorNumberOf([] { ObsLabel(3, 3, 1990, 0, 0, 5); }), DivisionByZero);
    EXPECT_EQ(ErrorNumberOf([] { ObsLabel(1, 4, 1990, 3083, 0, 5); }), DivisionByZero);
}
