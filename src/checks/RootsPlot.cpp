#include "checks/RootsPlot.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>

#include "innovation/PlotDrawing.h"

namespace lorvane {

namespace {

constexpr int CircleSegments = 120;
constexpr double RootWidth = 5;

} // namespace

void DrawRootsPlot(Surface& surface, const std::vector<CompanionRoot>& roots) {
    surface.setScale(0, 0, 1, 1);
    surface.clear(PlotBackground);
    surface.setDrawStyle(DrawStyle::Solid);
    surface.setDrawWidth(1);

    const std::string title = "Roots and the unit circle";
    const double textHeight = surface.textHeight(title);
    // The square of the plane, above the title.
    const double side = 1 - 1.5 * textHeight;
    const double left = (1 - side) / 2;
    double reach = 1;
    for (const CompanionRoot& root : roots) {
        reach = std::max(reach, root.Modulus);
    }
    const double scale = side / 2 / (1.1 * reach);
    const double centreX = left + side / 2;
    const double centreY = side / 2;
    const auto X = [&](double real) { return centreX + scale * real; };
    const auto Y = [&](double imaginary) { return centreY - scale * imaginary; };

    surface.box(left, 0, left + side, side, PlotFrameColour);
    surface.setDrawStyle(DrawStyle::Dash);
    surface.line(left, centreY, left + side, centreY, PlotZeroColour);
    surface.line(centreX, 0, centreX, side, PlotZeroColour);
    surface.setDrawStyle(DrawStyle::Solid);
    for (int s = 0; s < CircleSegments; ++s) {
        const double from = 2 * std::numbers::pi * s / CircleSegments;
        const double to = 2 * std::numbers::pi * (s + 1) / CircleSegments;
        surface.line(X(std::cos(from)), Y(std::sin(from)), X(std::cos(to)), Y(std::sin(to)),
                     PlotBandColour);
    }
    surface.setDrawWidth(RootWidth);
    for (const CompanionRoot& root : roots) {
        surface.dot(X(root.Real), Y(root.Imaginary), PlotResponseColour);
    }
    surface.setDrawWidth(1);
    surface.text(std::max(0.0, 0.5 - surface.textWidth(title) / 2), side + 0.25 * textHeight, title,
                 PlotTextColour);
}

} // namespace lorvane
