#include "forecast/ForecastReport.h"

#include <cmath>

#include "frame/NumberText.h"

namespace lorvane {

namespace {

std::string Cell(double value) {
    return RightAligned(FormatNumber(value, "0.000000"), 11);
}

} // namespace

std::string ForecastReport(const Forecast& forecast, const ForecastReportForm& form) {
    const long H = forecast.Points.rows();
    std::string text = " Forecasts from observation " + std::to_string(form.origin) + " for " +
                       std::to_string(H) + " steps\r\n";
    text += form.estimationUncertainty
                ? " Standard errors: residual variance over T, estimation uncertainty added\r\n"
                : " Standard errors: residual variance over T, estimation uncertainty not "
                  "added\r\n";
    for (std::size_t i = 0; i < form.names.size(); ++i) {
        text += "\r\n " + form.names[i] + "\r\n";
        text += "  t    Forecast       S.E.    68% low   68% high    95% low   95% high"
                "   Observed      Error\r\n";
        double squares = 0;
        int observedSteps = 0;
        for (long h = 0; h < H; ++h) {
            const double y = forecast.Points(h, i);
            const double se = forecast.StandardErrors(h, i);
            text += RightAligned(std::to_string(form.origin + h + 1), 3) + Cell(y) + Cell(se) +
                    Cell(y - Interval68 * se) + Cell(y + Interval68 * se) +
                    Cell(y - Interval95 * se) + Cell(y + Interval95 * se);
            const double actual = form.observed(h, i);
            if (!std::isnan(actual)) {
                text += Cell(actual) + Cell(actual - y);
                squares += (actual - y) * (actual - y);
                ++observedSteps;
            }
            text += "\r\n";
        }
        if (observedSteps > 0) {
            text += " RMSE over " + std::to_string(observedSteps) +
                    " observed steps:" + Cell(std::sqrt(squares / observedSteps)) + "\r\n";
        }
    }
    return text;
}

} // namespace lorvane
