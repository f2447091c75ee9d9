// The work files of the innovation analysis when they do not fit the model: patterns and
// parameter counts that disagree, response files with impossible heads, and the work counter of
// models larger than a 16-bit count.

#include <gtest/gtest.h>

#include "innovation/InnovationModel.h"
#include "innovation/ModelFiles.h"
#include "innovation/MovingAverage.h"
#include "innovation/PlotFixture.h"
#include "innovation/PlotList.h"
#include "innovation/ResponseErrors.h"
#include "innovation/ResponseOutput.h"
#include "innovation/ResponsePlot.h"
#include "innovation/WorkCounter.h"
#include "support/Errors.h"

namespace lorvane {
namespace {

using test::ErrorNumberOf;
using test::WriteFile;

class DamagedModelFiles : public ::testing::Test {
protected:
    const Workspace& workspace() { return test.module(); }
    std::filesystem::path File(const char* name) { return test.module().DataFile(name); }
    int ReadError() {
        return ErrorNumberOf(
            [this] { ReadInnovationModel(workspace(), hand.n, hand.p, hand.T, hand.d); });
    }

    test::TestModule test;
    test::HandModel hand = test::FirstOrderModel();
};

TEST_F(DamagedModelFiles, PatternsThatDisagreeWithTheEstimatesAreAReadError) {
    test::WriteModelFiles(workspace(), hand);
    EXPECT_EQ(ReadError(), 0);
    // The reviewer's case: a -1 where the estimation had a 1 would shift every coefficient.
    WriteFile(File("VARZERO.TMP"), "1\r\n-1\r\n1\r\n1\r\n");
    EXPECT_EQ(ReadError(), InputPastEndOfFile);
    // A 0 where the estimation had a 1: one coefficient fewer than WALDT.TMP names.
    WriteFile(File("VARZERO.TMP"), "1\r\n0\r\n1\r\n1\r\n");
    EXPECT_EQ(ReadError(), InputPastEndOfFile);
    WriteFile(File("VARZERO.TMP"), "1\r\n2\r\n1\r\n1\r\n");
    EXPECT_EQ(ReadError(), InputPastEndOfFile);

    // The pattern of L counts the elements of L in the file.
    test::WriteModelFiles(workspace(), hand);
    WriteFile(File("VARLPAT.TMP"), "1\r\n1\r\n1\r\n1\r\n");
    EXPECT_EQ(ReadError(), InputPastEndOfFile);

    // Without the variance of L the coefficients alone fill the file, and L comes from VARL.TMP,
    // which must be of the model's size.
    hand.varianceOfL = false;
    test::WriteModelFiles(workspace(), hand);
    EXPECT_EQ(ReadError(), 0);
    WriteFile(File("VARL.TMP"), "3\r\n1\r\n0\r\n0.5\r\n2\r\n0\r\n0\r\n0\r\n0\r\n1\r\n");
    EXPECT_EQ(ReadError(), InputPastEndOfFile);
}

TEST_F(DamagedModelFiles, ResponseFilesWithImpossibleHeadsAreAReadError) {
    test::WriteResponses(workspace(), test::TwoVariableResponses(2));
    EXPECT_EQ(ReadResponsePlot(workspace(), 4).Psi.size(), 3u);
    const std::string good = test::ReadFile(File("VARIR2.TMP"));
    const std::string body = good.substr(good.find('\n'));
    // H = -2 once made a vector of length -1; n = 0 or less, or H and n beyond the file.
    for (const char* head : {"-2,2", "2,0", "2,-3", "32767,2", "2,181"}) {
        WriteFile(File("VARIR2.TMP"), head + body);
        EXPECT_EQ(ErrorNumberOf([this] { ReadResponsePlot(workspace(), 1); }), InputPastEndOfFile)
            << head;
        EXPECT_EQ(ErrorNumberOf([this] { ResponsesWithVarianceOfL(workspace()); }),
                  InputPastEndOfFile)
            << head;
        EXPECT_EQ(ErrorNumberOf([this] { MakePlotList(workspace()); }), InputPastEndOfFile) << head;
    }
}

TEST_F(DamagedModelFiles, TheWorkCounterHoldsModelsBeyondA16BitCount) {
    // The reviewer's models: six variables, four lags, H = 100; twenty variables, three lags,
    // H = 10 (every lag free, L lower triangular).
    EXPECT_EQ(TotalWork(6, 100, 144, 21), 40703);
    EXPECT_EQ(TotalWork(20, 10, 1200, 210), 39831);

    // A whole analysis of the hand model at a horizon whose work exceeds 32767 units counts
    // exactly its total.
    test::WriteModelFiles(workspace(), hand);
    InnovationModel model = ReadInnovationModel(workspace(), hand.n, hand.p, hand.T, hand.d);
    const int H = 1500;
    WorkCounter work{0, TotalWork(model.n, H, model.NA, model.NL), {}};
    ASSERT_GT(work.Total, 32767);
    const Responses psi = ComputeResponses(model, H, [&work] { work.Step(); });
    const Responses se = ComputeStandardErrors(model, H, work);
    ResponseReport(psi, se, {"x", "y"}, true, [&work] { work.Step(); });
    EXPECT_EQ(work.Done, work.Total);
}

} // namespace
} // namespace lorvane
