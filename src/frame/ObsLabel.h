#pragma once

#include <string>

namespace lorvane {

// The text by which observation t is shown: the year for undated and annual data
// ("1999"), year and zero-padded period for data with several periods a year ("1990.03"),
// empty for an unknown data type.
std::string ObsLabel(int t, int dataType, int firstYear, int firstPeriod, int periodsPerYear,
                     int obsCount);

} // namespace lorvane
