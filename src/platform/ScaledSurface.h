#pragma once

#include <cmath>

#include "platform/Surface.h"

namespace lorvane {

// How the logical units of a picture lie on its pixels: the picture's size in pixels and the
// logical positions of its left top and right bottom corners.
struct PictureScale {
    int widthPixels;
    int heightPixels;
    double left;
    double top;
    double right;
    double bottom;

    double PixelX(double x) const { return (x - left) / (right - left) * widthPixels; }
    double PixelY(double y) const { return (y - top) / (bottom - top) * heightPixels; }
    double LogicalX(double pixelX) const { return left + pixelX / widthPixels * (right - left); }
    double LogicalY(double pixelY) const { return top + pixelY / heightPixels * (bottom - top); }
    // A length in pixels as a positive length in logical units, across and down.
    double UnitsAcross(double pixels) const {
        return pixels / widthPixels * std::abs(right - left);
    }
    double UnitsDown(double pixels) const { return pixels / heightPixels * std::abs(bottom - top); }
};

// What every picture surface keeps besides its drawing: the scale (in twips, 15 to a pixel,
// until the picture sets up its own), the draw width in pixels and the draw style.
class ScaledSurface : public Surface {
public:
    void setScale(double left, double top, double right, double bottom) override;
    void setDrawWidth(double width) override;
    void setDrawStyle(DrawStyle style) override;

    const PictureScale& Scale() const { return scale_; }

protected:
    // At least one pixel each way.
    ScaledSurface(int widthPixels, int heightPixels);

    // A scale without extent would divide by zero: it keeps the previous one and gives false.
    bool ChangeScale(double left, double top, double right, double bottom);
    double DrawWidth() const { return drawWidth_; }
    DrawStyle Style() const { return style_; }

private:
    PictureScale scale_;
    double drawWidth_ = 1;
    DrawStyle style_ = DrawStyle::Solid;
};

} // namespace lorvane
