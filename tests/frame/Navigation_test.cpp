#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

#include "frame/ModuleEnded.h"
#include "support/TestModule.h"
#include "support/TestScreens.h"

using namespace lorvane;
using lorvane::test::ProbeScreen;
using lorvane::test::ProbeTable;
using lorvane::test::ReadFile;
using lorvane::test::TestModule;
using lorvane::test::WriteFile;

namespace {

class NavigationTest : public ::testing::Test {
protected:
    NavigationTest() {
        module().UseScreenTable(ProbeTable({"SelVar1", "SelObs", "SELSS1", "VARSTR2"}));
        ProbeScreen::Events().clear();
    }
    Module& module() { return test.module(); }
    std::vector<std::string>& events() { return ProbeScreen::Events(); }

    TestModule test;
};

// A screen whose button leaves for another screen and then goes on using its own state.
class LeavingScreen : public Screen {
public:
    explicit LeavingScreen(Module& module) : Screen(module, "Leaving", "") {
        Add(ControlKind::Button, "Command1", "Go", 0, 0, 1000, 300);
    }
    void Click(Control& control) override {
        module.GoToScreen("SelObs");
        control.Caption = "gone";
        count_ += 1;
    }

private:
    int count_ = 0;
};

// A screen with results on it that the log does not hold, and a default button.
class WorkingScreen : public Screen {
public:
    explicit WorkingScreen(Module& module) : Screen(module, "Working", "") {
        Add(ControlKind::TextBox, "Text1", "", 0, 0, 1000, 300);
        Add(ControlKind::Button, "Command1", "Start", 0, 400, 1000, 300);
        SetDefault("Command1");
    }
    std::string UnloggedWork() const override { return work; }
    std::string work;
};

// The screen "Working" and probe screens of the given names.
Module::ScreenMaker WithWorkingScreen(std::vector<std::string> probes) {
    return
        [probes = std::move(probes)](Module& m, std::string_view name) -> std::unique_ptr<Screen> {
            if (name == "Working") {
                return std::make_unique<WorkingScreen>(m);
            }
            return ProbeTable(probes)(m, name);
        };
}

} // namespace

TEST_F(NavigationTest, DiscardingUnloggedResultsIsAskedAndNeverTheDefault) {
    module().UseScreenTable(WithWorkingScreen({"SELSS1"}));
    module().GoToScreen("Working");
    auto& working = static_cast<WorkingScreen&>(*module().LoadedScreen("Working"));
    // Nothing to lose: no question.
    EXPECT_TRUE(module().ConfirmDiscard());
    EXPECT_TRUE(test.dialogs().Shown().empty());

    // Results on a screen below a pinned one count as well.
    working.work = "The estimation results";
    module().ShowOnTop("SELSS1");
    test.dialogs().QueueAnswer("No");
    EXPECT_FALSE(module().ConfirmDiscard());
    test.dialogs().QueueAnswer("Yes");
    EXPECT_TRUE(module().ConfirmDiscard());
    const MessageBoxRequest& asked = test.dialogs().LastMessage();
    EXPECT_EQ(asked.text, "The estimation results are not in the output file OUTPUT.TXT yet. "
                          "Discard them?");
    EXPECT_EQ(asked.buttons, (std::vector<std::string>{"Yes", "No"}));
    EXPECT_EQ(asked.defaultButton, 1u);
}

TEST_F(NavigationTest, AScreenThatSendsTheFocusNowhereGivesItToItsDefaultButton) {
    module().UseScreenTable(WithWorkingScreen({"SelVar1"}));
    module().GoToScreen("Working");
    EXPECT_EQ(module().LoadedScreen("Working")->Focus(), "Command1");
    module().ShowOnTop("Working");
    EXPECT_EQ(module().LoadedScreen("Working")->Focus(), "Command1");
    // A screen without a default button keeps the focus where the front end has it.
    module().GoToScreen("SelVar1");
    EXPECT_EQ(module().LoadedScreen("SelVar1")->FocusRequests(), 0);
}

TEST_F(NavigationTest, TheFramesTitleOfAStageLastsUntilTheNextScreenFillsTheFrame) {
    module().FrameCaption = "Lorvane International (Module VAR)";
    module().GoToScreen("SelVar1");
    module().Caption = " Nonstructural VAR versus structural VAR";
    module().ShowOnTop("VARSTR2");
    EXPECT_EQ(module().Caption, " Nonstructural VAR versus structural VAR");
    module().GoToScreen("SelObs");
    EXPECT_EQ(module().Caption, "Lorvane International (Module VAR)");
}

TEST_F(NavigationTest, GoToScreenReplacesEverythingAndActivatesOnce) {
    module().GoToScreen("SelVar1");
    module().ShowOnTop("SELSS1");
    module().GoToScreen("SELOBS");
    EXPECT_EQ(module().CurrentScreen, "SELOBS");
    EXPECT_EQ(module().PreviousScreen, "SelVar1");
    EXPECT_EQ(module().PinnedScreen2, "");
    EXPECT_EQ(module().TimerInterval, 2000);
    ASSERT_EQ(module().LoadedScreens().size(), 1u);
    const Screen& screen = *module().LoadedScreens()[0];
    EXPECT_TRUE(screen.Visible);
    EXPECT_EQ(screen.Width, 9600);
    EXPECT_EQ(screen.Height, 7200);
    EXPECT_EQ(events(),
              (std::vector<std::string>{"SELVAR1 load", "SELVAR1 activate 1", "SELSS1 load",
                                        "SELSS1 activate 1", "SELSS1 unload", "SELVAR1 unload",
                                        "SELOBS load", "SELOBS activate 1"}));
    // The table is matched in upper case: "SelObs" is the screen SELOBS.
    EXPECT_EQ(module().LoadedScreen("SelObs"), module().LoadedScreen("SELOBS"));
}

TEST_F(NavigationTest, PinnedScreenIsCentredReopenedAfreshAndKeptInPlace) {
    module().GoToScreen("SelVar1");
    module().ShowOnTop("SELSS1");
    Screen& pinned = *module().LoadedScreen("SELSS1");
    EXPECT_EQ(module().PinnedScreen2, "SELSS1");
    EXPECT_EQ(pinned.Left, 0);
    EXPECT_EQ(pinned.Top, 0);

    pinned.Width = 4000;
    pinned.Height = 3000;
    module().ShowOnTop("SELSS1");
    Screen& again = *module().LoadedScreen("SELSS1");
    EXPECT_EQ(module().ActivateCount, 1);
    EXPECT_EQ(events().back(), "SELSS1 activate 1");
    EXPECT_EQ(std::count(events().begin(), events().end(), "SELSS1 load"), 2);

    again.Left = 1234;
    again.Top = 99;
    module().FrameTick();
    EXPECT_EQ(again.Left, module().PinnedLeft);
    EXPECT_EQ(again.Top, module().PinnedTop);

    // Closing the pinned screen makes the screen beneath active again.
    module().PinnedScreen2.clear();
    module().UnloadScreen("SELSS1");
    EXPECT_EQ(events().back(), "SELVAR1 activate 2");
}

TEST_F(NavigationTest, FullOnTopTakesTheFrameSize) {
    module().GoToScreen("SelVar1");
    module().ShowFullOnTop("VARSTR2");
    const Screen& screen = *module().LoadedScreen("VARSTR2");
    EXPECT_EQ(screen.Width, module().FrameClientWidth);
    EXPECT_EQ(screen.Left, 0);
    EXPECT_EQ(module().PinnedScreen2, "VARSTR2");
}

TEST_F(NavigationTest, AHandlerMayGoOnAfterLeavingItsScreen) {
    module().UseScreenTable([](Module& m, std::string_view name) -> std::unique_ptr<Screen> {
        if (name == "Leaving") {
            return std::make_unique<LeavingScreen>(m);
        }
        return ProbeTable({"SelObs"})(m, name);
    });
    module().GoToScreen("Leaving");
    module().Click("Leaving", "Command1");
    EXPECT_EQ(module().CurrentScreen, "SelObs");
    EXPECT_FALSE(module().Ended());
}

TEST_F(NavigationTest, StartAgainWipesWorkFilesOnly) {
    const auto folder = module().DataSubfolder();
    for (const char* name :
         {"VARZERO.TMP", "route.tmp", "OUTPUT.TXT", "INPUT1.RAN", "INPUT2.RAN", "OUTPUT.TMP"}) {
        WriteFile(folder / name, "x\r\n");
    }
    module().Intercept = 0;
    module().Trend = 1;
    module().p = 4;
    module().StructVisits = 2;
    module().SetChebishevOn(1);
    module().GoToScreen("SELOBS");
    module().StartAgain();
    EXPECT_EQ(module().CurrentScreen, "SelVar1");
    EXPECT_FALSE(std::filesystem::exists(folder / "VARZERO.TMP"));
    EXPECT_FALSE(std::filesystem::exists(folder / "route.tmp"));
    EXPECT_FALSE(std::filesystem::exists(folder / "OUTPUT.TMP"));
    EXPECT_FALSE(std::filesystem::exists(folder / "TMP.TMP"));
    EXPECT_EQ(ReadFile(folder / "OUTPUT.TXT"), "x\r\n");
    EXPECT_TRUE(std::filesystem::exists(folder / "INPUT1.RAN"));
    EXPECT_TRUE(std::filesystem::exists(folder / "INPUT2.RAN"));
    EXPECT_EQ(module().Intercept, 1);
    EXPECT_EQ(module().Trend, 0);
    EXPECT_EQ(module().p, 1);
    EXPECT_EQ(module().StructVisits, 0);
    EXPECT_EQ(module().ChebishevOn(), 0);
    // With no work file at all it still goes through.
    module().StartAgain();
    EXPECT_EQ(module().CurrentScreen, "SelVar1");
}

TEST_F(NavigationTest, ModuleEndHandsBackToTheMainProgram) {
    const auto active = module().WorkFolder / "ACTIVEMODULE.TXT";
    WriteFile(active, "\"VAR\"\r\n");
    module().Run([&] { module().ModuleEnd(); });
    EXPECT_TRUE(module().Ended());
    EXPECT_FALSE(module().Failure());
    EXPECT_FALSE(std::filesystem::exists(active));
    ASSERT_EQ(test.processes().Requests().size(), 1u);
    EXPECT_EQ(test.processes().Requests()[0], "[start] \"" +
                                                  (module().StartFolder / "lorvane").string() +
                                                  "\" " + module().WorkFolder.string());
    // Nothing runs after the end.
    module().Run([&] { module().GoToScreen("SelVar1"); });
    EXPECT_EQ(module().CurrentScreen, "");
}

TEST_F(NavigationTest, ModuleEndOfATestRunStartsNothing) {
    module().TestRun = 1;
    module().Run([&] { module().ModuleEnd(); });
    EXPECT_TRUE(module().Ended());
    EXPECT_TRUE(test.processes().Requests().empty());
}

TEST_F(NavigationTest, AnUncaughtRunTimeErrorEndsTheModule) {
    const auto active = module().WorkFolder / "ACTIVEMODULE.TXT";
    WriteFile(active, "\"VAR\"\r\n");
    module().Run([&] { module().GoToScreen("NoSuchScreen"); });
    ASSERT_TRUE(module().Failure());
    EXPECT_EQ(module().Failure()->Number(), 91);
    EXPECT_TRUE(module().Ended());
    EXPECT_FALSE(std::filesystem::exists(active));
    EXPECT_TRUE(test.processes().Requests().empty());
}

TEST_F(NavigationTest, AStandardExceptionEndsTheModuleAsARunTimeError) {
    // An allocation that fails, or a size no container can hold, is "Out of memory"; any other
    // standard exception an internal error. The module ends in order instead of aborting.
    const std::vector<std::pair<std::function<void()>, int>> cases = {
        {[] { throw std::bad_alloc(); }, OutOfMemory},
        {[] { std::vector<double>(static_cast<std::size_t>(-1) / 4); }, OutOfMemory},
        {[] { throw std::out_of_range("at"); }, SubscriptOutOfRange},
        {[] { throw std::logic_error("other"); }, InternalError},
        {[] { Raise(DivisionByZero); }, DivisionByZero}};
    for (const auto& [action, number] : cases) {
        TestModule fresh;
        WriteFile(fresh.module().WorkFile("ACTIVEMODULE.TXT"), "VAR\r\n");
        fresh.module().Run(action);
        EXPECT_TRUE(fresh.module().Ended());
        ASSERT_TRUE(fresh.module().Failure().has_value());
        EXPECT_EQ(fresh.module().Failure()->Number(), number);
        EXPECT_FALSE(std::filesystem::exists(fresh.module().WorkFile("ACTIVEMODULE.TXT")));
    }
    EXPECT_EQ(RuntimeError::Of(OutOfMemory).MessageText(),
              "Run-time error '7':\r\n\r\nOut of memory");
}
