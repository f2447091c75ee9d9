#include <gtest/gtest.h>

#include "frame/Control.h"
#include "frame/Results.h"
#include "support/TestModule.h"

using namespace lorvane;
using lorvane::test::ReadFile;
using lorvane::test::TestModule;

TEST(AppendToResults, OverflowWritesTheBoxToTheLogAndClearsIt) {
    TestModule test;
    Control box;
    box.Kind = ControlKind::TextBox;
    AppendToResults(test.module(), box, std::string(32000, 'a'));
    AppendToResults(test.module(), box, std::string(767, 'b'));
    EXPECT_EQ(box.Caption.size(), 32767u);
    EXPECT_TRUE(test.dialogs().Shown().empty());

    test.dialogs().QueueAnswer("OK");
    AppendToResults(test.module(), box, "lost");
    ASSERT_EQ(test.dialogs().Shown().size(), 1u);
    EXPECT_EQ(test.dialogs().Shown()[0], "[box] Module VAR | The number of characters in the text "
                                         "box (32767) has exceeded its limit (about "
                                         "32K). Its contents will be written to the output "
                                         "file,and the text box will then be cleared. This "
                                         "may cause some loss of output. -> OK");
    EXPECT_EQ(box.Caption, "");
    EXPECT_EQ(ReadFile(test.module().DataFile("OUTPUT.TXT")),
              std::string(32000, 'a') + std::string(767, 'b') + "\r\n");
}
