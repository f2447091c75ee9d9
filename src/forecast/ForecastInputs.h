#pragma once

#include "forecast/Forecast.h"
#include "forecast/ForecastModel.h"

namespace lorvane {

class Module;

// The estimated model of the work files: Z from VARZERO.TMP, the coefficients and their
// variance from WALDT.TMP (the elements of L that follow them after FIML are left aside), and
// Sigma from the residuals of U.TMP.
ForecastModel ReadForecastModel(const Module& module);

// The selected variables and d(t) of the data store in rows 0.. for observations 1.., with
// d(t) carried on for H rows past the last of them and past the sample's end. Each column goes
// on as d(t) = 2 d(t - s) - d(t - 2 s) with s the periods per year (1 without seasonal
// dummies): the rule keeps the intercept, the trend and the seasonal dummies exactly.
ForecastData ReadForecastData(const Module& module, int H);

} // namespace lorvane
