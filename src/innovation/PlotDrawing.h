#pragma once

#include <memory>

#include "frame/Int16.h"
#include "platform/Surface.h"

namespace lorvane {

class Module;
struct Control;
struct ResponsePlot;

// The picture's logical size: every position of a plot is in these units.
inline constexpr double PlotWidth = 1.1;
inline constexpr double PlotHeight = 1.0;

// Colours of the plot.
inline constexpr Colour PlotBackground = 0xFFFFFF;
inline constexpr Colour PlotFrameColour = 0x3C3C3C;
inline constexpr Colour PlotResponseColour = 0x1F4FBF;
// The response and the bands differ in grey as well, so that a print in grey tells them apart.
inline constexpr Colour PlotBandColour = 0xE87800;
inline constexpr Colour PlotZeroColour = 0x7A7A7A;
inline constexpr Colour PlotTextColour = 0x1E1E1E;

// Where the frame of a drawn plot lies, in logical units, and its largest horizon: what the
// mouse handlers need to find the horizon under the pointer.
struct PlotFrame {
    Int16 H;
    double Left = 0;
    double Right = 0;
    double Top = 0;
    double Bottom = 0;
};

// Draws the response with its one and two standard error bands (as dots, at the impact only
// when the plot says so) on a cleared surface: the frame, the response as a line, the dashed
// zero line with a tick at every horizon, the value labels at the left, the horizon labels and
// the title below the frame. A response whose variable never moves (M = 0) has no vertical
// range: division by zero.
PlotFrame DrawResponsePlot(Surface& surface, const ResponsePlot& plot);

// The horizon under a horizontal position x: H times the part of the frame's width left of x,
// rounded half to even; never above H.
Int16 HorizonAt(double x, int H, double left, double right);

// A surface of the picture control's size (15 twips to a pixel) from the platform's surfaces;
// without them, a surface that only records the drawing.
std::shared_ptr<Surface> MakeDrawing(const Module& module, const Control& picture);

} // namespace lorvane
