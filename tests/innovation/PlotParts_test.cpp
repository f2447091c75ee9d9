// The parts of the response plots: reading a response, the plot list, the picture file names,
// the drawing and the horizon under the pointer.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "frame/NumberText.h"
#include "innovation/PlotDrawing.h"
#include "innovation/PlotFixture.h"
#include "innovation/PlotList.h"
#include "innovation/ResponsePlot.h"
#include "support/Errors.h"

namespace lorvane {
namespace {

using test::ReadFile;
using test::ResponseBlock;

class PlotFiles : public ::testing::Test {
protected:
    void SetUp() override { test::WriteResponses(workspace(), blocks); }
    const Workspace& workspace() { return test.module(); }
    std::filesystem::path File(const char* name) { return test.module().DataFile(name); }

    test::TestModule test;
    std::vector<ResponseBlock> blocks = test::TwoVariableResponses();
};

TEST_F(PlotFiles, AResponseIsReadFromItsBlock) {
    for (int k : {1, 3, 4}) {
        const ResponsePlot plot = ReadResponsePlot(workspace(), k);
        const ResponseBlock& block = blocks[static_cast<std::size_t>(k - 1)];
        EXPECT_EQ(plot.H, 10);
        EXPECT_EQ(plot.n, 2);
        EXPECT_EQ(plot.Title, block.title);
        EXPECT_EQ(plot.M, block.M);
        EXPECT_EQ(plot.Psi, block.psi);
        EXPECT_EQ(plot.SE, block.se);
    }
    EXPECT_EQ(test::ErrorNumberOf([this] { ReadResponsePlot(workspace(), 5); }),
              InputPastEndOfFile);
}

TEST_F(PlotFiles, TheListIsMadeOnceAndKeepsTheSavedState) {
    MakePlotList(workspace());
    EXPECT_EQ(ReadFile(File("VARIRPL.TMP")), "\"Response of x to a unit shock in x\"\r\n0\r\n"
                                             "\"Response of x to a unit shock in y\"\r\n0\r\n"
                                             "\"Response of y to a unit shock in x\"\r\n0\r\n"
                                             "\"Response of y to a unit shock in y\"\r\n0\r\n");

    MarkPlotSaved(workspace(), 3);
    MarkPlotSaved(workspace(), 1);
    EXPECT_FALSE(std::filesystem::exists(File("TMP.TMP")));
    const std::vector<PlotListEntry> entries = ReadPlotList(workspace());
    ASSERT_EQ(entries.size(), 4u);
    std::vector<std::string> items;
    for (const PlotListEntry& entry : entries) {
        items.push_back(PlotListItem(entry));
    }
    EXPECT_EQ(items,
              (std::vector<std::string>{"Response of x to a unit shock in x (already saved)",
                                        "Response of x to a unit shock in y (not yet saved)",
                                        "Response of y to a unit shock in x (already saved)",
                                        "Response of y to a unit shock in y (not yet saved)"}));

    // An existing list is not made again from the responses: the saved state stays.
    test::WriteResponses(workspace(), test::TwoVariableResponses(12));
    MakePlotList(workspace());
    EXPECT_EQ(ReadPlotList(workspace())[2].Saved, 1);
}

TEST_F(PlotFiles, PictureNamesAreNumberedPastEveryExistingFile) {
    EXPECT_EQ(BitmapName(1), "IRP00001.BMP");
    EXPECT_EQ(BitmapName(470), "IRP00470.BMP");
    EXPECT_EQ(BitmapName(99999), "IRP99999.BMP");
    // Past 99999 the right five digits are taken.
    EXPECT_EQ(BitmapName(123456), "IRP23456.BMP");

    EXPECT_EQ(NextBitmapName(workspace()), "IRP00001.BMP");
    test::WriteFile(File("IRP00001.BMP"), "");
    test::WriteFile(File("IRP00002.BMP"), "");
    test::WriteFile(File("IRP00004.BMP"), "");
    EXPECT_EQ(NextBitmapName(workspace()), "IRP00003.BMP");
}

// A surface of 608 x 260 pixels, the plot screen's picture at design size.
class PlotDrawingTest : public ::testing::Test {
protected:
    using Operation = RecordingSurface::Operation;

    PlotFrame Draw(const ResponsePlot& plot) { return DrawResponsePlot(surface, plot); }
    static ResponsePlot PlotOf(const ResponseBlock& block) {
        ResponsePlot plot;
        plot.H = static_cast<int>(block.psi.size()) - 1;
        plot.n = 2;
        plot.Title = block.title;
        plot.M = block.M;
        plot.Psi = block.psi;
        plot.SE = block.se;
        return plot;
    }
    std::vector<Operation> Texts(const std::string& text) {
        std::vector<Operation> found;
        for (const Operation& operation : surface.OperationsOf("text")) {
            if (operation.text == text) {
                found.push_back(operation);
            }
        }
        return found;
    }

    RecordingSurface surface{608, 260};
    // Text measures of the recording surface in the plot's units.
    const double textHeight = RecordingSurface::LinePixels / 260;
    const double charWidth = RecordingSurface::CharacterPixels / 608 * 1.1;
};

TEST_F(PlotDrawingTest, TheResponseIsALineInsideTheFrame) {
    const ResponseBlock block = test::TwoVariableResponses()[0];
    const PlotFrame frame = Draw(PlotOf(block));

    const std::vector<Operation> scales = surface.OperationsOf("scale");
    ASSERT_EQ(scales.size(), 1u);
    EXPECT_EQ(scales[0].values, (std::vector<double>{0, 0, 1.1, 1}));
    EXPECT_EQ(surface.Operations()[1].kind, "clear");
    EXPECT_EQ(surface.Operations()[1].colour, 0xFFFFFFu);

    // Half a text height above the frame; one and a twentieth below it.
    EXPECT_DOUBLE_EQ(frame.Top, textHeight / 2);
    EXPECT_DOUBLE_EQ(frame.Bottom, 1 - 1.05 * textHeight);
    // The widest value label, "-2.1000E+000", with a little room on either side.
    EXPECT_GT(frame.Left, 12.5 * charWidth);
    EXPECT_LT(frame.Left, 14 * charWidth);
    EXPECT_GT(frame.Right, 1.1 - charWidth);
    EXPECT_LT(frame.Right, 1.1);
    EXPECT_EQ(frame.H, 10);
    const std::vector<Operation> boxes = surface.OperationsOf("box");
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].values,
              (std::vector<double>{frame.Left, frame.Top, frame.Right, frame.Bottom}));

    // Values from Ymax = 2.1 at 5% of the height below the top to Ymin = -2.1 at 95%.
    const double height = frame.Bottom - frame.Top;
    const auto x = [&](int h) { return frame.Left + (frame.Right - frame.Left) * h / 10; };
    const auto y = [&](double v) { return frame.Top + height * (0.05 + 0.9 * (2.1 - v) / 4.2); };
    std::vector<Operation> response;
    std::vector<Operation> zero;
    std::vector<Operation> ticks;
    for (const Operation& line : surface.OperationsOf("line")) {
        if (line.colour == PlotResponseColour) {
            response.push_back(line);
        } else if (line.style == DrawStyle::Dash) {
            zero.push_back(line);
        } else {
            ticks.push_back(line);
        }
    }
    ASSERT_EQ(response.size(), 10u) << surface.Text();
    for (int h = 0; h < 10; ++h) {
        const Operation& line = response[static_cast<std::size_t>(h)];
        // Half as wide again as the thin lines, in whole pixels.
        EXPECT_EQ(line.width, 2);
        EXPECT_NEAR(line.values[0], x(h), 1e-12);
        EXPECT_NEAR(line.values[1], y(block.psi[static_cast<std::size_t>(h)]), 1e-12);
        EXPECT_NEAR(line.values[2], x(h + 1), 1e-12);
        EXPECT_NEAR(line.values[3], y(block.psi[static_cast<std::size_t>(h + 1)]), 1e-12);
    }
    // The zero line, dashed and thin, runs at half the frame's height.
    ASSERT_EQ(zero.size(), 10u);
    for (const Operation& line : zero) {
        EXPECT_EQ(line.width, 1);
        EXPECT_NEAR(line.values[1], frame.Top + height / 2, 1e-12);
        EXPECT_EQ(line.values[1], line.values[3]);
    }
    EXPECT_EQ(zero.front().values[0], frame.Left);
    EXPECT_NEAR(zero.back().values[2], frame.Right, 1e-12);
    // A short tick across the zero line at every horizon.
    ASSERT_EQ(ticks.size(), 11u);
    for (int h = 0; h <= 10; ++h) {
        const Operation& tick = ticks[static_cast<std::size_t>(h)];
        EXPECT_NEAR(tick.values[0], x(h), 1e-12);
        EXPECT_EQ(tick.values[0], tick.values[2]);
        EXPECT_LT(tick.values[1], frame.Top + height / 2);
        EXPECT_GT(tick.values[3], frame.Top + height / 2);
        EXPECT_LT(tick.values[3] - tick.values[1], textHeight);
    }
}

TEST_F(PlotDrawingTest, BandDotsOutsideTheFrameVanish) {
    ResponseBlock block = test::TwoVariableResponses()[3];
    // At horizon 3 one standard error reaches beyond both edges of the frame, at horizon 5
    // only two do.
    block.se[3] = 10;
    block.se[5] = 0.35;
    const PlotFrame frame = Draw(PlotOf(block));
    const double height = frame.Bottom - frame.Top;
    const auto x = [&](int h) { return frame.Left + (frame.Right - frame.Left) * h / 10; };
    const auto y = [&](double v) { return frame.Top + height * (0.05 + 0.9 * (0.525 - v) / 1.05); };

    const std::vector<Operation> dots = surface.OperationsOf("dot");
    ASSERT_EQ(dots.size(), 4u * 11 - 4 - 2) << surface.Text();
    for (const Operation& dot : dots) {
        EXPECT_EQ(dot.width, 2);
        EXPECT_EQ(dot.colour, PlotBandColour);
        EXPECT_GT(dot.values[1], frame.Top);
        EXPECT_LT(dot.values[1], frame.Bottom);
    }
    const auto dotsAt = [&](int h) {
        std::vector<double> heights;
        for (const Operation& dot : dots) {
            if (std::abs(dot.values[0] - x(h)) < 1e-12) {
                heights.push_back(dot.values[1]);
            }
        }
        std::sort(heights.begin(), heights.end());
        return heights;
    };
    EXPECT_TRUE(dotsAt(3).empty());
    ASSERT_EQ(dotsAt(5).size(), 2u);
    const double psi5 = block.psi[5];
    EXPECT_NEAR(dotsAt(5)[0], y(psi5 + 0.35), 1e-12);
    EXPECT_NEAR(dotsAt(5)[1], y(psi5 - 0.35), 1e-12);
    const std::vector<double> first = dotsAt(0);
    ASSERT_EQ(first.size(), 4u);
    const double se0 = block.se[0];
    EXPECT_NEAR(first[0], y(block.psi[0] + 2 * se0), 1e-12);
    EXPECT_NEAR(first[3], y(block.psi[0] - 2 * se0), 1e-12);
}

TEST_F(PlotDrawingTest, AnImpactWithoutAKnownUncertaintyHasNoBand) {
    ResponsePlot plot = PlotOf(test::TwoVariableResponses()[0]);
    plot.SE[0] = 0;
    plot.ImpactBand = false;
    const PlotFrame frame = Draw(plot);
    const std::vector<Operation> dots = surface.OperationsOf("dot");
    ASSERT_EQ(dots.size(), 4u * 10) << surface.Text();
    for (const Operation& dot : dots) {
        EXPECT_GT(dot.values[0], frame.Left + 1e-9);
    }
}

TEST_F(PlotDrawingTest, LabelsSitBesideAndBelowTheFrameWithoutBeingCut) {
    const ResponseBlock block = test::TwoVariableResponses()[2];
    const PlotFrame frame = Draw(PlotOf(block));
    const std::vector<Operation> top = Texts("5.2500E-001");
    const std::vector<Operation> bottom = Texts("-5.2500E-001");
    const std::vector<Operation> zeros = Texts("0");
    const std::vector<Operation> end = Texts("10");
    const std::vector<Operation> title = Texts("Response of y to a unit shock in x");
    ASSERT_EQ(top.size(), 1u);
    ASSERT_EQ(bottom.size(), 1u);
    ASSERT_EQ(zeros.size(), 2u);
    ASSERT_EQ(end.size(), 1u);
    ASSERT_EQ(title.size(), 1u);
    EXPECT_EQ(surface.OperationsOf("text").size(), 6u);

    // Value labels: right-aligned against the frame, centred on the largest and the smallest
    // value and on the zero line; the widest starts inside the picture.
    const double middle = frame.Top + (frame.Bottom - frame.Top) / 2;
    const auto right = [&](const Operation& text) {
        return text.values[0] + text.text.size() * charWidth;
    };
    EXPECT_GT(bottom[0].values[0], 0);
    EXPECT_NEAR(right(top[0]), right(bottom[0]), 1e-12);
    EXPECT_LT(right(top[0]), frame.Left);
    EXPECT_GT(right(top[0]), frame.Left - charWidth);
    const double height = frame.Bottom - frame.Top;
    EXPECT_NEAR(top[0].values[1], frame.Top + 0.05 * height - textHeight / 2, 1e-12);
    EXPECT_NEAR(bottom[0].values[1], frame.Top + 0.95 * height - textHeight / 2, 1e-12);
    const Operation& zeroValue = zeros[0].values[1] < frame.Bottom ? zeros[0] : zeros[1];
    const Operation& zeroHorizon = &zeroValue == &zeros[0] ? zeros[1] : zeros[0];
    EXPECT_NEAR(zeroValue.values[1], middle - textHeight / 2, 1e-12);
    EXPECT_NEAR(right(zeroValue), right(top[0]), 1e-12);

    // Below the frame: 0 at its left end, H ending at its right end, the title between them,
    // all within the picture.
    for (const Operation* text : {&zeroHorizon, &end[0], &title[0]}) {
        EXPECT_GT(text->values[1], frame.Bottom);
        EXPECT_LE(text->values[1] + textHeight, 1 + 1e-12);
    }
    EXPECT_EQ(zeroHorizon.values[0], frame.Left);
    EXPECT_NEAR(right(end[0]), frame.Right, 1e-12);
    EXPECT_GT(title[0].values[0], right(zeroHorizon));
    EXPECT_LT(right(title[0]), end[0].values[0]);
    EXPECT_NEAR(title[0].values[0] - frame.Left, frame.Right - right(title[0]), 1e-12);
}

TEST_F(PlotDrawingTest, ALongTitleStartsBehindTheFirstHorizon) {
    ResponseBlock block = test::TwoVariableResponses()[0];
    block.title = "Response of " + std::string(28, 'a') + ".. to a unit shock in " +
                  std::string(28, 'b') + "..";
    const PlotFrame frame = Draw(PlotOf(block));
    const Operation title = Texts(block.title).at(0);
    EXPECT_GT(title.values[0], frame.Left + charWidth);
    EXPECT_LT(title.values[0], frame.Left + 3 * charWidth);
}

TEST_F(PlotDrawingTest, AResponseThatNeverMovesHasNoRange) {
    ResponseBlock block = test::TwoVariableResponses()[0];
    block.M = 0;
    std::fill(block.psi.begin(), block.psi.end(), 0.0);
    EXPECT_EQ(test::ErrorNumberOf([&] { Draw(PlotOf(block)); }), DivisionByZero);
}

TEST(PlotHorizon, ThePointerGivesTheNearestHorizonAndAtMostH) {
    // H = 8 over a frame from 0.25 to 1.25: a horizon every 1/8.
    EXPECT_EQ(HorizonAt(0.25, 8, 0.25, 1.25), 0);
    EXPECT_EQ(HorizonAt(1.25, 8, 0.25, 1.25), 8);
    EXPECT_EQ(HorizonAt(0.6, 8, 0.25, 1.25), 3);
    EXPECT_EQ(HorizonAt(0.7, 8, 0.25, 1.25), 4);
    // Halves go to the even horizon: 2.5 and 3.5.
    EXPECT_EQ(HorizonAt(0.5625, 8, 0.25, 1.25), 2);
    EXPECT_EQ(HorizonAt(0.6875, 8, 0.25, 1.25), 4);
    // Beyond the right end the last horizon; left of the frame the count goes below zero.
    EXPECT_EQ(HorizonAt(5.0, 8, 0.25, 1.25), 8);
    EXPECT_EQ(HorizonAt(0.0, 8, 0.25, 1.25), -2);
}

} // namespace
} // namespace lorvane
