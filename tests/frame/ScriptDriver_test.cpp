#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "frame/ScriptDriver.h"
#include "frame/Startup.h"
#include "platform/FileLock.h"
#include "support/TestModule.h"
#include "support/TestScreens.h"

using namespace lorvane;
using lorvane::test::ProbeScreen;
using lorvane::test::ProbeTable;
using lorvane::test::TestModule;
using lorvane::test::WriteFile;

namespace {

class ScriptDriverTest : public ::testing::Test {
protected:
    ScriptDriverTest() { ProbeScreen::Events().clear(); }

    int Run(const std::string& script, std::vector<std::string> screens = {"SelVar1", "SelObs"}) {
        test.module().UseScreenTable(ProbeTable(std::move(screens)));
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

TEST_F(ScriptDriverTest, WalksTheScreensAndChecksWhatItSees) {
    const int code = Run("# a comment\n"
                         "\n"
                         "\t \t\n"
                         "\t# a comment behind a tab\n"
                         "expect-screen SELVAR1\n"
                         "expect\tSelVar1.Command1 caption\tNext\n"
                         "expect SelVar1.Command1 enabled 1\n"
                         "expect SelVar1.List1 count 3\n"
                         "expect SelVar1.List1 item 1 \"* beta\"\n"
                         "dblclick SelVar1.List1 beta\n"
                         "dblclick SelVar1.List1 gamma\n"
                         "highlight SelVar1.List1 0 2\n"
                         "type SelVar1.Text1 two words\n"
                         "expect SelVar1.Text1 contains two\n"
                         "check SelVar1.Check1 1\n"
                         "dump SelVar1.List1\n"
                         "click SelVar1.Command1\n"
                         "expect-screen SelObs\n");
    EXPECT_EQ(code, ScriptDriver::Done) << errors.str();
    EXPECT_EQ(out.str(), "alpha\n* beta\ngamma(*)\n");
    // A highlight is a click on the list, as on the desktop.
    const std::vector<std::string> expected = {"SELVAR1 load",
                                               "SELVAR1 activate 1",
                                               "SELVAR1 dblclick List1 1",
                                               "SELVAR1 dblclick List1 2",
                                               "SELVAR1 click List1",
                                               "SELVAR1 change Text1 two words",
                                               "SELVAR1 click Check1",
                                               "SELVAR1 click Command1",
                                               "SELVAR1 unload",
                                               "SELOBS load",
                                               "SELOBS activate 1"};
    EXPECT_EQ(ProbeScreen::Events(), expected);
    // The end of the script removes ACTIVEMODULE.TXT and starts nothing.
    EXPECT_FALSE(std::filesystem::exists(test.Root() / "work" / "ACTIVEMODULE.TXT"));
    EXPECT_TRUE(test.processes().Requests().empty());
}

TEST_F(ScriptDriverTest, AFailedExpectationGivesOneWithItsLine) {
    EXPECT_EQ(Run("expect SelVar1.Command1 caption Back\n"), ScriptDriver::ExpectFailed);
    EXPECT_EQ(errors.str(), "line 1: SelVar1.Command1 caption is \"Next\", expected \"Back\"\n");
}

// An editor's byte order mark before the first line is no part of it; elsewhere it is text.
TEST_F(ScriptDriverTest, AByteOrderMarkStartsAScript) {
    EXPECT_EQ(Run("\xEF\xBB\xBF"
                  "expect-screen SelVar1\n"),
              ScriptDriver::Done)
        << errors.str();
    EXPECT_EQ(Run("expect-screen SelVar1\n\xEF\xBB\xBF"
                  "expect-screen SelVar1\n"),
              ScriptDriver::BadLine);
}

// The files of the data folder, as another program would see them: expect-file checks, remove
// deletes (in any letter case of the name, like every file of the folder).
TEST_F(ScriptDriverTest, FilesOfTheDataFolderAreCheckedAndRemoved) {
    std::filesystem::create_directories(test.Root() / "work" / "LORVANE.DAT");
    WriteFile(test.Root() / "work" / "LORVANE.DAT" / "NOTES.TXT", "1\r\n");
    EXPECT_EQ(Run("expect-file notes.txt 1\nremove NOTES.TXT\nexpect-file NOTES.TXT 0\n"
                  "expect-file NOTES.TXT 1\n"),
              ScriptDriver::ExpectFailed);
    EXPECT_EQ(errors.str(),
              "line 4: " + (std::filesystem::path("LORVANE.DAT") / "NOTES.TXT").string() +
                  " is missing\n");
}

TEST_F(ScriptDriverTest, ADisabledOrMissingThingCannotBeUsed) {
    test.module().UseScreenTable(ProbeTable({"SelVar1"}));
    EXPECT_EQ(Run("click SelObs.Command1\n"), ScriptDriver::ExpectFailed);
    EXPECT_EQ(errors.str(), "line 1: the screen SelObs is not open\n");
}

TEST_F(ScriptDriverTest, BadLinesAreRefusedBeforeAnythingRuns) {
    EXPECT_EQ(Run("click SelVar1.Command1\nfly SelVar1.Command1\n"), ScriptDriver::BadLine);
    EXPECT_EQ(errors.str(), "line 2: unknown verb fly: fly SelVar1.Command1\n");
    EXPECT_TRUE(ProbeScreen::Events().empty());
}

TEST_F(ScriptDriverTest, BadLineForms) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"click Command1", "line 1: click takes SCREEN.CONTROL: click Command1\n"},
        {"answer Maybe",
         "line 1: answer takes one of OK, Cancel, Abort, Retry, Ignore, Yes, No: answer Maybe\n"},
        {"expect SelVar1.List1 size 3",
         "line 1: unknown property size (caption, visible, enabled, count, item, "
         "contains): expect SelVar1.List1 size 3\n"},
        {"type SelVar1.Text1 \"open",
         "line 1: a quoted text has no closing quote: type SelVar1.Text1 \"open\n"},
        {"check SelVar1.Check1 2",
         "line 1: check takes SCREEN.CONTROL 0 or 1: check SelVar1.Check1 2\n"},
        {"click SelVar1.Nothing", "line 1: the screen SelVar1 has no control Nothing\n"},
        {"remove ../INPUT1.RAN",
         "line 1: remove takes the NAME of a file in the data folder: remove ../INPUT1.RAN\n"},
        {"remove ..", "line 1: remove takes the NAME of a file in the data folder: remove ..\n"},
        {"expect-file OUTPUT.TXT yes",
         "line 1: expect-file takes the NAME of a file in the data folder and 0 or 1: "
         "expect-file OUTPUT.TXT yes\n"},
    };
    for (const auto& [script, message] : cases) {
        errors.str("");
        EXPECT_EQ(Run(script + "\n"), ScriptDriver::BadLine) << script;
        EXPECT_EQ(errors.str(), message);
    }
}

// A run that ends early leaves the work folder as usable as one that ends well; the mark of
// another instance, which stopped the start, stays.
TEST_F(ScriptDriverTest, EveryEndOfARunRemovesItsActiveModuleFile) {
    const auto active = test.Root() / "work" / "ACTIVEMODULE.TXT";
    EXPECT_EQ(Run("expect-file ACTIVEMODULE.TXT 0\nexpect SelVar1.Command1 caption Back\n"),
              ScriptDriver::ExpectFailed);
    EXPECT_FALSE(std::filesystem::exists(active));
    EXPECT_EQ(Run("click SelVar1.Nothing\n"), ScriptDriver::BadLine);
    EXPECT_FALSE(std::filesystem::exists(active));
}

TEST_F(ScriptDriverTest, ABoxWithoutAnAnswerGivesThree) {
    const FileLock running(test.Root() / "work" / WorkFolderLockName);
    WriteFile(test.Root() / "work" / "ACTIVEMODULE.TXT", "\"VAR\"\r\n");
    EXPECT_EQ(Run("expect-screen SelVar1\n"), ScriptDriver::NoAnswer);
    EXPECT_EQ(test.Echo(), "[box] Error! | A previous instance of Lorvane module VAR is running! "
                           "End it first. -> ?\n");
    EXPECT_TRUE(std::filesystem::exists(test.Root() / "work" / "ACTIVEMODULE.TXT"));
}

TEST_F(ScriptDriverTest, AnswersBeforeTheFirstActionServeTheStart) {
    const FileLock running(test.Root() / "work" / WorkFolderLockName);
    WriteFile(test.Root() / "work" / "ACTIVEMODULE.TXT", "\"VAR\"\r\n");
    EXPECT_EQ(Run("answer OK\nexpect-screen SelVar1\n"), ScriptDriver::ExpectFailed);
    EXPECT_EQ(errors.str(), "line 2: the module has ended; this line and the rest were not run\n");
}

TEST_F(ScriptDriverTest, ARunTimeErrorGivesFourAndItsMessage) {
    EXPECT_EQ(Run("click SelVar1.Command1\n", {"SelVar1"}), ScriptDriver::RunTimeError);
    EXPECT_EQ(out.str(),
              "Run-time error '91':\n\nObject variable or With block variable not set\n");
}

// The pointer's coordinates were checked with one number reader and read with another, which
// threw on a tiny number the first had taken, and the driver died of the uncaught exception.
// Every number the check takes is now used as it was read; a coordinate that is not a finite
// number is a bad line.
TEST_F(ScriptDriverTest, PointerCoordinatesAreReadAsChecked) {
    EXPECT_EQ(Run("mouse SelVar1.List1 1e-310 -4.9e-324\n", {"SelVar1"}), ScriptDriver::Done)
        << errors.str();
    for (const char* coordinates : {"nan 0", "0 inf", "1e999 0"}) {
        errors.str("");
        EXPECT_EQ(Run(std::string("mouse SelVar1.List1 ") + coordinates + "\n", {"SelVar1"}),
                  ScriptDriver::BadLine)
            << coordinates;
        EXPECT_EQ(errors.str(), std::string("line 1: mouse takes SCREEN.CONTROL X Y: mouse "
                                            "SelVar1.List1 ") +
                                    coordinates + "\n");
    }
}

// An item number beyond the range of int was narrowed before the check and could name an item
// that exists (2^32 + 1 became item 1).
TEST_F(ScriptDriverTest, HugeItemNumbersNameNoItem) {
    EXPECT_EQ(Run("dblclick SelVar1.List1 4294967297\n", {"SelVar1"}), ScriptDriver::ExpectFailed);
    EXPECT_EQ(errors.str(), "line 1: the list SelVar1.List1 has no item 4294967297\n");
    EXPECT_TRUE(ProbeScreen::Events() ==
                std::vector<std::string>({"SELVAR1 load", "SELVAR1 activate 1"}));
}
