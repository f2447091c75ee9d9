// The classic leading-number reader on arbitrary text. It gives a number (0 when there is
// none) or run-time error 6 for a number beyond the double range; never NaN or infinity, and
// the shortest text of its result reads back to the same number.

#include <cmath>
#include <string>

#include "FuzzSupport.h"
#include "frame/NumberText.h"
#include "frame/RuntimeError.h"
#include "frame/TextFile.h"

using namespace lorvane;
using namespace lorvane::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = AsText(data, size);
    double value = 0;
    try {
        value = Val(text);
    } catch (const RuntimeError& error) {
        if (error.Number() != Overflow) {
            Broken("Val raised error " + std::to_string(error.Number()));
        }
        return 0;
    }
    if (!std::isfinite(value)) {
        Broken("Val gave " + std::to_string(value) + " for \"" + std::string(text) + "\"");
    }
    const std::string shortest = ShortestText(value);
    if (Val(shortest) != value) {
        Broken("Val(\"" + shortest + "\") is not " + shortest);
    }
    return 0;
}
