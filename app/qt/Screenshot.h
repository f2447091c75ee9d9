#pragma once

#include <string>

#include <QImage>

namespace lorvane::gui {

class Wallpaper;

// What the frame shows now, with its visible screens, rendered off the screen (this works on
// the offscreen platform too).
QImage RenderFrame(Wallpaper& frame);

// Writes RenderFrame as a PNG file; false when it cannot be written.
bool SaveScreenshot(Wallpaper& frame, const std::string& file);

} // namespace lorvane::gui
