#pragma once

#include <string>
#include <vector>

#include "forecast/Forecast.h"

namespace lorvane {

// What the report of the forecasts shows beside the numbers.
struct ForecastReportForm {
    std::vector<std::string> names;
    // The observation the forecasts start from.
    int origin = 0;
    bool estimationUncertainty = false;
    // The observed values after the origin, H by n; missing ones are NaN, as are steps past
    // the data's end.
    Eigen::MatrixXd observed;
};

// Per variable a table of the steps: the forecast, its standard error, the 68 % and 95 %
// intervals and, where the data go on, the observed value and the forecast's error, closed
// by the root mean squared error of the observed steps.
std::string ForecastReport(const Forecast& forecast, const ForecastReportForm& form);

} // namespace lorvane
