#include "platform/ScaledSurface.h"

#include <algorithm>

namespace lorvane {

namespace {

constexpr double TwipsPerPixel = 15;

} // namespace

ScaledSurface::ScaledSurface(int widthPixels, int heightPixels)
    : scale_{std::max(widthPixels, 1), std::max(heightPixels, 1), 0, 0, 0, 0} {
    scale_.right = scale_.widthPixels * TwipsPerPixel;
    scale_.bottom = scale_.heightPixels * TwipsPerPixel;
}

bool ScaledSurface::ChangeScale(double left, double top, double right, double bottom) {
    if (right == left || bottom == top) {
        return false;
    }
    scale_.left = left;
    scale_.top = top;
    scale_.right = right;
    scale_.bottom = bottom;
    return true;
}

void ScaledSurface::setScale(double left, double top, double right, double bottom) {
    ChangeScale(left, top, right, bottom);
}

void ScaledSurface::setDrawWidth(double width) {
    drawWidth_ = std::max(1.0, width);
}

void ScaledSurface::setDrawStyle(DrawStyle style) {
    style_ = style;
}

} // namespace lorvane
