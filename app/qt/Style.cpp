#include "Style.h"

#include <algorithm>
#include <cmath>

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QLabel>
#include <QStyle>

namespace lorvane::gui {

QString ToQt(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string FromQt(const QString& text) {
    return text.toStdString();
}

QString Shown(std::string_view text) {
    QString shown = ToQt(text);
    shown.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    shown.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return shown;
}

std::string Kept(const QString& text) {
    QString kept = text;
    kept.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    kept.replace(QLatin1Char('\n'), QLatin1String("\r\n"));
    return FromQt(kept);
}

QColor ToQColor(Colour colour) {
    return QColor(static_cast<int>((colour >> 16) & 0xFF), static_cast<int>((colour >> 8) & 0xFF),
                  static_cast<int>(colour & 0xFF));
}

QFont SansFont(double points, bool bold) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPointSizeF(points > 0 ? points : TextPoints);
    font.setBold(bold);
    return font;
}

namespace {

// Whether the characters of the reports all take one advance: some fonts that do (Noto Sans Mono
// under Qt 6.4) do not say they are of fixed pitch, and some platforms' fixed font is not.
bool EqualAdvances(const QFont& font) {
    const QFontMetricsF metrics(font);
    const QString sample = QStringLiteral("0123456789 .-+EeiIlmMW");
    for (const QChar c : sample) {
        if (metrics.horizontalAdvance(c) != metrics.horizontalAdvance(sample[0])) {
            return false;
        }
    }
    return true;
}

// The first of DejaVu Sans Mono (installed with the module), the system's fixed font and the
// family "monospace" whose advances are equal.
QFont FixedFamily() {
    QFont monospace(QStringLiteral("monospace"));
    monospace.setStyleHint(QFont::Monospace);
    monospace.setFixedPitch(true);
    const QFont candidates[] = {QFont(QStringLiteral("DejaVu Sans Mono")),
                                QFontDatabase::systemFont(QFontDatabase::FixedFont), monospace};
    for (const QFont& font : candidates) {
        if (EqualAdvances(font)) {
            return font;
        }
    }
    return monospace;
}

} // namespace

QFont FixedFont(double points, bool bold) {
    static const QFont family = FixedFamily();
    QFont font = family;
    font.setPointSizeF(points > 0 ? points : TextPoints);
    font.setBold(bold);
    return font;
}

double ReportPoints(double boxTwips) {
    static const double columnPixels =
        QFontMetricsF(FixedFont(ControlPoints))
            .horizontalAdvance(QString(ReportColumns, QLatin1Char('0')));
    // The box's frame and the text's margins, and the scroll bar.
    const double room = std::max(boxTwips, ReportBoxTwips) / TwipsPerPixel - 4 * Spacing -
                        QApplication::style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    return std::min(ControlPoints, std::floor(ControlPoints * room / columnPixels * 4) / 4);
}

QFont FontOf(FontFace face, double points, bool bold) {
    return face == FontFace::Fixed ? FixedFont(points, bold) : SansFont(points, bold);
}

void StyleHeading(QLabel* label) {
    label->setStyleSheet(
        QStringLiteral("QLabel { background-color: %1; color: %2; border: 1px solid %3; }")
            .arg(HeadingBackground.name(), HeadingText.name(),
                 HeadingBackground.darker(160).name()));
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    label->setIndent(Spacing);
}

} // namespace lorvane::gui
