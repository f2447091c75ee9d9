#pragma once

#include <string>

#include "estimate/Estimates.h"
#include "frame/Int16.h"

namespace lorvane {

class EstimationView;
struct RegressionLayout;
struct Workspace;

// Width of the name column of the coefficient tables and of the parameter rows.
inline constexpr std::size_t NameColumnWidth = 41;

// A label in the name column: padded with blanks to 41 characters, or, when longer than 40,
// cut to 38 and followed by ".. ".
std::string NameColumn(const std::string& label);
// The first line of a table row, also the display row of a parameter in WALDT.TMP: the name
// column, the estimate in 15 columns and the t-value in 10.
std::string DisplayRow(const std::string& label, double estimate, double tValue);
// The second line of a table row: "[p-value]" right-aligned under the end of the t-value.
std::string PValueRow(double pValue);
// sqrt(T) b / sqrt(v), where v is the variance of the square root of T times the error of b.
double TValue(double T, double estimate, double variance);

// The report of an estimation: the table of each equation with its s.e., R-square and n, and
// Sigma. `method` is "OLS" or "SUR"; round 0 names no SUR round.
std::string EstimatesText(const RegressionLayout& layout, double T, const Estimates& estimates,
                          const std::string& method, int round);

// WALDT.TMP (T and K, the display rows, b and V) and VARB.TMP (K and b).
void WriteEstimateFiles(const Workspace& workspace, const RegressionLayout& layout, double T,
                        const Estimates& estimates);

// The report shared by OLS (mode 1) and SUR (mode 0): appends the text to the results and
// writes the files above. For SUR the round counter goes up by 1 first.
void ReportEstimates(EstimationView& view, const RegressionLayout& layout, double T,
                     const Estimates& estimates, Int16 mode, Int16& round);

} // namespace lorvane
