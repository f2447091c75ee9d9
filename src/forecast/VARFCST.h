#pragma once

#include <string>
#include <vector>

#include "forecast/Forecast.h"
#include "frame/Screen.h"

namespace lorvane {

// Forecasts of the estimated model from the end of the sample: the horizon in Horizon, the
// estimation uncertainty in the standard errors on request (Check1); Compute shows the report
// in Text1, appends it to the log and saves a fan chart per variable, Continue goes back to the
// tests.
class VARFCST : public Screen {
public:
    explicit VARFCST(Module& module);

    void Click(Control& control) override;

private:
    void Compute();
    // One fan chart per variable with the sample's last observations, each saved as the next
    // numbered picture and named in the log.
    void SaveFanCharts(const Eigen::MatrixXd& history, const Forecast& forecast,
                       const std::vector<std::string>& names);

    // The observations before the origin that a fan chart shows.
    static constexpr int FanHistory = 12;
};

} // namespace lorvane
