#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/TextFile.h"
#include "support/E1Road.h"
#include "support/Reference.h"
#include "support/TestModule.h"

namespace lorvane {
namespace {

using test::Ctl;
using test::E1Reference;
using test::TestModule;

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t end = text.find("\r\n", start);
        lines.push_back(text.substr(start, end - start));
        start = end == std::string::npos ? text.size() : end + 2;
    }
    return lines;
}

// The road of the example data: VAR(2) with intercept on t = 2..76, OLS, FIML, the
// nonstructural branch, and Start with the horizon of 10.
void WalkToResponses(TestModule& test) {
    test::WalkToVARDetermin(test);
    Module& module = test.module();
    module.Click("VARDetermin", "Command5");
    module.Click("VAR2", "Command2");
    module.Click("VAR2", "Command5");
    ASSERT_EQ(module.CurrentScreen, "VAR3");
    module.Click("VAR3", "Command1");
    module.Click("VARSUR", "Command3");
    module.Click("VARSUR", "Command5");
    module.Click("VARSUR", "Command1");
    ASSERT_EQ(module.CurrentScreen, "VWaldT2");
    module.Click("VWaldT2", "Command2");
    ASSERT_EQ(module.CurrentScreen, "VARSTR1");
    module.Click("VARSTR1", "Command1");
    ASSERT_EQ(module.CurrentScreen, "VARIR2");
    module.Click("VARIR2", "Command1");
    ASSERT_FALSE(module.Ended()) << (module.Failure() ? module.Failure()->MessageText() : "");
}

TEST(E1Innovation, ResponsesErrorsAndDecompositionAgreeWithTheReference) {
    TestModule test;
    WalkToResponses(test);
    if (HasFatalFailure()) {
        return;
    }
    Module& module = test.module();
    const auto& reference = E1Reference()["var2_intercept"];
    const auto& responses = reference["responses"];
    const auto& errors = reference["response_se"];
    const auto& shares = reference["fevd_percent"];
    const std::vector<std::string> names = {"dlinvest", "dlincome", "dlcons"};

    EXPECT_EQ(Ctl(module, "VARIR2", "Label0").Caption,
              " Innovation responses with standard errors ");
    EXPECT_TRUE(Ctl(module, "VARIR2", "Command3").Visible);
    EXPECT_TRUE(Ctl(module, "VARIR2", "Check1").Visible);

    // The printed report.
    const std::vector<std::string> report = Lines(Ctl(module, "VARIR2", "Text2").Caption);
    std::size_t line = 3;
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            ASSERT_LT(line + 13, report.size());
            EXPECT_EQ(report[line], "Response of " + names[static_cast<std::size_t>(i)] +
                                        " to a unit shock in " +
                                        names[static_cast<std::size_t>(j)]);
            line += 2;
            for (int h = 0; h <= 10; ++h, ++line) {
                const std::string& row = report[line];
                ASSERT_EQ(row.size(), 48u) << row;
                EXPECT_EQ(row.substr(0, 8), RightAligned(std::to_string(h), 4) + "    ");
                EXPECT_EQ(Trim(row.substr(8, 20)),
                          FormatNumber(responses[h][i][j].get<double>(), "00.00000E+000"))
                    << i << j << h;
                EXPECT_EQ(Trim(row.substr(28, 20)),
                          FormatNumber(errors[h][i][j].get<double>(), "00.00000E+000"))
                    << i << j << h;
            }
            EXPECT_EQ(report[line++], "");
        }
        EXPECT_EQ(report[line++], "");
    }

    // The full precision of VARIR2.TMP.
    TextInput file(module.DataFile("VARIR2.TMP"));
    EXPECT_EQ(file.ReadWhole(), 10);
    EXPECT_EQ(file.ReadWhole(), 3);
    for (int i = 0; i < 3; ++i) {
        double largest = 0;
        for (int j = 0; j < 3; ++j) {
            for (int h = 0; h <= 10; ++h) {
                largest = std::max(largest, std::fabs(responses[h][i][j].get<double>()));
            }
        }
        for (int j = 0; j < 3; ++j) {
            file.ReadField();
            EXPECT_NEAR(file.ReadNumber(), largest, 1e-9 * largest);
            for (int h = 0; h <= 10; ++h) {
                const double psi = responses[h][i][j].get<double>();
                const double se = errors[h][i][j].get<double>();
                EXPECT_NEAR(file.ReadNumber(), psi, 1e-9 * std::fabs(psi) + 1e-15);
                EXPECT_NEAR(file.ReadNumber(), se, 1e-9 * se + 1e-15);
            }
        }
    }

    // The log: the estimation opened a section with the session header and the description;
    // the fork opened one of its own, with the header and its banner only.
    const std::filesystem::path log = module.DataFile("OUTPUT.TXT");
    const std::string before = test::ReadFile(log);
    EXPECT_TRUE(before.starts_with("Lorvane International\r\n"));
    EXPECT_LT(before.find("Selected variables:"), before.find("FIML estimation of"));
    EXPECT_TRUE(module.ResultText.empty());
    EXPECT_TRUE(
        before.ends_with("Session time: 19:36:05\r\n"
                         "----------------------------------------------\r\n"
                         "\r\n****************************\r\nNon-structural VAR analysis\r\n"
                         "****************************\r\n\r\n"))
        << before;
    EXPECT_EQ(test::ReadFile(module.DataFile("ROUTE.TMP")), "\"NSVARML\"\r\n");

    // "Store output" appends the report; the plot files of an earlier Start go.
    const std::string text = Ctl(module, "VARIR2", "Text2").Caption;
    test::WriteFile(module.DataFile("NOIRPLOT.TMP"), "1\r\n");
    Ctl(module, "VARIR2", "Check1").Value = 1;
    module.Click("VARIR2", "Command3");
    ASSERT_EQ(module.CurrentScreen, "VARDECOMP");
    EXPECT_EQ(test::ReadFile(log), before + "\r\n" + text + "\r\n");
    EXPECT_FALSE(std::filesystem::exists(module.DataFile("NOIRPLOT.TMP")));

    // The decomposition as VARDECOMP.TMP holds it and the next screen shows it.
    const std::string decomposition = Ctl(module, "VARDECOMP", "Text1").Caption;
    const std::vector<std::string> table = Lines(decomposition);
    ASSERT_EQ(table.size(), 3u * (3 + 2 * 3 + 2 + 11 + 1));
    for (int i = 0; i < 3; ++i) {
        const std::size_t block = static_cast<std::size_t>(i) * 23;
        EXPECT_EQ(table[block + 1], names[static_cast<std::size_t>(i)]);
        EXPECT_EQ(table[block + 4], "          dlinvest");
        EXPECT_EQ(table[block + 9], "   1   2   3   4");
        for (int h = 0; h <= 10; ++h) {
            const std::string& row = table[block + 11 + static_cast<std::size_t>(h)];
            ASSERT_EQ(row.size(), 16u) << row;
            for (int j = 0; j < 3; ++j) {
                EXPECT_EQ(Trim(row.substr(4 + 4 * static_cast<std::size_t>(j), 4)),
                          FormatNumber(shares[h][i][j].get<double>(), "###0"))
                    << i << j << h;
            }
        }
        EXPECT_EQ(table[block + 22], "");
    }
    Ctl(module, "VARDECOMP", "Check1").Value = 1;
    module.Click("VARDECOMP", "Command1");
    EXPECT_EQ(test::ReadFile(log), before + "\r\n" + text + "\r\n\r\n" + decomposition + "\r\n");
    EXPECT_FALSE(module.Failure().has_value());
    EXPECT_EQ(module.CurrentScreen, "VIRPlot2");
}

} // namespace
} // namespace lorvane
