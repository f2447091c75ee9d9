#include <gtest/gtest.h>

#include <sstream>

#include "frame/ObsLabel.h"
#include "frame/ScriptDriver.h"
#include "frame/Startup.h"
#include "frame/TextFile.h"
#include "support/Errors.h"
#include "support/TestModule.h"
#include "support/TestScreens.h"

using namespace lorvane;
using lorvane::test::ErrorNumberOf;
using lorvane::test::ProbeScreen;
using lorvane::test::ProbeTable;
using lorvane::test::TempFolder;
using lorvane::test::TestModule;
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

namespace {

class ScriptDriverRegression : public ::testing::Test {
protected:
    ScriptDriverRegression() { ProbeScreen::Events().clear(); }

    int Run(const std::string& script) {
        test.module().UseScreenTable(ProbeTable({"SelVar1"}));
        ScriptDriver driver(test.module(), test.dialogs(), out, errors, [this] {
            ModuleEntry(test.module(), (test.Root() / "work").string(), test.Root() / "start");
        });
        std::istringstream in(script);
        return driver.Run(in);
    }

    TestModule test;
    std::ostringstream out;
    std::ostringstream errors;
};

} // namespace

// The pointer's coordinates were checked with one number reader and read with another, which
// threw on a tiny number the first had taken, and the driver died of the uncaught exception.
// Every number the check takes is now used as it was read; a coordinate that is not a finite
// number is a bad line.
TEST_F(ScriptDriverRegression, PointerCoordinatesAreReadAsChecked) {
    EXPECT_EQ(Run("mouse SelVar1.List1 1e-310 -4.9e-324\n"), ScriptDriver::Done) << errors.str();
    for (const char* coordinates : {"nan 0", "0 inf", "1e999 0"}) {
        errors.str("");
        EXPECT_EQ(Run(std::string("mouse SelVar1.List1 ") + coordinates + "\n"),
                  ScriptDriver::BadLine)
            << coordinates;
        EXPECT_EQ(errors.str(), std::string("line 1: mouse takes SCREEN.CONTROL X Y: mouse "
                                            "SelVar1.List1 ") +
                                    coordinates + "\n");
    }
}

// An item number beyond the range of int was narrowed before the check and could name an item
// that exists (2^32 + 1 became item 1).
TEST_F(ScriptDriverRegression, HugeItemNumbersNameNoItem) {
    EXPECT_EQ(Run("dblclick SelVar1.List1 4294967297\n"), ScriptDriver::ExpectFailed);
    EXPECT_EQ(errors.str(), "line 1: the list SelVar1.List1 has no item 4294967297\n");
    EXPECT_TRUE(ProbeScreen::Events() ==
                std::vector<std::string>({"SELVAR1 load", "SELVAR1 activate 1"}));
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
