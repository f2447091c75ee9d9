#pragma once

#include <QFont>
#include <QImage>
#include <QPen>
#include <QPointF>

#include "platform/ScaledSurface.h"

namespace lorvane::gui {

// A picture's drawing surface on a QImage. Positions are in the logical units that setScale
// sets up (until then in twips, 15 to a pixel); the draw width is in pixels.
class QtSurface : public ScaledSurface {
public:
    // On a display with more than one device pixel to a pixel (pixelRatio), the surface draws a
    // second image at the display's resolution for the screen; the bitmap keeps the picture's
    // own size.
    QtSurface(int widthPixels, int heightPixels, double pixelRatio = 1);

    void clear(Colour background) override;
    void line(double x1, double y1, double x2, double y2, Colour colour) override;
    void box(double x1, double y1, double x2, double y2, Colour colour) override;
    void dot(double x, double y, Colour colour) override;
    double textWidth(const std::string& text) const override;
    double textHeight(const std::string& text) const override;
    void text(double x, double y, const std::string& text, Colour colour) override;
    bool saveBitmap(const std::filesystem::path& file) const override;

    // The picture as the bitmap holds it, and as the screen shows it (the same drawing, at the
    // display's resolution).
    const QImage& image() const { return image_; }
    const QImage& shownImage() const { return shown_.isNull() ? image_ : shown_; }
    // Between pixel positions of the image and the logical units.
    QPointF toPixels(double x, double y) const;
    QPointF toLogical(QPointF pixels) const;

private:
    QPen pen(Colour colour) const;
    // Runs the drawing on the bitmap and on the screen's image.
    template <typename Draw> void paint(const Draw& draw);

    QImage image_;
    QImage shown_;
    QFont font_;
};

class QtSurfaceFactory : public SurfaceFactory {
public:
    std::unique_ptr<Surface> create(int widthPixels, int heightPixels) override;
};

} // namespace lorvane::gui
