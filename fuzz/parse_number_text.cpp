// The locale-proof number reader on arbitrary text. It gives a number, or nothing for a text
// that is not one, or run-time error 6 for a number beyond the double range; never NaN. A
// decimal comma in the mantissa reads as the same number as a decimal point.

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <variant>

#include "FuzzSupport.h"
#include "frame/RuntimeError.h"
#include "frame/TextToNumber.h"

using namespace lorvane;
using namespace lorvane::fuzz;

namespace {

// The value, nothing, or the number of the run-time error.
using Outcome = std::variant<std::optional<double>, int>;

Outcome Read(std::string_view text) {
    try {
        const std::optional<double> value = ParseNumberText(text);
        if (value && std::isnan(*value)) {
            Broken("ParseNumberText gave NaN for \"" + std::string(text) + "\"");
        }
        return value;
    } catch (const RuntimeError& error) {
        if (error.Number() != Overflow) {
            Broken("ParseNumberText raised error " + std::to_string(error.Number()) + " for \"" +
                   std::string(text) + "\"");
        }
        return error.Number();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(AsText(data, size));
    const Outcome outcome = Read(text);

    // Only the mark of the mantissa, before any exponent, is a decimal mark.
    const std::string mantissa = text.substr(0, text.find_first_of("Ee"));
    const auto points = std::count(mantissa.begin(), mantissa.end(), '.');
    const auto commas = std::count(mantissa.begin(), mantissa.end(), ',');
    if (points + commas == 1) {
        std::string other = text;
        other[mantissa.find_first_of(".,")] = points == 1 ? ',' : '.';
        if (Read(other) != outcome) {
            Broken("\"" + text + "\" and \"" + other + "\" read differently");
        }
    }
    return 0;
}
