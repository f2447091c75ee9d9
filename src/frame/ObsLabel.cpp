#include "frame/ObsLabel.h"

#include <cmath>

#include "frame/Int16.h"
#include "frame/NumberText.h"
#include "frame/RuntimeError.h"

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
        // A damaged header may hold 0 periods a year: the division fails here (error 11, or 6
        // for 0 / 0) before the remainder below would divide by zero.
        year = std::round(Int(ToSingle(CheckedDivide(u, periodsPerYear))) + firstYear + 1);
        period = u % periodsPerYear + 1;
    }
    const std::string periodText = Trim(NumberToText(period));
    return Trim(NumberToText(year)) + "." +
           std::string(width > periodText.size() ? width - periodText.size() : 0, '0') + periodText;
}

} // namespace lorvane
