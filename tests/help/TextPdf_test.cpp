#include <gtest/gtest.h>

#include <regex>
#include <stdexcept>
#include <string>

#include "TextPdf.h"
#include "support/TestModule.h"

using lorvane::help::MaxLineLength;
using lorvane::help::TextToPdf;

namespace {

// Every object that the cross-reference table names starts where the table says, and the
// table starts where the trailer says: a reader finds every page.
void ExpectFindable(const std::string& pdf) {
    ASSERT_TRUE(pdf.starts_with("%PDF-1.4\n"));
    ASSERT_TRUE(pdf.ends_with("%%EOF\n"));
    const std::size_t at = pdf.rfind("startxref\n");
    ASSERT_NE(at, std::string::npos);
    const std::size_t table = std::stoul(pdf.substr(at + 10));
    ASSERT_EQ(pdf.compare(table, 5, "xref\n"), 0);
    const int size = std::stoi(pdf.substr(table + 7));
    for (int number = 1; number < size; ++number) {
        const std::size_t entry = table + 7 + std::to_string(size).size() + 1 + 20 * number;
        ASSERT_EQ(pdf.substr(entry + 10, 10), " 00000 n \n") << number;
        const std::size_t offset = std::stoul(pdf.substr(entry, 10));
        EXPECT_EQ(pdf.compare(offset, std::to_string(number).size() + 6,
                              std::to_string(number) + " 0 obj"),
                  0)
            << number;
    }
}

} // namespace

TEST(TextPdf, LinesFillPagesInOrder) {
    std::string text = "# Title (one)\n\\path\r\n";
    for (int line = 3; line <= 130; ++line) {
        text += "line " + std::to_string(line) + "\n";
    }
    const std::string pdf = TextToPdf(text, "A (test)");
    ExpectFindable(pdf);
    // Sixty lines a page.
    EXPECT_NE(pdf.find("/Count 3 >>"), std::string::npos);
    EXPECT_NE(pdf.find("/F2 10 Tf (Title \\(one\\)) Tj T*\n/F1 10 Tf (\\\\path) Tj T*\n"),
              std::string::npos);
    EXPECT_NE(pdf.find("(line 60) Tj T*\nET\n"), std::string::npos);
    EXPECT_NE(pdf.find("BT\n56 774 Td\n12 TL\n/F1 10 Tf (line 61)"), std::string::npos);
    EXPECT_NE(pdf.find("/Title (A \\(test\\))"), std::string::npos);
    // Each stream is as long as it says.
    const std::regex stream("/Length ([0-9]+) >>\nstream\n");
    for (auto match = std::sregex_iterator(pdf.begin(), pdf.end(), stream);
         match != std::sregex_iterator(); ++match) {
        const std::size_t start = static_cast<std::size_t>(match->position() + match->length());
        EXPECT_EQ(pdf.compare(start + std::stoul((*match)[1]), 9, "endstream"), 0);
    }
}

TEST(TextPdf, TooLongLinesAndForeignCharactersAreRefused) {
    EXPECT_NO_THROW(TextToPdf(std::string(MaxLineLength, 'x'), ""));
    try {
        TextToPdf("a\n" + std::string(MaxLineLength + 1, 'x') + "\n", "");
        FAIL();
    } catch (const std::invalid_argument& refused) {
        EXPECT_STREQ(refused.what(), "line 2 is longer than 80 characters");
    }
    EXPECT_THROW(TextToPdf("caf\xc3\xa9\n", ""), std::invalid_argument);
    EXPECT_THROW(TextToPdf("a\tb\n", ""), std::invalid_argument);
}

// The help page of the package goes through, and explains the criteria the module prints.
TEST(TextPdf, TheHelpPageOfTheInformationCriteria) {
    const std::string text =
        lorvane::test::ReadFile(std::string(LORVANE_SOURCE_DIR) + "/app/module/help/INFCRIT.txt");
    const std::string pdf = TextToPdf(text, "Information criteria for the order of a VAR");
    ExpectFindable(pdf);
    for (const char* formula : {"AIC\\(q\\) = D\\(q\\) + c\\(q\\) 2 / T\\(q\\)",
                                "HQ\\(q\\)  = D\\(q\\) + c\\(q\\) 2 ln\\(ln T\\(q\\)\\) / T\\(q\\)",
                                "SC\\(q\\)  = D\\(q\\) + c\\(q\\) ln T\\(q\\) / T\\(q\\)"}) {
        EXPECT_NE(pdf.find(formula), std::string::npos) << formula;
    }
}
