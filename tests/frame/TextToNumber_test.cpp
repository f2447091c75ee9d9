#include <gtest/gtest.h>

#include "frame/ModuleEnded.h"
#include "frame/TextToNumber.h"
#include "support/TestModule.h"

using namespace lorvane;
using lorvane::test::TestModule;

TEST(ParseNumberText, CommaOrPointAsDecimalMarkWithExponent) {
    EXPECT_EQ(ParseNumberText("1,5E2"), 150);
    EXPECT_EQ(ParseNumberText("1.5e-2"), 0.015);
    EXPECT_EQ(ParseNumberText(" 2,25 "), 2.25);
    EXPECT_EQ(ParseNumberText("-0.125"), -0.125);
    EXPECT_EQ(ParseNumberText("3E2"), 300);
    EXPECT_EQ(ParseNumberText("12-3"), 12);
    EXPECT_EQ(ParseNumberText(""), 0);
    EXPECT_EQ(ParseNumberText("   "), 0);
    EXPECT_EQ(ParseNumberText("1,"), 1);
    EXPECT_EQ(ParseNumberText(".5"), 0.5);
}

TEST(ParseNumberText, RefusesBothMarksAndForeignCharacters) {
    EXPECT_FALSE(ParseNumberText("1.234,5"));
    // A second mark of the same kind is no thousands separator, nor anything else.
    EXPECT_FALSE(ParseNumberText("1.2.3"));
    EXPECT_FALSE(ParseNumberText("1,2,3E1"));
    EXPECT_FALSE(ParseNumberText(".."));
    EXPECT_FALSE(ParseNumberText("12a"));
    EXPECT_FALSE(ParseNumberText("1 000"));
    EXPECT_FALSE(ParseNumberText("$5"));
}

TEST(TextToNumber, InvalidTextIsAskedAgainUntilItReads) {
    TestModule test;
    test.dialogs().QueueAnswer("Retry");
    test.dialogs().QueueInput("1.2.3x");
    test.dialogs().QueueAnswer("Retry");
    test.dialogs().QueueInput("2,5");
    EXPECT_EQ(TextToNumber(test.module(), "1.234,5"), 2.5);
    ASSERT_EQ(test.dialogs().Shown().size(), 4u);
    EXPECT_EQ(test.dialogs().Shown()[0], "[box] Error in reading text as number | Text "
                                         "string\\n1.234,5\\nis not a valid number! -> Retry");
    EXPECT_EQ(test.dialogs().Shown()[1],
              "[input] Error in reading text as number | Text string\\n1.234,5\\nis not a "
              "valid number! Try again.  -> \"1.2.3x\"");
    EXPECT_EQ(test.dialogs().Shown()[2], "[box] Error in reading text as number | Text "
                                         "string\\n1.2.3x\\nis not a valid number! -> Retry");
}

TEST(TextToNumber, CancelEndsTheModuleAndHandsBackToTheMainProgram) {
    TestModule test;
    test::WriteFile(test.module().WorkFolder / "ACTIVEMODULE.TXT", "\"VAR\"\r\n");
    test.dialogs().QueueAnswer("Cancel");
    EXPECT_THROW(TextToNumber(test.module(), "abc"), ModuleEnded);
    EXPECT_FALSE(std::filesystem::exists(test.module().WorkFolder / "ACTIVEMODULE.TXT"));
    ASSERT_EQ(test.processes().Requests().size(), 1u);
    EXPECT_NE(test.processes().Requests()[0].find("lorvane"), std::string::npos);
}
