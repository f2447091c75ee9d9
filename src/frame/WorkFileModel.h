#pragma once

namespace lorvane {

class Module;

// The checks of a work file against the model in force. A file that was written for another
// model (or whose fields were changed) would give numbers that look right and are not: it is the
// file's read error, run-time error 62, like a file cut short.

// The observations of the estimation: the chosen sample less the p first ones the lags use.
int EstimationObservations(const Module& module);

// Raises the read error unless T, the count of observations a work file holds, is the model's.
void ExpectModelObservations(const Module& module, double T);

} // namespace lorvane
