#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>

#include "frame/Module.h"
#include "frame/TextFile.h"
#include "innovation/ModelFiles.h"
#include "innovation/VARIR2.h"
#include "platform/EventPump.h"
#include "support/TestModule.h"

namespace lorvane {
namespace {

using test::Ctl;
using test::FirstOrderModel;
using test::HandModel;
using test::ReadFile;

// Sets up the shared fields of the hand-made VAR(1) of two variables (T = 50, an intercept)
// and writes its files.
void PrepareModel(Module& module, const HandModel& hand = FirstOrderModel()) {
    module.store().SelectedNames.Assign({" x", "y "});
    module.p = hand.p;
    module.SampleFirst = 1;
    module.SampleLast = static_cast<int>(hand.T) + hand.p;
    module.Intercept = 1;
    module.Trend = 0;
    module.Seasonal = 0;
    module.SetChebishevOn(0);
    test::WriteModelFiles(module, hand);
}

class VARIR2Screen : public ::testing::Test {
protected:
    void Open(const HandModel& hand = FirstOrderModel()) {
        PrepareModel(module(), hand);
        module().Run([this] { module().GoToScreen("VARIR2"); });
        ASSERT_EQ(module().CurrentScreen, "VARIR2");
    }
    Module& module() { return test.module(); }
    Control& Of(const char* name) { return Ctl(module(), "VARIR2", name); }
    VARIR2& Screen() { return dynamic_cast<VARIR2&>(*module().LoadedScreen("VARIR2")); }
    std::string Failure() { return module().Failure() ? module().Failure()->MessageText() : ""; }

    test::TestModule test;
};

TEST_F(VARIR2Screen, LoadAndHorizonButtons) {
    Open();
    EXPECT_EQ(Of("Label0").Caption, " Nonstructural VAR innovation responses with standard errors");
    EXPECT_EQ(Of("Label1").Caption, "Innovation response horizon = 10");
    EXPECT_EQ(Of("Text2").Caption,
              "Adjust the innovation response horizon and click the 'Start' button");
    EXPECT_FALSE(Of("Command3").Visible);
    EXPECT_FALSE(Of("Check1").Visible);
    for (int i = 0; i < 3; ++i) {
        module().Click("VARIR2", "Command4");
    }
    EXPECT_EQ(Of("Label1").Caption, "Innovation response horizon = 10");
    module().Click("VARIR2", "Command5");
    module().Click("VARIR2", "Command5");
    module().Click("VARIR2", "Command4");
    EXPECT_EQ(Of("Label1").Caption, "Innovation response horizon = 11");
    module().InnovationHorizon = 32767;
    module().Click("VARIR2", "Command5");
    EXPECT_EQ(Of("Label1").Caption, "Innovation response horizon = 10");
    EXPECT_FALSE(module().Ended());

    // A free element above the diagonal of L makes the model structural.
    HandModel structural = FirstOrderModel();
    structural.LPattern = test::MatrixOf({{1, 1}, {0, 1}});
    Open(structural);
    EXPECT_EQ(Of("Label0").Caption, " Structural VAR innovation responses with standard errors");
}

TEST_F(VARIR2Screen, StartRunsOncePerVisit) {
    Open();
    module().Click("VARIR2", "Command5");
    module().Click("VARIR2", "Command1");
    ASSERT_FALSE(module().Ended()) << Failure();
    EXPECT_EQ(Of("Label0").Caption, " Innovation responses with standard errors ");
    EXPECT_FALSE(Of("Command1").Enabled);
    EXPECT_FALSE(Of("Command4").Visible);
    EXPECT_FALSE(Of("Command5").Visible);
    EXPECT_TRUE(Of("Command3").Visible);
    EXPECT_TRUE(Of("Check1").Visible);
    const std::string text = Of("Text2").Caption;
    EXPECT_TRUE(text.starts_with(
        "The standard errors of the innovation responses are computed according to\r\n"));
    // The names are trimmed.
    EXPECT_NE(text.find("\r\nResponse of x to a unit shock in y\r\n"), std::string::npos);
    const std::vector<std::string> file = ReadLines(module().DataFile("VARIR2.TMP"));
    ASSERT_EQ(file.size(), 1u + 4 * (2 + 12));
    EXPECT_EQ(file[0], "11,2");
    ASSERT_TRUE(file[4].starts_with("0.55,"));
    EXPECT_NEAR(std::stod(file[4].substr(5)), std::sqrt(0.1895 / 50), 1e-12);
    EXPECT_EQ(ReadLines(module().DataFile("VARDECOMP.TMP")).at(9), "\"   0 100   0\"");

    // A second press does nothing.
    test::WriteFile(module().DataFile("VARIR2.TMP"), "");
    module().Click("VARIR2", "Command1");
    EXPECT_EQ(ReadFile(module().DataFile("VARIR2.TMP")), "");

    // "Store output" starts ticked; Continue with it unticked leaves the log alone, and missing
    // plot files are no failure. The next screen shows the decomposition, its box ticked too.
    Control& store = Ctl(module(), "VARIR2", "Check1");
    EXPECT_EQ(store.Value, 1);
    store.Value = 0;
    module().Click("VARIR2", "Command3");
    ASSERT_EQ(module().CurrentScreen, "VARDECOMP");
    EXPECT_FALSE(std::filesystem::exists(module().DataFile("OUTPUT.TXT")));
    EXPECT_FALSE(std::filesystem::exists(module().DataFile("NOIRPLOT.TMP")));
    const std::string table = Ctl(module(), "VARDECOMP", "Text1").Caption;
    EXPECT_TRUE(
        table.starts_with("Forecast error variance decomposition of\r\nx\r\nColumn 1: Horizon\r\n"
                          "Column 2: Contribution (%) of the innovation in\r\n          x\r\n"));
    EXPECT_NE(table.find("\r\n   1   2   3\r\n------------\r\n   0 100   0\r\n"),
              std::string::npos);
    Control& written = Ctl(module(), "VARDECOMP", "Check1");
    EXPECT_EQ(written.Value, 1);
    written.Value = 0;
    // The plots read the responses that the second press above emptied.
    module().Click("VARDECOMP", "Command1");
    ASSERT_TRUE(module().Failure().has_value());
    EXPECT_EQ(module().Failure()->Number(), InputPastEndOfFile);
    EXPECT_FALSE(std::filesystem::exists(module().DataFile("OUTPUT.TXT")));
}

TEST_F(VARIR2Screen, FullTextBoxWarnsAndTheLogGetsEverything) {
    Open();
    module().InnovationHorizon = 200;
    test.dialogs().QueueAnswer("OK");
    module().Click("VARIR2", "Command1");
    ASSERT_FALSE(module().Ended()) << Failure();
    ASSERT_EQ(test.dialogs().Shown().size(), 1u);
    EXPECT_EQ(test.dialogs().Shown()[0], "[box] Warning | The text box is full. Not all the "
                                         "results can be displayed! However, if you check "
                                         "\"Store output\" the complete results will be written to "
                                         "the output file OUTPUT.TXT. -> OK");
    EXPECT_EQ(Of("Label0").Caption, " Innovation responses with standard errors (incomplete)");
    EXPECT_TRUE(Of("Check1").Visible);
    EXPECT_TRUE(Of("Command3").Visible);

    Of("Check1").Value = 1;
    module().Click("VARIR2", "Command3");
    const std::string log = ReadFile(module().DataFile("OUTPUT.TXT"));
    EXPECT_GT(log.size(), Control::TextLimit);
    EXPECT_TRUE(log.starts_with("\r\nThe standard errors"));
    EXPECT_NE(log.find("\r\n 200    "), std::string::npos);
}

TEST_F(VARIR2Screen, ParameterFileWithoutTheVarianceOfL) {
    // When FIML failed the parameter file ends with the coefficients' variance: L comes from
    // VARL.TMP and only the coefficients make the standard errors.
    Open();
    TextOutput out(module().DataFile("WALDT.TMP"), TextOutput::Mode::Output);
    out.WriteRecord(CommaRecord().Whole(50).Whole(6));
    for (int c = 1; c <= 6; ++c) {
        out.WriteRecord(CommaRecord().Text("row"));
    }
    const std::vector<double> coefficients = {0.5, 0.1, 7, 0.2, 0.3, 8};
    for (const double b : coefficients) {
        out.WriteRecord(CommaRecord().Number(b));
    }
    for (int r = 1; r <= 6; ++r) {
        for (int c = 1; c <= 6; ++c) {
            out.WriteRecord(CommaRecord().Number(r == c ? 0.25 : 0.0));
        }
    }
    out.Close();
    module().Click("VARIR2", "Command1");
    ASSERT_FALSE(module().Failure().has_value());
    TextInput responses(module().DataFile("VARIR2.TMP"));
    responses.ReadLine();
    responses.ReadLine();
    responses.ReadLine();
    // Horizon 0 of the first response: L(1,1) of VARL.TMP, with no standard error.
    EXPECT_EQ(responses.ReadNumber(), 1.0);
    EXPECT_EQ(responses.ReadNumber(), 0.0);
    // Horizon 1: A(1)(1,1) L(1,1) + A(1)(1,2) L(2,1), its error from the two coefficients:
    // sqrt((L(1,1)^2 + L(2,1)^2) 0.25 / 50).
    EXPECT_NEAR(responses.ReadNumber(), 0.5 + 0.1 * 0.5, 1e-12);
    EXPECT_NEAR(responses.ReadNumber(), std::sqrt(1.25 * 0.25 / 50), 1e-9);
}

// A pump that runs a callback at every pause of the computation, and a clock that moves on a
// quarter of a second at each reading.
class CallbackPump : public EventPump {
public:
    std::function<void()> onYield;
    void yield() override {
        if (onYield) {
            onYield();
        }
    }
};

class MovingClock : public Clock {
public:
    mutable double seconds = 3600;
    double secondsSinceMidnight() const override { return seconds += 0.25; }
    CivilDate today() const override { return {2026, 11, 22}; }
};

class PausedScreen : public ::testing::Test {
protected:
    PausedScreen() {
        module.StartFolder = temp.Path() / "start";
        module.WorkFolder = temp.Path() / "work";
        module.DataFolder = temp.Path() / "data";
        std::filesystem::create_directories(module.DataSubfolder());
        std::filesystem::create_directories(module.WorkFolder);
        PrepareModel(module);
        module.Run([this] { module.GoToScreen("VARIR2"); });
    }

    test::TempFolder temp;
    ScriptedDialogs dialogs;
    CallbackPump events;
    MovingClock clock;
    ClassicRandom random;
    HeadlessProcesses processes;
    HeadlessScreens screens;
    Module module{Platform{dialogs, events, clock, random, processes, screens, nullptr}};
};

TEST_F(PausedScreen, StatusShowsStageAndWorkingTimeAndBackDropsTheWork) {
    std::vector<std::string> shown;
    events.onYield = [&] {
        Screen* screen = module.LoadedScreen("VARIR2");
        if (screen == nullptr) {
            return;
        }
        const std::string status = (*screen)("Label0").Caption;
        if (shown.empty() || shown.back() != status) {
            shown.push_back(status);
        }
        // The seconds count from the press of Start, through all stages.
        if (status.starts_with(" Making standard errors. Working time ") &&
            std::stoi(status.substr(38)) > 1) {
            module.Click("VARIR2", "Command2");
        }
    };
    module.Click("VARIR2", "Command1");
    ASSERT_FALSE(module.Ended());
    ASSERT_GE(shown.size(), 5u);
    EXPECT_EQ(shown[0], " Reading data");
    EXPECT_EQ(shown[1], " Reading data. Working time 0");
    EXPECT_NE(std::find(shown.begin(), shown.end(), " Making innovation responses"), shown.end());
    EXPECT_EQ(shown.back().substr(0, 38), " Making standard errors. Working time ");
    EXPECT_EQ(module.CurrentScreen, "VARSTR1");
    EXPECT_FALSE(std::filesystem::exists(module.DataFile("VARIR2.TMP")));
}

} // namespace
} // namespace lorvane
