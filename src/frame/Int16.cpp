#include "frame/Int16.h"

#include <cmath>
#include <limits>

namespace lorvane {

Int16 CInt(double x) {
    if (!std::isfinite(x)) {
        Raise(Overflow);
    }
    const double rounded = std::nearbyint(x); // the default rounding mode is half to even
    if (rounded < -32768.0 || rounded > 32767.0) {
        Raise(Overflow);
    }
    return Int16(static_cast<int>(rounded));
}

double Int(double x) {
    return std::floor(x);
}

double Fix(double x) {
    return std::trunc(x);
}

double ToSingle(double x) {
    if (std::isfinite(x) && std::fabs(x) > static_cast<double>(std::numeric_limits<float>::max())) {
        const float rounded = static_cast<float>(x);
        if (std::isinf(rounded)) {
            Raise(Overflow);
        }
    }
    return static_cast<double>(static_cast<float>(x));
}

} // namespace lorvane
