#include <gtest/gtest.h>

#include "dialogs/GuidedTour.h"
#include "frame/NumberText.h"
#include "frame/Startup.h"
#include "support/TestModule.h"
#include "support/TestScreens.h"

using namespace lorvane;
using lorvane::test::Ctl;
using lorvane::test::ReadFile;
using lorvane::test::TestModule;
using lorvane::test::WriteFile;

namespace {

class GuidedTourTest : public ::testing::Test {
protected:
    void Start() {
        Module& module = test.module();
        const auto table = test::ProbeTable({"SelVar1"});
        module.UseScreenTable([table](Module& m, std::string_view name) -> std::unique_ptr<Screen> {
            if (UpperCase(name) == "GUIDEDTOUR") {
                return std::make_unique<GuidedTour>(m);
            }
            return table(m, name);
        });
        module.Run(
            [&] { ModuleEntry(module, (test.Root() / "work").string(), test.Root() / "start"); });
    }
    std::filesystem::path StartFile(const char* name) const { return test.Root() / "start" / name; }

    TestModule test;
};

} // namespace

TEST_F(GuidedTourTest, NoPageNoTour) {
    Start();
    EXPECT_EQ(test.module().TourStatus, 0);
    EXPECT_EQ(test.module().LoadedScreen("GuidedTour"), nullptr);
    EXPECT_EQ(test.module().CurrentScreen, "SelVar1");
}

TEST_F(GuidedTourTest, AnOfflinePageIsOfferedAboveTheFirstScreen) {
    WriteFile(StartFile("VAR.HTM"), "<html></html>");
    Start();
    Module& module = test.module();
    EXPECT_EQ(module.TourStatus, 1);
    EXPECT_EQ(module.PinnedScreen2, "GuidedTour");
    const std::string text = Ctl(module, "GuidedTour", "Label1").Caption;
    EXPECT_NE(text.find("available offline at\r\n" + StartFile("VAR.HTM").string() +
                        "\r\nand online at\r\nhttps://lorvane.example/LorvaneTours/VAR.HTM"),
              std::string::npos);
    EXPECT_TRUE(Ctl(module, "GuidedTour", "Check1").Visible);

    module.Click("GuidedTour", "Command2");
    EXPECT_EQ(test.processes().Requests().back(), "[open] " + StartFile("VAR.HTM").string());
    EXPECT_EQ(Ctl(module, "GuidedTour", "Command2").Caption, "Oops");
    EXPECT_EQ(Ctl(module, "GuidedTour", "Command3").Caption, "Cancel");
    Ctl(module, "GuidedTour", "Check1").Value = 1;
    module.Click("GuidedTour", "Command2");
    EXPECT_EQ(test.processes().Requests().back(),
              "[open] https://lorvane.example/LorvaneTours/VAR.HTM");

    module.Click("GuidedTour", "Command3");
    EXPECT_EQ(module.LoadedScreen("GuidedTour"), nullptr);
    EXPECT_EQ(module.PinnedScreen2, "");
}

TEST_F(GuidedTourTest, TheListNamesOnlinePagesOnEveryOtherLine) {
    // The line after a page name is skipped: "VAR.HTM" there does not count.
    WriteFile(StartFile("TOURSLIST.TXT"), "\"OTHER.HTM\"\r\nVAR.HTM\r\n\"var.htm\"\r\nremark\r\n");
    Start();
    EXPECT_EQ(test.module().TourStatus, 2);
    EXPECT_NE(
        Ctl(test.module(), "GuidedTour", "Label1").Caption.find("available online only, at\r\n"),
        std::string::npos);

    TestModule other;
    WriteFile(other.Root() / "start" / "TOURSLIST.TXT", "\"OTHER.HTM\"\r\nVAR.HTM\r\n");
    other.module().UseScreenTable(test::ProbeTable({"SelVar1"}));
    other.module().Run([&] {
        ModuleEntry(other.module(), (other.Root() / "work").string(), other.Root() / "start");
    });
    EXPECT_EQ(other.module().TourStatus, 0);
}

TEST_F(GuidedTourTest, NeverLeavesAMarkerThatSilencesTheOffer) {
    WriteFile(StartFile("VAR.HTM"), "<html></html>");
    Start();
    test.module().Click("GuidedTour", "Command1");
    EXPECT_EQ(ReadFile(test.Root() / "work" / "VAR.NOT"),
              "\" does not want to see the message regarding guided tour VAR\"\r\n");
    EXPECT_EQ(test.module().LoadedScreen("GuidedTour"), nullptr);
    TourTest(test.module());
    EXPECT_EQ(test.module().TourStatus, 0);
}
