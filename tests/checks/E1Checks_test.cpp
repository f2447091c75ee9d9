#include <gtest/gtest.h>

#include "estimate/EstimateRoad.h"
#include "platform/RecordingSurface.h"
#include "support/Reference.h"

using namespace lorvane;
using namespace lorvane::test;

namespace {

const nlohmann::json& Reference() {
    return E1Reference()["var2_intercept_checks_and_forecasts"];
}

std::string Statistic(const nlohmann::json& value) {
    return RightAligned(FormatNumber(value.get<double>(), "##########.0000"), 15);
}
std::string PValue(const nlohmann::json& value) {
    return "p-value = " + FormatNumber(value.get<double>(), "0.00000");
}

// The example VAR(2) with an intercept, estimated by OLS with FIML, on the checks screen.
class E1Checks : public ::testing::Test {
protected:
    void SetUp() override {
        WalkE1ToVWaldT2(test);
        module().Click("VWaldT2", "Checks");
        ASSERT_EQ(module().CurrentScreen, "VARCHECK");
    }

    Module& module() { return test.module(); }
    Control& control(const char* name) { return Ctl(module(), "VARCHECK", name); }

    // Typing into a text box.
    void Type(const char* box, const std::string& text) {
        control(box).Caption = text;
        module().Change("VARCHECK", box);
    }

    // The report for h and q, as lines.
    std::vector<std::string> Report(int h, int q) {
        Type("Lags", std::to_string(h));
        Type("Order", std::to_string(q));
        module().Click("VARCHECK", "Compute");
        return Lines(control("Text1").Caption);
    }

    TestModule test;
};

// The line that starts with `head` and the lines after it.
std::vector<std::string> From(const std::vector<std::string>& lines, const std::string& head,
                              std::size_t count) {
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].starts_with(head)) {
            return {lines.begin() + static_cast<long>(i),
                    lines.begin() + static_cast<long>(std::min(lines.size(), i + count))};
        }
    }
    ADD_FAILURE() << "no line " << head;
    return std::vector<std::string>(count);
}

TEST_F(E1Checks, EveryPrintedFigureAgreesWithThePeers) {
    for (const int h : {8, 12}) {
        const std::vector<std::string> lines = Report(h, 4);
        const nlohmann::json& peer = Reference()["portmanteau_" + std::to_string(h)];
        const std::string df = "Chi-square(" + std::to_string(peer["df"].get<int>()) + ")";
        const std::string lag = std::to_string(h);
        const auto q = From(lines, "Q(" + lag + "):", 3);
        EXPECT_EQ(q[0].substr(29), Statistic(peer["Q"]));
        EXPECT_TRUE(q[1].ends_with(df)) << q[1];
        EXPECT_EQ(Trim(q[2]), PValue(peer["p"]));
        const auto adjusted = From(lines, "Q*(" + lag + "):", 3);
        EXPECT_EQ(adjusted[0].substr(29), Statistic(peer["Q_adjusted"]));
        EXPECT_TRUE(adjusted[1].ends_with(df)) << adjusted[1];
        EXPECT_EQ(Trim(adjusted[2]), PValue(peer["p_adjusted"]));

        // The roots, largest first, and the verdict.
        const auto roots = From(lines, "Stability", 9);
        for (std::size_t i = 0; i < 6; ++i) {
            EXPECT_EQ(roots[i + 2].substr(35),
                      RightAligned(FormatNumber(Reference()["companion_moduli"][i].get<double>(),
                                                "0.000000"),
                                   15));
        }
        EXPECT_TRUE(Reference()["stable"].get<bool>());
        EXPECT_EQ(roots[8], "Every modulus is below 1: the VAR is stable.");
    }
    const std::vector<std::string> lines = Report(12, 4);

    const nlohmann::json& bg = Reference()["breusch_godfrey_4"];
    const auto lm = From(lines, "LM(4):", 3);
    EXPECT_EQ(lm[0].substr(29), Statistic(bg["statistic"]));
    EXPECT_EQ(lm[1], "Asymptotic null distribution:Chi-square(" +
                         std::to_string(bg["df"].get<int>()) + ")");
    EXPECT_EQ(Trim(lm[2]), PValue(bg["p"]));

    const nlohmann::json& es = Reference()["edgerton_shukur_4"];
    const auto f = From(lines, "F(4):", 3);
    EXPECT_EQ(f[0].substr(29), Statistic(es["F"]));
    EXPECT_EQ(f[1], "Null distribution:           F(" + std::to_string(es["df1"].get<int>()) + "," +
                        std::to_string(es["df2"].get<int>()) + ")");
    EXPECT_EQ(Trim(f[2]), PValue(es["p"]));

    const nlohmann::json& jb = Reference()["jarque_bera"];
    const nlohmann::json& parts = Reference()["jarque_bera_parts"];
    const auto total = From(lines, "Jarque-Bera:", 3);
    EXPECT_EQ(total[0].substr(29), Statistic(jb["statistic"]));
    EXPECT_TRUE(total[1].ends_with("(" + std::to_string(jb["df"].get<int>()) + ")"));
    EXPECT_EQ(Trim(total[2]), PValue(jb["p"]));
    const std::string eachDf = "(" + std::to_string(parts["df_each"].get<int>()) + ")";
    EXPECT_EQ(From(lines, "Skewness:", 1)[0].substr(29), Statistic(parts["skewness"]));
    EXPECT_TRUE(From(lines, "Skewness:", 2)[1].ends_with(eachDf));
    EXPECT_EQ(From(lines, "Kurtosis:", 1)[0].substr(29), Statistic(parts["kurtosis"]));
    EXPECT_TRUE(From(lines, "Kurtosis:", 2)[1].ends_with(eachDf));

    const nlohmann::json& arch = Reference()["arch_lm_4"];
    const auto archLines = From(lines, "ARCH-LM(4):", 3);
    EXPECT_EQ(archLines[0].substr(29), Statistic(arch["statistic"]));
    EXPECT_TRUE(archLines[1].ends_with("(" + std::to_string(arch["df"].get<int>()) + ")"));
    EXPECT_EQ(Trim(archLines[2]), PValue(arch["p"]));
}

TEST_F(E1Checks, ComputeLogsTheReportAndThePictureAndContinueReturns) {
    EXPECT_EQ(control("Lags").Caption, "12");
    EXPECT_EQ(control("Order").Caption, "4");
    const std::filesystem::path log = module().DataFile("OUTPUT.TXT");
    const std::string before = ReadFile(log);
    Report(12, 4);
    const std::string added = ReadFile(log).substr(before.size());
    EXPECT_NE(added.find(control("Text1").Caption), std::string::npos);
    EXPECT_NE(added.find("Insert picture file "), std::string::npos);
    const auto& picture = dynamic_cast<const RecordingSurface&>(*control("Picture1").Drawing);
    EXPECT_EQ(picture.OperationsOf("save").size(), 1u);
    EXPECT_TRUE(std::filesystem::exists(module().DataFile("IRP00001.BMP")));
    EXPECT_EQ(picture.OperationsOf("dot").size(), 6u);
    module().Click("VARCHECK", "Continue");
    EXPECT_EQ(module().CurrentScreen, "VWaldT2");
}

// Lags must exceed p and orders must leave the auxiliary regressions observations: a refused
// value leaves the report, the log and the pictures as they were.
TEST_F(E1Checks, OutOfRangeLagsAndOrdersAreRefused) {
    const std::filesystem::path log = module().DataFile("OUTPUT.TXT");
    const std::string before = ReadFile(log);
    const std::string report = control("Text1").Caption;
    for (const auto& [lags, order] : std::vector<std::pair<const char*, const char*>>{
             {"2", "4"}, {"73", "4"}, {"12.5", "4"}, {"abc", "4"}, {"12", "0"}, {"12", "60"}}) {
        Type("Lags", lags);
        Type("Order", order);
        module().Click("VARCHECK", "Compute");
        EXPECT_EQ(control("Text1").Caption, report) << lags << " " << order;
        EXPECT_TRUE(control("Label0").Caption.starts_with(" The ")) << lags << " " << order;
    }
    EXPECT_EQ(ReadFile(log), before);
    EXPECT_TRUE(dynamic_cast<const RecordingSurface&>(*control("Picture1").Drawing)
                    .OperationsOf("save")
                    .empty());
}

} // namespace
