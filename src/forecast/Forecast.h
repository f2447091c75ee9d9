#pragma once

#include <vector>

#include <Eigen/Dense>

#include "forecast/ForecastModel.h"

namespace lorvane {

// The data of a forecast: the observations Y (row t for observation t, variables in columns,
// rows counted from 0) and d(t) in the same rows, reaching at least H rows past the origin and
// past the sample's last observation.
struct ForecastData {
    Eigen::MatrixXd Y;
    Eigen::MatrixXd D;
};

// The half widths of the 68 % and 95 % intervals in standard errors: the quantiles 0.84 and
// 0.975 of the standard normal distribution.
inline constexpr double Interval68 = 0.9944578832097535;
inline constexpr double Interval95 = 1.959963984540054;

// Forecasts for steps 1..H from an origin, with their standard errors (H by n each).
struct Forecast {
    Eigen::MatrixXd Points;
    Eigen::MatrixXd StandardErrors;
};

// The point forecasts y(origin + h), h = 1..H, by the model's recursion from the observations
// up to the origin (H by n).
Eigen::MatrixXd PointForecasts(const ForecastModel& model, const ForecastData& data, int origin,
                               int H);

// The moving average matrices Phi(0)..Phi(H - 1) of the lag polynomial.
std::vector<Eigen::MatrixXd> MovingAverageMatrices(const ForecastModel& model, int H);

// The mean squared error matrices of the forecasts with known coefficients,
// Sigma_y(h) = sum over i < h of Phi(i) Sigma Phi(i)', for h = 1..H.
std::vector<Eigen::MatrixXd> ForecastMse(const ForecastModel& model, int H);

// What the estimation of the coefficients adds to the mean squared error of step h, Omega(h)/T,
// for h = 1..H. Omega(h) averages G V G' over the origins of the sample (first..last are the
// rows of the observations the model was estimated on, each forecast from the row before it),
// where G is the derivative of the h-step forecast by the parameter vector.
std::vector<Eigen::MatrixXd> EstimationMse(const ForecastModel& model, const ForecastData& data,
                                           int first, int last, int H);

// The forecasts from the sample's last row, their standard errors from Sigma_y(h), with the
// estimation's share added when asked.
Forecast ComputeForecast(const ForecastModel& model, const ForecastData& data, int first, int last,
                         int H, bool estimationUncertainty);

} // namespace lorvane
