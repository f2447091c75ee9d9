#include "QtSurface.h"

#include <algorithm>
#include <cmath>

#include <QFile>
#include <QFontMetricsF>
#include <QPainter>
#include <QPen>

#include "Style.h"

namespace lorvane::gui {

namespace {

// Pictures are drawn at 96 dots per inch on every machine, so that a saved bitmap does not
// depend on the display it was drawn for.
constexpr int DotsPerMeter = 3780;

// The text font of pictures: the sans font at 8.25 points, given in pixels at 96 dpi.
constexpr int TextPixels = 11;

} // namespace

QtSurface::QtSurface(int widthPixels, int heightPixels)
    : image_(std::max(widthPixels, 1), std::max(heightPixels, 1), QImage::Format_RGB32),
      font_(SansFont(TextPoints)), right_(image_.width() * TwipsPerPixel),
      bottom_(image_.height() * TwipsPerPixel) {
    image_.setDotsPerMeterX(DotsPerMeter);
    image_.setDotsPerMeterY(DotsPerMeter);
    image_.fill(Qt::white);
    font_.setPixelSize(TextPixels);
}

void QtSurface::setScale(double left, double top, double right, double bottom) {
    // A scale without extent would divide by zero; it keeps the previous one.
    if (right == left || bottom == top) {
        return;
    }
    left_ = left;
    top_ = top;
    right_ = right;
    bottom_ = bottom;
}

void QtSurface::setDrawWidth(double width) {
    drawWidth_ = std::max(1.0, width);
}

void QtSurface::setDrawStyle(DrawStyle style) {
    style_ = style;
}

QPointF QtSurface::toPixels(double x, double y) const {
    return {(x - left_) / (right_ - left_) * image_.width(),
            (y - top_) / (bottom_ - top_) * image_.height()};
}

QPointF QtSurface::toLogical(QPointF pixels) const {
    return {left_ + pixels.x() / image_.width() * (right_ - left_),
            top_ + pixels.y() / image_.height() * (bottom_ - top_)};
}

QPen QtSurface::pen(Colour colour) const {
    QPen pen(ToQColor(colour), drawWidth_);
    pen.setCapStyle(Qt::RoundCap);
    // Dashes and dots are drawn with thin lines only, as on the module's home platform.
    if (drawWidth_ <= 1) {
        if (style_ == DrawStyle::Dash) {
            pen.setStyle(Qt::DashLine);
        } else if (style_ == DrawStyle::Dot) {
            pen.setStyle(Qt::DotLine);
        }
    }
    return pen;
}

void QtSurface::clear(Colour background) {
    image_.fill(ToQColor(background));
}

void QtSurface::line(double x1, double y1, double x2, double y2, Colour colour) {
    QPainter painter(&image_);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(pen(colour));
    painter.drawLine(toPixels(x1, y1), toPixels(x2, y2));
}

void QtSurface::box(double x1, double y1, double x2, double y2, Colour colour) {
    QPainter painter(&image_);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(pen(colour));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(toPixels(x1, y1), toPixels(x2, y2)).normalized());
}

void QtSurface::dot(double x, double y, Colour colour) {
    QPainter painter(&image_);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF centre = toPixels(x, y);
    if (drawWidth_ <= 1) {
        painter.setPen(ToQColor(colour));
        painter.drawPoint(QPoint(static_cast<int>(std::floor(centre.x())),
                                 static_cast<int>(std::floor(centre.y()))));
        return;
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(ToQColor(colour));
    painter.drawEllipse(centre, drawWidth_ / 2, drawWidth_ / 2);
}

double QtSurface::textWidth(const std::string& text) const {
    const QFontMetricsF metrics(font_, &image_);
    return metrics.horizontalAdvance(ToQt(text)) / image_.width() * std::abs(right_ - left_);
}

double QtSurface::textHeight(const std::string& /*text*/) const {
    const QFontMetricsF metrics(font_, &image_);
    return metrics.height() / image_.height() * std::abs(bottom_ - top_);
}

void QtSurface::text(double x, double y, const std::string& text, Colour colour) {
    QPainter painter(&image_);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setFont(font_);
    painter.setPen(ToQColor(colour));
    // The position is the text's top left corner.
    const QFontMetricsF metrics(font_, &image_);
    const QPointF at = toPixels(x, y);
    painter.drawText(QPointF(at.x(), at.y() + metrics.ascent()), ToQt(text));
}

bool QtSurface::saveBitmap(const std::filesystem::path& file) const {
    return image_.save(QFile::decodeName(file.string().c_str()), "BMP");
}

std::unique_ptr<Surface> QtSurfaceFactory::create(int widthPixels, int heightPixels) {
    return std::make_unique<QtSurface>(widthPixels, heightPixels);
}

} // namespace lorvane::gui
