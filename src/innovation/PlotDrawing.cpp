#include "innovation/PlotDrawing.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "frame/Control.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "innovation/ResponsePlot.h"
#include "platform/RecordingSurface.h"

namespace lorvane {

namespace {

constexpr double TwipsPerPixel = 15;
// The surface's own pen width, one pixel; the response and the band dots are half as wide
// again. Pen widths are whole pixels, as on the module's home platform, so that is two.
constexpr double DefaultWidth = 1;
constexpr double HeavyWidth = 2;
// Blank between the labels and what they label, in widths of two digits.
constexpr double LabelGap = 0.3;

// Positions of values and horizons inside the frame.
class Placement {
public:
    Placement(const PlotFrame& frame, double yMax, double yMin)
        : frame_(frame), yMax_(yMax), yScale_(CheckedDivide(1, yMax - yMin)),
          xScale_(CheckedDivide(1, frame.H)) {}

    double X(int h) const { return frame_.Left + (frame_.Right - frame_.Left) * h * xScale_; }
    double Y(double y) const {
        return frame_.Top + (frame_.Bottom - frame_.Top) * (0.05 + 0.9 * (yMax_ - y) * yScale_);
    }
    bool Inside(double y) const { return y > frame_.Top && y < frame_.Bottom; }

private:
    PlotFrame frame_;
    double yMax_;
    double yScale_;
    double xScale_;
};

} // namespace

PlotFrame DrawResponsePlot(Surface& surface, const ResponsePlot& plot) {
    surface.setScale(0, 0, PlotWidth, PlotHeight);
    surface.clear(PlotBackground);
    surface.setDrawStyle(DrawStyle::Solid);
    surface.setDrawWidth(DefaultWidth);

    const int H = plot.H;
    const double yMax = 1.05 * plot.M;
    const double yMin = -1.05 * plot.M;
    const std::string topLabel = Trim(FormatNumber(yMax, "0.0000E+000"));
    const std::string bottomLabel = Trim(FormatNumber(yMin, "0.0000E+000"));
    const std::string zeroLabel = "0";
    const std::string endLabel = TrimLeft(NumberToText(H));

    const double textHeight = surface.textHeight(zeroLabel);
    const double gap = LabelGap * surface.textWidth("00");
    const double labelWidth =
        std::max({surface.textWidth(topLabel), surface.textWidth(bottomLabel), 0.01});

    PlotFrame frame;
    frame.H = plot.H;
    frame.Left = gap + labelWidth + gap;
    frame.Top = textHeight / 2;
    frame.Right = PlotWidth - std::max(0.01, gap);
    frame.Bottom = PlotHeight - 1.05 * textHeight;
    const Placement at(frame, yMax, yMin);

    surface.box(frame.Left, frame.Top, frame.Right, frame.Bottom, PlotFrameColour);

    const double zero = at.Y(0);
    for (int h = 0; h < H; ++h) {
        const auto i = static_cast<std::size_t>(h);
        surface.setDrawWidth(HeavyWidth);
        surface.line(at.X(h), at.Y(plot.Psi[i]), at.X(h + 1), at.Y(plot.Psi[i + 1]),
                     PlotResponseColour);
        surface.setDrawWidth(DefaultWidth);
        surface.setDrawStyle(DrawStyle::Dash);
        surface.line(at.X(h), zero, at.X(h + 1), zero, PlotZeroColour);
        surface.setDrawStyle(DrawStyle::Solid);
    }

    // The bands: dots at one and two standard errors on either side; a dot outside the frame
    // is left out rather than pressed against its edge. An impact without a known uncertainty
    // has no band.
    surface.setDrawWidth(HeavyWidth);
    for (int h = plot.ImpactBand ? 0 : 1; h <= H; ++h) {
        const auto i = static_cast<std::size_t>(h);
        for (int k = 1; k <= 2; ++k) {
            for (const double y : {plot.Psi[i] + k * plot.SE[i], plot.Psi[i] - k * plot.SE[i]}) {
                if (at.Inside(at.Y(y))) {
                    surface.dot(at.X(h), at.Y(y), PlotBandColour);
                }
            }
        }
    }

    surface.setDrawWidth(DefaultWidth);
    const double tick = textHeight / 4;
    for (int h = 0; h <= H; ++h) {
        surface.line(at.X(h), zero - tick, at.X(h), zero + tick, PlotZeroColour);
    }

    // Value labels right-aligned against the frame, centred on the heights of the values they
    // name (the largest and the smallest lie a little inside the frame).
    const auto valueLabel = [&](const std::string& label, double y) {
        surface.text(frame.Left - gap - surface.textWidth(label), y - textHeight / 2, label,
                     PlotTextColour);
    };
    valueLabel(topLabel, at.Y(yMax));
    valueLabel(bottomLabel, at.Y(yMin));
    valueLabel(zeroLabel, zero);

    // Below the frame: the first and the last horizon at its ends, the title centred between
    // them (or, when it is too long for that, starting behind the first).
    const double below = frame.Bottom + 0.05 * textHeight;
    surface.text(frame.Left, below, zeroLabel, PlotTextColour);
    surface.text(frame.Right - surface.textWidth(endLabel), below, endLabel, PlotTextColour);
    const double titleFrom = frame.Left + surface.textWidth(zeroLabel) + 2 * gap;
    const double titleWidth = surface.textWidth(plot.Title);
    surface.text(std::max(titleFrom, (frame.Left + frame.Right - titleWidth) / 2), below,
                 plot.Title, PlotTextColour);
    return frame;
}

Int16 HorizonAt(double x, int H, double left, double right) {
    const double fraction = (left - x) / (left - right);
    Int16 h = CInt(H * fraction);
    if (h > H) {
        h = H;
    }
    return h;
}

std::shared_ptr<Surface> MakeDrawing(const Module& module, const Control& picture) {
    const int width = static_cast<int>(std::lround(picture.Width / TwipsPerPixel));
    const int height = static_cast<int>(std::lround(picture.Height / TwipsPerPixel));
    if (SurfaceFactory* surfaces = module.platform().surfaces) {
        return surfaces->create(width, height);
    }
    return std::make_shared<RecordingSurface>(width, height);
}

} // namespace lorvane
