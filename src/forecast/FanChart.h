#pragma once

#include <string>
#include <vector>

#include "platform/Surface.h"

namespace lorvane {

// One variable's fan chart: the last observations of the sample, then the forecasts with
// their standard errors.
struct FanChart {
    std::string Title;
    std::vector<double> History;
    std::vector<double> Points;
    std::vector<double> SE;
};

// Draws the chart on a cleared surface of the plots' logical size: the history and the
// forecasts as one heavy line, the 95 % interval as a light band and the 68 % interval as a
// darker one around the forecasts, a dashed line at the forecast origin, the value range at
// the left and the title below.
void DrawFanChart(Surface& surface, const FanChart& chart);

} // namespace lorvane
