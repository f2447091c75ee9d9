#pragma once

#include <string>
#include <vector>

#include "dialogs/WrapText.h"
#include "frame/Int16.h"

namespace lorvane {

class Dialogs;
class Random;

// The module's own message and input boxes. They lay out the box (button set, folded text,
// shortened title) and hand it to the platform, which shows it and reports the pressed button.
class Boxes {
public:
    // Width of a box's text and title in characters; the GUI may measure in its own units.
    static constexpr double TextWidth = 64;
    static constexpr double TitleWidth = 56;
    static constexpr int SecondButtonDefault = 256;

    Boxes(Dialogs& dialogs, Random& random);

    // The blocking message box: type 0..5 selects the buttons (higher types count modulo 16);
    // SecondButtonDefault added to the type makes the second button the default.
    // Returns 1 OK, 2 Cancel, 3 Abort, 4 Retry, 5 Ignore, 6 Yes, 7 No.
    Int16 MessageBoxFull(const std::string& text, int type, const std::string& title);
    // The plain box: always one "OK" button, whatever type the caller hands in.
    void MessageBoxShort(const std::string& text, int type, const std::string& title);
    // The typed text, or an empty text on Cancel.
    std::string InputBox(const std::string& prompt, const std::string& title,
                         const std::string& defaultText);

    static Int16 ReducedType(int type);
    static std::vector<std::string> ButtonSet(int type);
    static Int16 ResultOf(const std::string& answer);

    void SetMeasure(TextMeasure measure) { measure_ = std::move(measure); }

    std::string BoxTitle;
    std::string BoxText;
    Int16 BoxType;
    std::string BoxAnswer;
    std::string InputDefault;
    std::string InputAnswer;
    Int16 LastBoxResult;
    Int16 BoxAutoClose;

private:
    Dialogs& dialogs_;
    Random& random_;
    TextMeasure measure_;
};

} // namespace lorvane
