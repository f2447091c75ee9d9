#pragma once

#include <string>
#include <string_view>

#include <QColor>
#include <QFont>
#include <QString>

#include "frame/Control.h"
#include "platform/Surface.h"

class QLabel;

namespace lorvane::gui {

// The logic keeps geometry in twips; on the desktop 15 twips make one device-independent pixel
// (Qt applies the display's own scale on top of that).
inline constexpr double TwipsPerPixel = 15;

// Spacing inside boxes and screens, in pixels at scale 1.
inline constexpr int Margin = 10;
inline constexpr int Spacing = 6;

// The default point size of the module's texts.
inline constexpr double TextPoints = 9;

// The heading bar of screens and boxes: white bold text on blue.
inline const QColor HeadingBackground{0x1f, 0x3f, 0x9f};
inline const QColor HeadingText{Qt::white};

// Texts of the logic are UTF-8; line breaks are CR LF.
QString ToQt(std::string_view text);
std::string FromQt(const QString& text);
// The text as a widget shows it: CR LF and lone CRs become line feeds.
QString Shown(std::string_view text);
// The text as the logic keeps it: line feeds become CR LF.
std::string Kept(const QString& text);

QColor ToQColor(Colour colour);

// Results boxes show their reports in the fixed-pitch font at the largest size (up to the
// controls' own 8.25 points) at which a report line of ReportColumns characters fits the box
// beside its scroll bar, at design size. Narrower boxes than the narrowest results box of the
// screens (ReportBoxTwips) keep that box's size and scroll across.
inline constexpr double ControlPoints = 8.25;
inline constexpr int ReportColumns = 74;
inline constexpr double ReportBoxTwips = 5880;
double ReportPoints(double boxTwips);

// The system's sans and fixed-pitch fonts at a point size.
QFont SansFont(double points, bool bold = false);
QFont FixedFont(double points, bool bold = false);
QFont FontOf(FontFace face, double points, bool bold = false);

// Gives a label the heading look.
void StyleHeading(QLabel* label);

} // namespace lorvane::gui
