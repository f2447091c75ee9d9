#include <gtest/gtest.h>

#include "dialogs/Boxes.h"
#include "dialogs/WrapText.h"
#include "support/TestModule.h"

using namespace lorvane;
using lorvane::test::TestModule;

TEST(Boxes, ButtonSetsAndTheirResults) {
    const std::vector<std::vector<std::string>> sets = {
        {"OK"},        {"OK", "Cancel"},   {"Abort", "Retry", "Ignore"}, {"Yes", "No", "Cancel"},
        {"Yes", "No"}, {"Retry", "Cancel"}};
    const std::vector<std::vector<int>> results = {{1},       {1, 2}, {3, 4, 5},
                                                   {6, 7, 2}, {6, 7}, {4, 2}};
    for (int type = 0; type <= 5; ++type) {
        EXPECT_EQ(Boxes::ButtonSet(type), sets[static_cast<std::size_t>(type)]) << type;
        for (std::size_t b = 0; b < sets[static_cast<std::size_t>(type)].size(); ++b) {
            TestModule test;
            test.dialogs().QueueAnswer(sets[static_cast<std::size_t>(type)][b]);
            EXPECT_EQ(test.module().boxes().MessageBoxFull("text", type, "title"),
                      results[static_cast<std::size_t>(type)][b]);
        }
    }
    EXPECT_EQ(Boxes::ResultOf(""), 0);
}

TEST(Boxes, TypesAboveFiveCountModuloSixteen) {
    EXPECT_EQ(Boxes::ReducedType(16), 0);
    EXPECT_EQ(Boxes::ReducedType(21), 5);
    EXPECT_EQ(Boxes::ReducedType(36), 4);
    EXPECT_EQ(Boxes::ReducedType(48), 0);
    TestModule test;
    test.dialogs().QueueAnswer("Cancel");
    EXPECT_EQ(test.module().boxes().MessageBoxFull("Again?", 21, "Error"), 2);
    EXPECT_EQ(test.module().boxes().BoxType, 5);
}

TEST(Boxes, TheSecondButtonMayBeTheDefault) {
    TestModule test;
    Boxes& boxes = test.module().boxes();
    test.dialogs().QueueAnswer("No");
    EXPECT_EQ(boxes.MessageBoxFull("Discard?", 4 + Boxes::SecondButtonDefault, "Title"), 7);
    EXPECT_EQ(boxes.BoxType, 4);
    EXPECT_EQ(test.dialogs().LastMessage().defaultButton, 1u);
    test.dialogs().QueueAnswer("Yes");
    boxes.MessageBoxFull("Discard?", 4, "Title");
    EXPECT_EQ(test.dialogs().LastMessage().defaultButton, 0u);
    // A lone OK stays the default.
    test.dialogs().QueueAnswer("OK");
    boxes.MessageBoxFull("Note", Boxes::SecondButtonDefault, "Title");
    EXPECT_EQ(test.dialogs().LastMessage().defaultButton, 0u);
}

TEST(Boxes, ShortFormDropsTheTypeAndKeepsItsResult) {
    TestModule test;
    test.dialogs().QueueAnswer("Cancel");
    // A plain box has only OK: the queued Cancel does not fit it.
    EXPECT_THROW(test.module().boxes().MessageBoxShort("Stop", 16 + 1, "Error!"), NoQueuedAnswer);
    test.dialogs().QueueAnswer("OK");
    test.module().boxes().MessageBoxShort("Stop", 16 + 1, "Error!");
    EXPECT_EQ(test.module().boxes().LastBoxResult, 1);
    EXPECT_EQ(test.dialogs().Shown().back(), "[box] Error! | Stop -> OK");
}

TEST(Boxes, AutoCloseAnswersOkWithoutShowing) {
    TestModule test;
    test.module().boxes().BoxAutoClose = 1;
    EXPECT_EQ(test.module().boxes().MessageBoxFull("text", 4, "title"), 1);
    EXPECT_TRUE(test.dialogs().Shown().empty());
}

TEST(Boxes, InputBoxReturnsTheTextOrEmptyOnCancel) {
    TestModule test;
    test.dialogs().QueueInput("42");
    test.dialogs().QueueInput(std::nullopt);
    EXPECT_EQ(test.module().boxes().InputBox("Number?", "Ask", "1"), "42");
    EXPECT_EQ(test.module().boxes().InputBox("Number?", "Ask", "1"), "");
    EXPECT_EQ(test.module().boxes().InputDefault, "1");
    EXPECT_THROW(test.module().boxes().InputBox("Number?", "Ask", ""), NoQueuedAnswer);
}

TEST(WrapText, FoldsAtBlanksAndCutsLongWords) {
    EXPECT_EQ(WrapText("one two three", 8), "one two\r\nthree");
    EXPECT_EQ(WrapText("one, two. three", 9), "one, two.\r\nthree");
    EXPECT_EQ(WrapText("  lead\r\n  second para", 20), "lead\r\nsecond para");
    EXPECT_EQ(WrapText("abcdefghij", 4), "abcd\r\nefgh\r\nij");
    EXPECT_EQ(WrapText("exactly8", 8), "exactly8");
    EXPECT_EQ(WrapText("", 8), "");
    EXPECT_EQ(WrapText("a\r\n\r\nb", 8), "a\r\n\r\nb");
    // Measured in other units: each character two wide.
    EXPECT_EQ(WrapText("ab cd", 4,
                       [](std::string_view s) { return 2.0 * static_cast<double>(s.size()); }),
              "ab\r\ncd");
}

TEST(ShortenTitle, EndsInTwoPointsWhenTooLong) {
    EXPECT_EQ(ShortenTitle("Short", 10), "Short");
    EXPECT_EQ(ShortenTitle("A rather long title", 10), "A rather..");
}

TEST(Boxes, LaidOutWithShortenedTitleAndFoldedText) {
    TestModule test;
    test.dialogs().QueueAnswer("OK");
    const std::string word(150, 'w');
    test.module().boxes().MessageBoxFull(word, 0, std::string(100, 'T'));
    const MessageBoxRequest& shown = test.dialogs().LastMessage();
    EXPECT_EQ(shown.shownTitle, std::string(54, 'T') + "..");
    EXPECT_EQ(shown.shownText,
              word.substr(0, 64) + "\r\n" + word.substr(64, 64) + "\r\n" + word.substr(128));
    EXPECT_EQ(shown.text, word);

    // An empty text gives a box with only its title.
    test.dialogs().QueueAnswer("OK");
    test.module().boxes().MessageBoxFull("", 0, "Only a title");
    EXPECT_EQ(test.dialogs().LastMessage().shownText, "");
    EXPECT_EQ(test.dialogs().Shown().back(), "[box] Only a title |  -> OK");
}
