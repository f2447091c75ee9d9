#include "QtSurface.h"

#include <cmath>

#include <QFile>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QPen>
#include <QScreen>

#include "Style.h"

namespace lorvane::gui {

namespace {

// Pictures are drawn at 96 dots per inch on every machine, so that a saved bitmap does not
// depend on the display it was drawn for.
constexpr int DotsPerMeter = 3780;

// The text font of pictures: the sans font at 8.25 points, given in pixels at 96 dpi.
constexpr int TextPixels = 11;

} // namespace

QtSurface::QtSurface(int widthPixels, int heightPixels, double pixelRatio)
    : ScaledSurface(widthPixels, heightPixels),
      image_(Scale().widthPixels, Scale().heightPixels, QImage::Format_RGB32),
      font_(SansFont(TextPoints)) {
    image_.setDotsPerMeterX(DotsPerMeter);
    image_.setDotsPerMeterY(DotsPerMeter);
    image_.fill(Qt::white);
    if (pixelRatio > 1) {
        shown_ =
            QImage(static_cast<int>(std::ceil(image_.width() * pixelRatio)),
                   static_cast<int>(std::ceil(image_.height() * pixelRatio)), QImage::Format_RGB32);
        shown_.setDevicePixelRatio(pixelRatio);
        shown_.fill(Qt::white);
    }
    font_.setPixelSize(TextPixels);
}

template <typename Draw> void QtSurface::paint(const Draw& draw) {
    {
        QPainter painter(&image_);
        draw(painter);
    }
    if (!shown_.isNull()) {
        QPainter painter(&shown_);
        draw(painter);
    }
}

QPointF QtSurface::toPixels(double x, double y) const {
    return {Scale().PixelX(x), Scale().PixelY(y)};
}

QPointF QtSurface::toLogical(QPointF pixels) const {
    return {Scale().LogicalX(pixels.x()), Scale().LogicalY(pixels.y())};
}

QPen QtSurface::pen(Colour colour) const {
    QPen pen(ToQColor(colour), DrawWidth());
    pen.setCapStyle(Qt::RoundCap);
    // Dashes and dots are drawn with thin lines only, as on the module's home platform.
    if (DrawWidth() <= 1) {
        if (Style() == DrawStyle::Dash) {
            pen.setStyle(Qt::DashLine);
        } else if (Style() == DrawStyle::Dot) {
            pen.setStyle(Qt::DotLine);
        }
    }
    return pen;
}

void QtSurface::clear(Colour background) {
    image_.fill(ToQColor(background));
    if (!shown_.isNull()) {
        shown_.fill(ToQColor(background));
    }
}

void QtSurface::line(double x1, double y1, double x2, double y2, Colour colour) {
    paint([&](QPainter& painter) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(pen(colour));
        painter.drawLine(toPixels(x1, y1), toPixels(x2, y2));
    });
}

void QtSurface::box(double x1, double y1, double x2, double y2, Colour colour) {
    paint([&](QPainter& painter) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(pen(colour));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(QRectF(toPixels(x1, y1), toPixels(x2, y2)).normalized());
    });
}

void QtSurface::dot(double x, double y, Colour colour) {
    const QPointF centre = toPixels(x, y);
    paint([&](QPainter& painter) {
        painter.setRenderHint(QPainter::Antialiasing);
        if (DrawWidth() <= 1) {
            painter.setPen(ToQColor(colour));
            painter.drawPoint(QPoint(static_cast<int>(std::floor(centre.x())),
                                     static_cast<int>(std::floor(centre.y()))));
            return;
        }
        // Decision: a heavy dot is a disc two and a half times as wide as the pen, so that the
        // bands show on the bitmap and on the screen.
        const double radius = 1.25 * DrawWidth();
        painter.setPen(Qt::NoPen);
        painter.setBrush(ToQColor(colour));
        painter.drawEllipse(centre, radius, radius);
    });
}

double QtSurface::textWidth(const std::string& text) const {
    const QFontMetricsF metrics(font_, &image_);
    return Scale().UnitsAcross(metrics.horizontalAdvance(ToQt(text)));
}

double QtSurface::textHeight(const std::string& /*text*/) const {
    const QFontMetricsF metrics(font_, &image_);
    return Scale().UnitsDown(metrics.height());
}

void QtSurface::text(double x, double y, const std::string& text, Colour colour) {
    // The position is the text's top left corner.
    const QFontMetricsF metrics(font_, &image_);
    const QPointF at = toPixels(x, y);
    paint([&](QPainter& painter) {
        painter.setRenderHint(QPainter::TextAntialiasing);
        painter.setFont(font_);
        painter.setPen(ToQColor(colour));
        painter.drawText(QPointF(at.x(), at.y() + metrics.ascent()), ToQt(text));
    });
}

bool QtSurface::saveBitmap(const std::filesystem::path& file) const {
    return image_.save(QFile::decodeName(file.string().c_str()), "BMP");
}

std::unique_ptr<Surface> QtSurfaceFactory::create(int widthPixels, int heightPixels) {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return std::make_unique<QtSurface>(widthPixels, heightPixels,
                                       screen != nullptr ? screen->devicePixelRatio() : 1);
}

} // namespace lorvane::gui
