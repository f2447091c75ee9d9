#include "frame/ObsLabel.h"

#include <cmath>

#include "frame/Int16.h"
#include "frame/NumberText.h"

namespace lorvane {

std::string ObsLabel(int t, int dataType, int firstYear, int firstPeriod, int periodsPerYear,
                     int /*obsCount*/) {
    if (dataType == 0 || dataType == 1) {
        return Trim(NumberToText(t + firstYear - 1));
    }
    if (dataType < 2 || dataType > 4) {
        return "";
    }
    const std::size_t width = Trim(NumberToText(periodsPerYear)).size();
    const int periodsLeftInFirstYear = periodsPerYear - firstPeriod + 1;
    double year = firstYear;
    int period = firstPeriod + t - 1;
    if (t > periodsLeftInFirstYear) {
        const int u = t - 1 - periodsLeftInFirstYear;
        year = std::round(Int(ToSingle(static_cast<double>(u) / periodsPerYear)) + firstYear + 1);
        period = u % periodsPerYear + 1;
    }
    const std::string periodText = Trim(NumberToText(period));
    return Trim(NumberToText(year)) + "." +
           std::string(width > periodText.size() ? width - periodText.size() : 0, '0') + periodText;
}

} // namespace lorvane
