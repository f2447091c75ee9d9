#pragma once

#include <memory>
#include <string>
#include <vector>

#include "frame/Int16.h"

namespace lorvane {

class Surface;

enum class ControlKind {
    Label,
    Button,
    TextBox,
    ListBox,
    CheckBox,
    OptionButton,
    Frame,
    Picture,
    Timer
};

enum class FontFace { Sans, Fixed };

// One control of a screen as plain state. Views and the script driver find it by name and
// re-read it after every event. Geometry is in twips.
struct Control {
    // Results text boxes hold at most this many characters.
    static constexpr std::size_t TextLimit = 32767;

    std::string Name;
    ControlKind Kind = ControlKind::Label;
    // The caption, or the text of a text box.
    std::string Caption;
    bool Visible = true;
    bool Enabled = true;
    // The frame the control sits in, if any: hiding the frame hides the control.
    std::string Container;
    double Left = 0;
    double Top = 0;
    double Width = 0;
    double Height = 0;
    FontFace Font = FontFace::Sans;
    double FontSize = 8.25;
    bool Bold = false;
    // Buttons: Enter presses the screen's default button, Escape its cancel button.
    bool Default = false;
    bool Cancel = false;
    // A label decorated as the screen's heading.
    bool Heading = false;
    // Text boxes: several lines, read-only, with scroll bars; prose folds its lines at the box's
    // edge, reports and tables keep theirs.
    bool MultiLine = false;
    bool WordWrap = false;
    bool Locked = false;
    // List boxes: their items, the current item (-1 for none) and the highlighted items.
    std::vector<std::string> Items;
    int ListIndex = -1;
    std::vector<bool> Highlighted;
    bool MultiSelect = false;
    // Check boxes and option buttons: 0 or 1.
    Int16 Value;
    // Timers: the interval in milliseconds, 0 when off.
    int Interval = 0;
    // Pictures: the surface drawn on, made by the screen through the platform's surfaces; the
    // view shows it. Empty for every other control.
    std::shared_ptr<Surface> Drawing;

    // Sets the text of a text box; false (and nothing changes) when it exceeds TextLimit.
    bool SetText(std::string text);

    void AddItem(std::string item);
    void RemoveItem(int index);
    void ClearItems();
    int ListCount() const { return static_cast<int>(Items.size()); }
    bool IsHighlighted(int index) const;
    void SetHighlighted(int index, bool on);
};

} // namespace lorvane
