#include "frame/Decoration.h"

#include <algorithm>

#include "frame/Module.h"
#include "platform/Screens.h"

namespace lorvane {

void DecorateHeader(Screen& screen, Control& label) {
    label.Heading = true;
    label.Bold = true;
    label.Top = 0;
    label.Left = 0;
    label.Width = screen.Width;
    label.Height = std::max(label.Height, 285.0) * 1.1;
}

void FontOfNotepadText(Control& control) {
    control.Font = FontFace::Fixed;
}

void FontOfArialText(Control& control) {
    control.Font = FontFace::Sans;
}

void AlignRightEdge(Control& moved, const Control& reference) {
    moved.Left = reference.Left + reference.Width - moved.Width;
}

void ScaleToFrame(const Module& module, Screen& screen) {
    if (module.FullSize != 1) {
        return;
    }
    const double innerWidth = module.platform().screens.screenWidth();
    const double innerHeight = module.platform().screens.screenHeight();
    const double xRatio = innerWidth / module.FrameClientWidth;
    const double yRatio = innerHeight / module.FrameClientHeight;
    for (Control& control : screen.Controls()) {
        control.Left *= xRatio;
        control.Top *= yRatio;
        control.Width *= xRatio;
        control.Height *= yRatio;
        control.FontSize *= std::min(xRatio, yRatio);
    }
    // A full-frame screen takes the frame's inner size; a smaller one grows like its controls.
    const bool fullFrame =
        screen.Width >= module.FrameClientWidth && screen.Height >= module.FrameClientHeight;
    screen.Width = fullFrame ? innerWidth : screen.Width * xRatio;
    screen.Height = fullFrame ? innerHeight : screen.Height * yRatio;
}

} // namespace lorvane
