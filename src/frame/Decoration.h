#pragma once

namespace lorvane {

class Module;
class Screen;
struct Control;

// The screen's heading: a bold white-on-blue bar across the top of the screen.
void DecorateHeader(Screen& screen, Control& label);
// Text boxes in the fixed-pitch font of the frame, lists in its sans font.
void FontOfNotepadText(Control& control);
void FontOfArialText(Control& control);
// Moves a control so that its right edge lines up with that of the reference.
void AlignRightEdge(Control& moved, const Control& reference);
// In full size: every control's geometry grows with the frame, its font with the lesser ratio,
// and the screen takes the frame's inner size.
void ScaleToFrame(const Module& module, Screen& screen);

} // namespace lorvane
