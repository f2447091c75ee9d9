#include "dialogs/Boxes.h"

#include <array>

#include "frame/NumberText.h"
#include "platform/Dialogs.h"
#include "platform/Random.h"

namespace lorvane {

namespace {

constexpr std::array<const char*, 8> Answers = {"",      "OK",     "Cancel", "Abort",
                                                "Retry", "Ignore", "Yes",    "No"};

} // namespace

Boxes::Boxes(Dialogs& dialogs, Random& random) : dialogs_(dialogs), random_(random) {}

Int16 Boxes::ReducedType(int type) {
    return type > 5 ? type % 16 : type;
}

std::vector<std::string> Boxes::ButtonSet(int type) {
    switch (ReducedType(type)) {
    case 1:
        return {"OK", "Cancel"};
    case 2:
        return {"Abort", "Retry", "Ignore"};
    case 3:
        return {"Yes", "No", "Cancel"};
    case 4:
        return {"Yes", "No"};
    case 5:
        return {"Retry", "Cancel"};
    default:
        return {"OK"};
    }
}

Int16 Boxes::ResultOf(const std::string& answer) {
    for (std::size_t i = 0; i < Answers.size(); ++i) {
        if (answer == Answers[i]) {
            return static_cast<int>(i);
        }
    }
    return 0;
}

Int16 Boxes::MessageBoxFull(const std::string& text, int type, const std::string& title) {
    BoxAnswer.clear();
    BoxType = ReducedType(type);
    BoxText = text;
    BoxTitle = title;
    if (BoxAutoClose == 1) {
        BoxAnswer = "OK";
    } else {
        MessageBoxRequest request{BoxTitle, BoxText, ShortenTitle(BoxTitle, TitleWidth, measure_),
                                  WrapText(BoxText, TextWidth, measure_), ButtonSet(BoxType)};
        if ((type & SecondButtonDefault) != 0 && request.buttons.size() > 1) {
            request.defaultButton = 1;
        }
        BoxAnswer = dialogs_.showMessage(request);
    }
    return ResultOf(BoxAnswer);
}

void Boxes::MessageBoxShort(const std::string& text, int /*type*/, const std::string& title) {
    LastBoxResult = MessageBoxFull(text, 0, title);
}

std::string Boxes::InputBox(const std::string& prompt, const std::string& title,
                            const std::string& defaultText) {
    BoxText = prompt;
    BoxTitle = title;
    InputDefault = defaultText;
    // The box is waited for until its answer differs from a random sentinel text.
    const std::string sentinel = NumberToText(random_.next());
    InputAnswer = sentinel;
    while (InputAnswer == sentinel) {
        const InputBoxRequest request{BoxTitle, BoxText,
                                      ShortenTitle(BoxTitle, TitleWidth, measure_),
                                      WrapText(BoxText, TextWidth, measure_), InputDefault};
        InputAnswer = dialogs_.showInput(request).value_or(std::string());
    }
    return InputAnswer;
}

} // namespace lorvane
