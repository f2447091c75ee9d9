#include <gtest/gtest.h>

#include "dialogs/LaunchPage.h"
#include "frame/Module.h"
#include "support/TestModule.h"

using namespace lorvane;
using lorvane::test::TempFolder;
using lorvane::test::WriteFile;

namespace {

// A desktop on which nothing opens.
class NothingOpens : public HeadlessProcesses {
public:
    bool open(const std::string& fileOrAddress) override {
        HeadlessProcesses::open(fileOrAddress);
        return false;
    }
};

class LaunchPageTest : public ::testing::Test {
protected:
    TempFolder folder;
    ScriptedDialogs dialogs;
    HeadlessEventPump events;
    test::FixedClock clock;
    ClassicRandom random;
    NothingOpens processes;
    test::SizedScreens screens;
    Module module{Platform{dialogs, events, clock, random, processes, screens}};
};

} // namespace

TEST_F(LaunchPageTest, AFailureIsToldByWhatCouldNotOpen) {
    // A page that is there but does not open has no program associated with it.
    const std::string page = (folder.Path() / "INFCRIT.PDF").string();
    WriteFile(page, "%PDF-1.4\n");
    dialogs.QueueAnswer("OK");
    EXPECT_FALSE(LaunchPage(module, page));
    EXPECT_EQ(dialogs.LastMessage().title, "Browser Unavailable");
    EXPECT_EQ(dialogs.LastMessage().text,
              "Lorvane could not find a file association for " + page +
                  " on your system. You should check that your browser is correctly installed "
                  "and associated with this type of file.");

    // A missing page, or a web address, is a problem of the browser.
    for (const std::string& address : {(folder.Path() / "MISSING.PDF").string(),
                                       std::string("https://lorvane.example/VAR.HTM")}) {
        dialogs.QueueAnswer("OK");
        EXPECT_FALSE(LaunchPage(module, address));
        EXPECT_EQ(dialogs.LastMessage().text,
                  "Lorvane had a problem running your web browser. You should check that your "
                  "browser is correctly installed.");
    }
    EXPECT_EQ(processes.Requests().size(), 3u);
}
