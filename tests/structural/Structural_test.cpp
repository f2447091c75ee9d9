#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/TextFile.h"
#include "structural/NonstructuralFiles.h"
#include "structural/VARSTR1.h"
#include "structural/WrapTextLine.h"
#include "support/TestModule.h"

namespace lorvane {
namespace {

using test::Ctl;
using test::ReadFile;
using test::TestModule;
using test::WriteFile;

// Lines of 70 and 71 characters whose only blank is at position 66.
const std::string Line70 = std::string(65, 'a') + " bcde";
const std::string Line71 = std::string(65, 'a') + " bcdef";

TEST(WrapTextLine, BreaksAfterTheLastBlankThatFits) {
    ASSERT_EQ(Line70.size(), 70u);
    std::string rest = Line70 + "   ";
    std::string head;
    WrapTextLine(rest, head, 70);
    EXPECT_EQ(head, Line70);
    EXPECT_EQ(rest, "");

    // The piece keeps the blank it ends at.
    rest = Line71;
    WrapTextLine(rest, head, 70);
    EXPECT_EQ(head, std::string(65, 'a') + " ");
    EXPECT_EQ(rest, "bcdef");

    // The last blank of the first 12 characters is the 12th; the rest loses its blanks.
    rest = "alpha beta     gamma ";
    WrapTextLine(rest, head, 12);
    EXPECT_EQ(head, "alpha beta  ");
    EXPECT_EQ(rest, "gamma");

    // No blank in the first width characters: the line stays whole.
    rest = std::string(80, 'x') + " tail";
    WrapTextLine(rest, head, 70);
    EXPECT_EQ(head, std::string(80, 'x') + " tail");
    EXPECT_EQ(rest, "");

    rest = "   ";
    head = "old";
    WrapTextLine(rest, head, 70);
    EXPECT_EQ(head, "");
    EXPECT_EQ(rest, "");
}

TEST(WrapTextLine, ExplanationFileIsCleanedAndFolded) {
    TestModule test;
    const Module& module = test.module();
    const std::string unbroken = std::string(75, 'u') + " and more";
    const std::string threePieces = std::string(69, 'c') + " " + std::string(69, 'd') + " " + "e";
    WriteFile(module.DataFile("VARTEXT.TMP"), "    indented\r\n\"quoted\"  \r\n" + Line70 +
                                                  "\r\n  " + Line71 + "\r\n\r\n" + unbroken +
                                                  "\r\n" + threePieces + "\r\n");
    WrapExplanationFile(module);
    EXPECT_EQ(ReadLines(module.DataFile("VARTEXT.TMP")),
              (std::vector<std::string>{"indented", "quoted", Line70, std::string(65, 'a') + " ",
                                        "bcdef", "", unbroken, std::string(69, 'c') + " ",
                                        std::string(69, 'd') + " ", "e"}));
    EXPECT_FALSE(std::filesystem::exists(module.DataFile("VARTEXT2.TMP")));
}

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

TEST(Explanation, FormulaLineAndSizes) {
    EXPECT_EQ(Lines(ExplanationText(1, 2))[1], "    A.z(t) = Qz(t-1) + R.d(t) + C.e(t),");
    EXPECT_EQ(Lines(ExplanationText(2, 2))[1],
              "    A.z(t) = Q(1)z(t-1) + Q(2)z(t-2) + R.d(t) + C.e(t),");
    EXPECT_EQ(Lines(ExplanationText(3, 2))[1],
              "    A.z(t) = Q(1)z(t-1) +...+ Q(3)z(t-3) + R.d(t) + C.e(t),");
    EXPECT_EQ(Lines(ExplanationText(12, 2))[1],
              "    A.z(t) = Q(1)z(t-1) +...+ Q(12)z(t-12) + R.d(t) + C.e(t),");

    const std::vector<std::string> lines = Lines(ExplanationText(2, 3));
    ASSERT_EQ(lines.size(), 15u);
    EXPECT_EQ(lines[0], "The general form of a structural VAR model is:");
    EXPECT_EQ(lines[2], "where d(t) is a vector of deterministic variables, the e(t)'s are i.i.d. "
                        "N(0,I) innovations. "
                        "The vector u(t) of the reduced form errors is related to the vector e(t) "
                        "of innovations by "
                        "the following system of structural equations:");
    EXPECT_EQ(lines[4], "The matrices A and C are 3 x 3.");
    EXPECT_EQ(lines[9].back(), ' ');
    EXPECT_EQ(lines[14],
              "Bernanke, B.S. (1986), 'Alternative Explanations of the Money-Income Correlation' "
              "Carnegie-Rochester Conference Series on Public Policy 25, 49-100");
    EXPECT_TRUE(ExplanationText(2, 3).ends_with("49-100\r\n"));
}

TEST(Explanation, RouteOfTheStructuralAnalysis) {
    EXPECT_EQ(StructuralRoute("NSVARSUR"), "SVARSURBERNANKE");
    EXPECT_EQ(StructuralRoute("NSVARML"), "SVARMLBERNANKE");
    EXPECT_EQ(StructuralRoute("SVARMLBERNANKE"), "SVARMLBERNANKE");
}

class Fork : public ::testing::Test {
protected:
    Fork() {
        module().store().SelectedNames.Assign({"a", "b", "c"});
        module().p = 2;
    }
    Module& module() { return test.module(); }
    std::filesystem::path File(const std::string& name) { return module().DataFile(name); }
    void Arrive() {
        module().Run([this] { module().GoToScreen("VARSTR1"); });
        ASSERT_EQ(module().CurrentScreen, "VARSTR1");
    }
    std::string Failure() { return module().Failure() ? module().Failure()->MessageText() : ""; }

    TestModule test;
};

TEST_F(Fork, FirstArrivalSavesLaterArrivalsRestore) {
    for (std::size_t index = 0; index < NonstructuralFileNames.size(); ++index) {
        const std::string name(NonstructuralFileNames[index]);
        if (name != "XSURE.TMP") {
            WriteFile(File(name), name + " of the estimation\r\n");
        }
    }
    WriteFile(File("WALDTN.TMP"), "");
    Arrive();
    EXPECT_EQ(module().StructVisits, 1);
    for (const char* name : {"VARZERO.TMP", "YSURE.TMP", "U.TMP", "WALDT.TMP", "VARB.TMP",
                             "VARL.TMP", "VARLPAT.TMP", "ROUTE.TMP"}) {
        EXPECT_EQ(ReadFile(File(std::string("B") + name)),
                  std::string(name == std::string("ROUTE.TMP") ? "Route.TMP" : name) +
                      " of the estimation\r\n")
            << name;
    }
    // Missing and empty files are not copied; the log's scratch file never is.
    EXPECT_FALSE(std::filesystem::exists(File("BXSURE.TMP")));
    EXPECT_FALSE(std::filesystem::exists(File("BWALDTN.TMP")));
    EXPECT_FALSE(std::filesystem::exists(File("BOUTPUT.TMP")));

    // The structural screens overwrite, delete and add files.
    for (const char* name : {"VARL.TMP", "VARLPAT.TMP", "WALDT.TMP", "Route.TMP", "OUTPUT.TMP"}) {
        WriteFile(File(name), "structural\r\n");
    }
    std::filesystem::remove(File("U.TMP"));
    WriteFile(File("XSURE.TMP"), "stale\r\n");
    Arrive();
    EXPECT_EQ(module().StructVisits, 1);
    for (std::size_t index = 1; index < NonstructuralFileNames.size(); ++index) {
        const std::string name(NonstructuralFileNames[index]);
        if (name == "XSURE.TMP") {
            EXPECT_EQ(ReadFile(File(name)), "stale\r\n");
        } else if (name == "WALDTN.TMP") {
            EXPECT_EQ(ReadFile(File(name)), "");
        } else {
            EXPECT_EQ(ReadFile(File(name)), name + " of the estimation\r\n") << name;
        }
    }
    EXPECT_EQ(ReadFile(File("OUTPUT.TMP")), "structural\r\n");
    EXPECT_EQ(Lines(Ctl(module(), "VARSTR1", "Text1").Caption)[4],
              "The matrices A and C are 3 x 3.");
}

TEST_F(Fork, StructuralChoiceTurnsTheRouteAndOpensALogSection) {
    WriteFile(File("ROUTE.TMP"), "\"NSVARML\"\r\n");
    Arrive();
    EXPECT_EQ(module().Caption, " Nonstructural VAR versus structural VAR");
    WriteFile(File("U.TMP"), "3\r\n\"a\"\r\n\"b\"\r\n\"c\"\r\n");
    module().Click("VARSTR1", "Command2");
    EXPECT_EQ(ReadFile(File("ROUTE.TMP")), "\"SVARMLBERNANKE\"\r\n");
    ASSERT_FALSE(module().Ended()) << Failure();
    EXPECT_EQ(module().CurrentScreen, "VBernanke1");
    const std::string log = ReadFile(File("OUTPUT.TXT"));
    EXPECT_TRUE(log.starts_with("Lorvane International\r\nSession date: "));
    // The header and the banner: the description went to the log with the estimation.
    EXPECT_TRUE(log.ends_with("------\r\n\r\n***********************\r\nStructural VAR analysis\r\n"
                              "***********************\r\n\r\n"))
        << log;
}

TEST_F(Fork, SavedTextOnTopGoesToTheEditorAndTheLog) {
    Arrive();
    const std::string explanation = Ctl(module(), "VARSTR1", "Text1").Caption;
    module().Click("VARSTR1", "Command3");
    EXPECT_EQ(ReadFile(File("VARTEXT.TMP")), explanation + "\r\n");
    EXPECT_FALSE(Ctl(module(), "VARSTR1", "Command3").Enabled);
    EXPECT_EQ(module().PinnedScreen2, "VARSTR2");
    const std::vector<std::string> shown = Lines(Ctl(module(), "VARSTR2", "Text1").Caption);
    EXPECT_EQ(shown[1], "A.z(t) = Q(1)z(t-1) + Q(2)z(t-2) + R.d(t) + C.e(t),");
    EXPECT_EQ(shown[11], "References:");
    EXPECT_EQ(shown.size(), Lines(explanation).size() + 1);

    module().Click("VARSTR2", "Command2");
    ASSERT_FALSE(module().Ended()) << Failure();
    EXPECT_FALSE(Ctl(module(), "VARSTR2", "Command1").Enabled);
    EXPECT_FALSE(Ctl(module(), "VARSTR2", "Command2").Enabled);
    EXPECT_EQ(Ctl(module(), "VARSTR2", "Command3").Caption, "Done");
    const std::string log = ReadFile(File("OUTPUT.TXT"));
    const std::string section = "------\r\n\r\n";
    ASSERT_NE(log.find(section), std::string::npos) << log;
    const std::vector<std::string> logged = Lines(log.substr(log.find(section) + section.size()));
    EXPECT_EQ(logged[0], "The general form of a structural VAR model is:");
    EXPECT_EQ(logged[1], "A.z(t) = Q(1)z(t-1) + Q(2)z(t-2) + R.d(t) + C.e(t),");
    EXPECT_GT(logged.size(), shown.size());
    for (const std::string& line : logged) {
        EXPECT_LE(line.size(), 70u) << line;
        EXPECT_EQ(line, Trim(line));
    }
    EXPECT_EQ(logged[2], "where d(t) is a vector of deterministic variables, the e(t)'s are");
    EXPECT_EQ(logged[3], "i.i.d. N(0,I) innovations. The vector u(t) of the reduced form errors");

    // Done: back on the fork, where the text cannot be saved again.
    module().Click("VARSTR2", "Command3");
    EXPECT_EQ(module().LoadedScreen("VARSTR2"), nullptr);
    EXPECT_EQ(module().CurrentScreen, "VARSTR1");
    module().Click("VARSTR1", "Command3");
    EXPECT_EQ(module().LoadedScreen("VARSTR2"), nullptr);
}

TEST_F(Fork, EditorGetsTheWrappedText) {
    Arrive();
    module().Click("VARSTR1", "Command3");
    module().Click("VARSTR2", "Command1");
    ASSERT_EQ(test.processes().Requests().size(), 1u);
    EXPECT_EQ(test.processes().Requests()[0], "[open] " + File("VARTEXT.TMP").string());
    EXPECT_EQ(Ctl(module(), "VARSTR2", "Command3").Caption, "Done");
    const std::vector<std::string> lines = ReadLines(File("VARTEXT.TMP"));
    EXPECT_EQ(lines[2], "where d(t) is a vector of deterministic variables, the e(t)'s are ");
    EXPECT_FALSE(std::filesystem::exists(File("OUTPUT.TXT")));
    // Adding to the log is no longer offered.
    module().Click("VARSTR2", "Command2");
    EXPECT_FALSE(std::filesystem::exists(File("OUTPUT.TXT")));
}

} // namespace
} // namespace lorvane
