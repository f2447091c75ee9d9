#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace lorvane {

// A message box as the module has laid it out: title and text as composed, the same as they
// are shown (the title shortened to fit, the text folded), and the captions of the buttons in
// focus order.
struct MessageBoxRequest {
    std::string title;
    std::string text;
    std::string shownTitle;
    std::string shownText;
    std::vector<std::string> buttons;
    // The button that Enter presses when the box opens: an index into buttons.
    std::size_t defaultButton = 0;
};

struct InputBoxRequest {
    std::string title;
    std::string prompt;
    std::string shownTitle;
    std::string shownPrompt;
    std::string defaultText;
};

// Either box, as asked.
using BoxRequest = std::variant<MessageBoxRequest, InputBoxRequest>;

// Shows the module's boxes. The logic of a box (buttons, folding, results) lives in the core;
// a platform only presents it and reports what the user did.
class Dialogs {
public:
    virtual ~Dialogs() = default;
    // Blocks (keeping the event loop alive) and returns the caption of the pressed button.
    virtual std::string showMessage(const MessageBoxRequest& request) = 0;
    // Blocks and returns the typed text, or nothing when the box was cancelled.
    virtual std::optional<std::string> showInput(const InputBoxRequest& request) = 0;
};

} // namespace lorvane
