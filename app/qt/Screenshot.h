#pragma once

#include <string>

#include <QImage>

#include "platform/Dialogs.h"

namespace lorvane::gui {

class Wallpaper;

// The frame's views follow the module, laid out as on the screen: a frame that was never shown
// is shown where nobody sees it (this works on the offscreen platform too).
void Follow(Wallpaper& frame);

// What the frame shows now, with its visible screens and the box over it when one is given,
// centred as the desktop shows it.
QImage RenderFrame(Wallpaper& frame, const BoxRequest* box = nullptr);

// Writes RenderFrame as a PNG file; false when it cannot be written.
bool SaveScreenshot(Wallpaper& frame, const std::string& file, const BoxRequest* box = nullptr);

} // namespace lorvane::gui
