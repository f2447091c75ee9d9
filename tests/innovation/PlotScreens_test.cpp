// The plot screen and the dialog on printing pictures, on recording surfaces.

#include <gtest/gtest.h>

#include <filesystem>

#include "frame/NumberText.h"
#include "frame/TextFile.h"
#include "innovation/APicPrn.h"
#include "innovation/PlotFixture.h"
#include "innovation/VIRPlot2.h"

namespace lorvane {
namespace {

using test::Ctl;
using test::ReadFile;

class PlotScreen : public ::testing::Test {
protected:
    void SetUp() override { test::WriteResponses(module(), test::TwoVariableResponses()); }

    void Open() {
        module().Run([this] { module().GoToScreen("VIRPlot2"); });
        ASSERT_EQ(module().CurrentScreen, "VIRPlot2") << Failure();
    }
    Module& module() { return test.module(); }
    Control& Of(const char* name) { return Ctl(module(), "VIRPlot2", name); }
    RecordingSurface& Picture() { return dynamic_cast<RecordingSurface&>(*Of("Picture1").Drawing); }
    std::string Failure() { return module().Failure() ? module().Failure()->MessageText() : ""; }
    std::filesystem::path File(const std::string& name) { return module().DataFile(name); }
    std::vector<std::string> Drawn(const char* kind) {
        std::vector<std::string> texts;
        for (const auto& operation : Picture().OperationsOf(kind)) {
            texts.push_back(operation.text);
        }
        return texts;
    }
    // The logical x of a horizon, from the frame the drawing left in AuxList.
    double XOf(int h) {
        const double left = Val(Of("AuxList").Items.at(1));
        const double right = Val(Of("AuxList").Items.at(2));
        return left + (right - left) * h / 10;
    }

    test::PlotModule test;
};

TEST_F(PlotScreen, FirstVisitShowsTheFirstPlotAndMakesTheList) {
    Open();
    EXPECT_EQ(Of("Label0").Caption, " Plot of the innovation responses");
    EXPECT_EQ(Of("Label3").Caption, "Move the mousepointer over the picture to see the horizon. "
                                    "Double click the picture to print the horizon.");
    EXPECT_EQ(Of("List1").Items,
              (std::vector<std::string>{"Response of x to a unit shock in x (not yet saved)",
                                        "Response of x to a unit shock in y (not yet saved)",
                                        "Response of y to a unit shock in x (not yet saved)",
                                        "Response of y to a unit shock in y (not yet saved)"}));
    EXPECT_EQ(Of("List1").ListIndex, 0);
    EXPECT_TRUE(Of("Command1").Enabled);
    EXPECT_TRUE(std::filesystem::exists(File("VARIRPL.TMP")));

    // The picture has the control's size at 15 twips a pixel, and shows the first response.
    EXPECT_EQ(Picture().WidthPixels(), static_cast<int>(Of("Picture1").Width / 15));
    EXPECT_EQ(Picture().HeightPixels(), static_cast<int>(Of("Picture1").Height / 15));
    const std::vector<std::string> texts = Drawn("text");
    EXPECT_NE(std::find(texts.begin(), texts.end(), "Response of x to a unit shock in x"),
              texts.end());
    EXPECT_NE(std::find(texts.begin(), texts.end(), "2.1000E+000"), texts.end());

    // AuxList, hidden, holds H and the frame's left end, right end and top.
    const Control& aux = Of("AuxList");
    EXPECT_FALSE(aux.Visible);
    ASSERT_EQ(aux.ListCount(), 4);
    EXPECT_EQ(aux.Items[0], " 10");
    const auto box = Picture().OperationsOf("box").at(0).values;
    EXPECT_NEAR(Val(aux.Items[1]), box[0], 1e-12);
    EXPECT_NEAR(Val(aux.Items[2]), box[2], 1e-12);
    EXPECT_NEAR(Val(aux.Items[3]), box[1], 1e-12);
}

TEST_F(PlotScreen, ResponsesWithoutTheUncertaintyOfLSaySoAndHaveNoBandAtTheImpact) {
    Open();
    EXPECT_FALSE(Of("Label4").Visible);
    EXPECT_EQ(Picture().OperationsOf("dot").size(), 4u * 11);

    std::vector<test::ResponseBlock> blocks = test::TwoVariableResponses();
    for (test::ResponseBlock& block : blocks) {
        block.se[0] = 0;
    }
    test::WriteResponses(module(), blocks);
    module().GoToScreen("VIRPlot2");
    ASSERT_FALSE(module().Ended()) << Failure();
    EXPECT_TRUE(Of("Label4").Visible);
    EXPECT_EQ(Of("Label4").Caption, "The uncertainty of the estimate of L is not included: no "
                                    "FIML variance of L is available.");
    EXPECT_EQ(Picture().OperationsOf("dot").size(), 4u * 10);
}

TEST_F(PlotScreen, DoubleClickInTheListReloadsWithThatPlot) {
    Open();
    const long long first = module().LoadedScreen("VIRPlot2")->Serial();
    Ctl(module(), "VIRPlot2", "List1").ListIndex = 2;
    module().DoubleClick("VIRPlot2", "List1", 2);
    ASSERT_FALSE(module().Ended()) << Failure();
    EXPECT_EQ(ReadFile(File("NOIRPLOT.TMP")), "3\r\n");
    EXPECT_NE(module().LoadedScreen("VIRPlot2")->Serial(), first);
    EXPECT_EQ(Of("List1").ListIndex, 2);
    EXPECT_EQ(dynamic_cast<VIRPlot2&>(*module().LoadedScreen("VIRPlot2")).Plot(), 3);
    const std::vector<std::string> texts = Drawn("text");
    EXPECT_NE(std::find(texts.begin(), texts.end(), "Response of y to a unit shock in x"),
              texts.end());
    EXPECT_NE(std::find(texts.begin(), texts.end(), "-5.2500E-001"), texts.end());
}

TEST_F(PlotScreen, ThePointerShowsTheHorizonAndADoubleClickPrintsIt) {
    Open();
    module().MouseMove("VIRPlot2", "Picture1", XOf(4) + 0.004, 0.5);
    EXPECT_EQ(Of("Label0").Caption, " Mousepointer = horizon 4");
    module().MouseMove("VIRPlot2", "Picture1", 1.09, 0.2);
    EXPECT_EQ(Of("Label0").Caption, " Mousepointer = horizon 10");
    module().MouseMove("VIRPlot2", "Picture1", XOf(7) - 0.004, 0.9);
    EXPECT_EQ(Of("Label0").Caption, " Mousepointer = horizon 7");

    // The horizon is printed at the pointer's position, at the top of the frame.
    Picture().Forget();
    module().PictureDoubleClick("VIRPlot2", "Picture1");
    const auto texts = Picture().OperationsOf("text");
    ASSERT_EQ(texts.size(), 1u) << Picture().Text();
    EXPECT_EQ(texts[0].text, " 7");
    EXPECT_DOUBLE_EQ(texts[0].values[0], XOf(7) - 0.004);
    EXPECT_DOUBLE_EQ(texts[0].values[1], Val(Of("AuxList").Items[3]));

    // The mark stays when the dialog above the plot comes and goes.
    module().Click("VIRPlot2", "Command6");
    ASSERT_EQ(module().PinnedScreen2, "APicPrn");
    module().Click("APicPrn", "Command1");
    EXPECT_EQ(module().LoadedScreen("APicPrn"), nullptr);
    EXPECT_EQ(Picture().OperationsOf("text").size(), 1u);
}

TEST_F(PlotScreen, SavingNumbersTheFileLogsItAndMarksThePlot) {
    test::WriteFile(File("IRP00001.BMP"), "someone else's picture");
    Open();
    module().Click("VIRPlot2", "Command1");
    ASSERT_FALSE(module().Ended()) << Failure();
    const std::string shown = (std::filesystem::path("LORVANE.DAT") / "IRP00002.BMP").string();
    EXPECT_EQ(Of("Label0").Caption, "Plot saved as " + shown);
    EXPECT_EQ(ReadFile(File("OUTPUT.TXT")), "\r\nInsert picture file " + shown + "\r\n");
    ASSERT_EQ(Picture().OperationsOf("save").size(), 1u);
    EXPECT_EQ(ReadFile(File("IRP00002.BMP")), Picture().Text());
    EXPECT_EQ(ReadFile(File("IRP00001.BMP")), "someone else's picture");
    EXPECT_FALSE(Of("Command1").Enabled);
    EXPECT_EQ(Of("List1").Items[0], "Response of x to a unit shock in x (already saved)");
    EXPECT_EQ(Of("List1").ListIndex, 0);

    // A reload of a saved plot keeps the button off; another plot has it on.
    module().DoubleClick("VIRPlot2", "List1", 0);
    EXPECT_FALSE(Of("Command1").Enabled);
    EXPECT_EQ(Of("List1").Items[0], "Response of x to a unit shock in x (already saved)");
    module().DoubleClick("VIRPlot2", "List1", 1);
    EXPECT_TRUE(Of("Command1").Enabled);
    EXPECT_EQ(Of("List1").Items[1], "Response of x to a unit shock in y (not yet saved)");
}

// A picture cut short (a full disk) leaves neither a piece of a file nor a line naming it.
TEST_F(PlotScreen, APictureThatCannotBeWrittenIsARuntimeError) {
    Open();
    test::WriteFile(File("OUTPUT.TXT"), "kept\r\n");
    Picture().SetSaveResult(false);
    module().Click("VIRPlot2", "Command1");
    ASSERT_TRUE(module().Failure().has_value());
    EXPECT_EQ(module().Failure()->Number(), PathFileAccessError);
    EXPECT_EQ(ReadFile(File("OUTPUT.TXT")), "kept\r\n");
    for (const auto& entry : std::filesystem::directory_iterator(module().DataSubfolder())) {
        EXPECT_FALSE(entry.path().filename().string().starts_with("IRP0")) << entry.path();
    }
}

TEST_F(PlotScreen, WithoutSurfacesThePictureIsOnlyRecorded) {
    test::TestModule plain;
    test::WriteResponses(plain.module(), test::TwoVariableResponses());
    plain.module().Run([&plain] { plain.module().GoToScreen("VIRPlot2"); });
    const Control& picture = Ctl(plain.module(), "VIRPlot2", "Picture1");
    ASSERT_NE(dynamic_cast<RecordingSurface*>(picture.Drawing.get()), nullptr);
    EXPECT_FALSE(dynamic_cast<RecordingSurface&>(*picture.Drawing).OperationsOf("line").empty());
}

class PrintDialog : public PlotScreen {
protected:
    void OpenDialog() {
        Open();
        module().Click("VIRPlot2", "Command6");
        ASSERT_NE(module().LoadedScreen("APicPrn"), nullptr) << Failure();
    }
    Control& Dialog(const char* name) { return Ctl(module(), "APicPrn", name); }
    std::string Folder() { return module().WorkFolder.string(); }
    std::string Bitmap() { return (module().WorkFolder / "BITMAP.TMP").string(); }

    static constexpr const char* SaveFirst =
        "will then be stored in sub-folder LORVANE.DAT as a \r\n"
        "bitmap file with extension .BMP. Upon returning to the Lorvane main \r\n"
        "module, click 'Menu -> Output -> View bitmap files', and follow the instructions. \r\n";
    static constexpr const char* Note =
        "\r\nNote that the bottom of the picture frame has space to add text.\r\n";
};

TEST_F(PrintDialog, BothWaysWhenThePictureIsCopiedAndTheFolderWritable) {
    OpenDialog();
    EXPECT_EQ(Dialog("Label0").Caption, "How to print and/or edit pictures");
    EXPECT_EQ(Dialog("Text1").Caption,
              std::string("There are two ways to print or edit a picture:\r\n"
                          "(1) Save the picture first. The picture \r\n") +
                  SaveFirst +
                  "(2) Import the picture in MS Paint now, and save it under another name (the "
                  "initial path is " +
                  Folder() + ")." + "\r\n" + Note);
    EXPECT_TRUE(Dialog("Command2").Visible);
    EXPECT_EQ(Picture().OperationsOf("save").at(0).text, Bitmap());
    EXPECT_EQ(ReadFile(File("EXIST.TMP")), "?\r\n");

    // The test is made once in the dialog's life.
    std::filesystem::remove(File("EXIST.TMP"));
    auto& dialog = dynamic_cast<APicPrn&>(*module().LoadedScreen("APicPrn"));
    EXPECT_EQ(dialog.WriteTest(), 1);
    EXPECT_FALSE(std::filesystem::exists(File("EXIST.TMP")));
}

TEST_F(PrintDialog, OnlyPaintWhenTheDataFolderCannotBeWritten) {
    // A folder in the place of EXIST.TMP cannot be opened for output.
    std::filesystem::create_directory(File("EXIST.TMP"));
    module().FullSize = 1;
    OpenDialog();
    EXPECT_EQ(Dialog("Text1").Caption,
              "Import the picture in MS Paint now, and save it under another name (the initial "
              "path is " +
                  Folder() + ")." + "\r\n" + Note +
                  "\r\nAlso note that the picture will be saved in its current size, which may be "
                  "too large if you are going to use it in a paper. If so, run Lorvane in default "
                  "screen mode.\r\n");
    EXPECT_TRUE(Dialog("Command2").Visible);
    EXPECT_EQ(dynamic_cast<APicPrn&>(*module().LoadedScreen("APicPrn")).WriteTest(), -1);
}

TEST_F(PrintDialog, SaveFirstWhenThePictureCannotBeCopied) {
    Open();
    Picture().SetSaveResult(false);
    module().Click("VIRPlot2", "Command6");
    EXPECT_EQ(Dialog("Text1").Caption,
              std::string("In order to print or edit a picture, save it first. The picture \r\n") +
                  SaveFirst + Note);
    EXPECT_FALSE(Dialog("Command2").Visible);
    EXPECT_FALSE(module().Ended());
}

TEST_F(PrintDialog, PaintProgramsAreTriedInOrderAndThenTheUserIsTold) {
    const std::string first = std::string(FirstPaintProgram) + " " + Bitmap();
    const std::string second = std::string(SecondPaintProgram) + " " + Bitmap();

    // The first program starts: the dialog goes.
    OpenDialog();
    module().Click("APicPrn", "Command2");
    EXPECT_EQ(test.processes().started, std::vector<std::string>{first});
    EXPECT_EQ(module().LoadedScreen("APicPrn"), nullptr);

    // The first fails, the second starts.
    test.processes().started.clear();
    test.processes().outcomes = {false, true};
    module().Click("VIRPlot2", "Command6");
    module().Click("APicPrn", "Command2");
    EXPECT_EQ(test.processes().started, (std::vector<std::string>{first, second}));
    EXPECT_EQ(module().LoadedScreen("APicPrn"), nullptr);

    // Neither starts: one message, and the dialog stays with its button off.
    test.processes().started.clear();
    test.processes().outcomes = {false, false};
    module().Click("VIRPlot2", "Command6");
    test.dialogs().QueueAnswer("OK");
    module().Click("APicPrn", "Command2");
    EXPECT_EQ(test.processes().started, (std::vector<std::string>{first, second}));
    ASSERT_EQ(test.dialogs().Shown().size(), 1u);
    EXPECT_EQ(test.dialogs().Shown()[0],
              "[box] Module VAR | Cannot import this picture in MS Paint! -> OK");
    ASSERT_NE(module().LoadedScreen("APicPrn"), nullptr);
    EXPECT_FALSE(Dialog("Command2").Enabled);
    EXPECT_FALSE(module().Ended());
}

} // namespace
} // namespace lorvane
