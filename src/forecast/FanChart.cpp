#include "forecast/FanChart.h"

#include <algorithm>

#include "forecast/Forecast.h"
#include "frame/NumberText.h"
#include "innovation/PlotDrawing.h"

namespace lorvane {

namespace {

constexpr Colour Band95 = 0xF6D2A8;
constexpr Colour Band68 = 0xE89A48;

} // namespace

void DrawFanChart(Surface& surface, const FanChart& chart) {
    surface.setScale(0, 0, PlotWidth, PlotHeight);
    surface.clear(PlotBackground);
    surface.setDrawStyle(DrawStyle::Solid);
    surface.setDrawWidth(1);

    const std::size_t past = chart.History.size();
    const std::size_t steps = chart.Points.size();
    double low = *std::min_element(chart.History.begin(), chart.History.end());
    double high = *std::max_element(chart.History.begin(), chart.History.end());
    for (std::size_t h = 0; h < steps; ++h) {
        low = std::min(low, chart.Points[h] - Interval95 * chart.SE[h]);
        high = std::max(high, chart.Points[h] + Interval95 * chart.SE[h]);
    }
    const double margin = 0.05 * std::max(high - low, 1e-12);
    low -= margin;
    high += margin;

    const std::string topLabel = Trim(FormatNumber(high, "0.0000E+000"));
    const std::string bottomLabel = Trim(FormatNumber(low, "0.0000E+000"));
    const double textHeight = surface.textHeight(topLabel);
    const double gap = 0.3 * surface.textWidth("00");
    const double left =
        2 * gap + std::max({surface.textWidth(topLabel), surface.textWidth(bottomLabel), 0.01});
    const double right = PlotWidth - std::max(0.01, gap);
    const double top = textHeight / 2;
    const double bottom = PlotHeight - 1.05 * textHeight;
    const double count = static_cast<double>(past + steps - 1);
    const auto X = [&](std::size_t i) { return left + (right - left) * i / count; };
    const auto Y = [&](double y) { return bottom - (bottom - top) * (y - low) / (high - low); };

    // The bands as vertical strokes, one pixel column at a time, between the steps; the
    // origin's point belongs to both ends.
    const auto band = [&](double z, Colour colour) {
        const double origin = chart.History.back();
        for (std::size_t h = 0; h < steps; ++h) {
            const double x0 = X(past - 1 + h);
            const double x1 = X(past + h);
            const double y0 = h == 0 ? origin : chart.Points[h - 1];
            const double s0 = h == 0 ? 0 : chart.SE[h - 1];
            const int strokes = 40;
            for (int k = 0; k <= strokes; ++k) {
                const double f = static_cast<double>(k) / strokes;
                const double y = y0 + f * (chart.Points[h] - y0);
                const double s = s0 + f * (chart.SE[h] - s0);
                const double x = x0 + f * (x1 - x0);
                surface.line(x, Y(y - z * s), x, Y(y + z * s), colour);
            }
        }
    };
    surface.setDrawWidth(2);
    band(Interval95, Band95);
    band(Interval68, Band68);

    surface.setDrawWidth(1);
    surface.box(left, top, right, bottom, PlotFrameColour);
    surface.setDrawStyle(DrawStyle::Dash);
    surface.line(X(past - 1), top, X(past - 1), bottom, PlotZeroColour);
    surface.setDrawStyle(DrawStyle::Solid);

    surface.setDrawWidth(2);
    for (std::size_t i = 1; i < past; ++i) {
        surface.line(X(i - 1), Y(chart.History[i - 1]), X(i), Y(chart.History[i]), PlotFrameColour);
    }
    for (std::size_t h = 0; h < steps; ++h) {
        const double from = h == 0 ? chart.History.back() : chart.Points[h - 1];
        surface.line(X(past - 1 + h), Y(from), X(past + h), Y(chart.Points[h]), PlotResponseColour);
    }

    surface.setDrawWidth(1);
    surface.text(left - gap - surface.textWidth(topLabel), top - textHeight / 2, topLabel,
                 PlotTextColour);
    surface.text(left - gap - surface.textWidth(bottomLabel), bottom - textHeight / 2, bottomLabel,
                 PlotTextColour);
    const double titleWidth = surface.textWidth(chart.Title);
    surface.text(std::max(left, (left + right - titleWidth) / 2), bottom + 0.05 * textHeight,
                 chart.Title, PlotTextColour);
}

} // namespace lorvane
