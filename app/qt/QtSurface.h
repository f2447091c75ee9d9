#pragma once

#include <QFont>
#include <QImage>
#include <QPen>
#include <QPointF>

#include "platform/Surface.h"

namespace lorvane::gui {

// A picture's drawing surface on a QImage. Positions are in the logical units that setScale
// sets up (until then in twips, 15 to a pixel); the draw width is in pixels.
class QtSurface : public Surface {
public:
    QtSurface(int widthPixels, int heightPixels);

    void setScale(double left, double top, double right, double bottom) override;
    void setDrawWidth(double width) override;
    void setDrawStyle(DrawStyle style) override;
    void clear(Colour background) override;
    void line(double x1, double y1, double x2, double y2, Colour colour) override;
    void box(double x1, double y1, double x2, double y2, Colour colour) override;
    void dot(double x, double y, Colour colour) override;
    double textWidth(const std::string& text) const override;
    double textHeight(const std::string& text) const override;
    void text(double x, double y, const std::string& text, Colour colour) override;
    bool saveBitmap(const std::filesystem::path& file) const override;

    // The logical units of the picture: the corners at the left top and the right bottom.
    struct Scale {
        double left;
        double top;
        double right;
        double bottom;
    };
    Scale scale() const { return {left_, top_, right_, bottom_}; }

    const QImage& image() const { return image_; }
    // Between pixel positions of the image and the logical units.
    QPointF toPixels(double x, double y) const;
    QPointF toLogical(QPointF pixels) const;

private:
    QPen pen(Colour colour) const;

    QImage image_;
    QFont font_;
    double left_ = 0;
    double top_ = 0;
    double right_;
    double bottom_;
    double drawWidth_ = 1;
    DrawStyle style_ = DrawStyle::Solid;
};

class QtSurfaceFactory : public SurfaceFactory {
public:
    std::unique_ptr<Surface> create(int widthPixels, int heightPixels) override;
};

} // namespace lorvane::gui
