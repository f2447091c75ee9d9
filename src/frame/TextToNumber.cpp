#include "frame/TextToNumber.h"

#include <cmath>

#include "frame/Int16.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/RuntimeError.h"

namespace lorvane {

std::optional<double> ParseNumberText(std::string_view text) {
    const std::string upper = UpperCase(Trim(text));
    if (upper.empty()) {
        return 0.0;
    }
    if (upper.find_first_not_of("0123456789E+-,.") != std::string::npos) {
        return std::nullopt;
    }
    std::string mantissa = upper;
    int exponent = 0;
    if (const std::size_t e = upper.find('E'); e != std::string::npos) {
        exponent = CInt(Val(upper.substr(e + 1)));
        mantissa = Trim(upper.substr(0, e));
    }
    const std::size_t comma = mantissa.find(',');
    const std::size_t point = mantissa.find('.');
    if (comma != std::string::npos && point != std::string::npos) {
        return std::nullopt;
    }
    if (const std::size_t mark = comma != std::string::npos ? comma : point;
        mark != std::string::npos) {
        // Decision: a second decimal mark makes the text invalid ("1.2.3" is no 0.0123).
        if (mantissa.find(mantissa[mark], mark + 1) != std::string::npos) {
            return std::nullopt;
        }
        exponent -= static_cast<int>(Trim(mantissa.substr(mark + 1)).size());
        mantissa.erase(mark, 1);
    }
    const double value = Val(mantissa);
    if (exponent == 0) {
        return value;
    }
    const double scale = CheckedFinite(std::pow(10.0, std::abs(exponent)));
    return exponent > 0 ? CheckedFinite(value * scale) : value / scale;
}

double TextToNumber(Module& module, std::string text) {
    const std::string title = "Error in reading text as number";
    while (true) {
        if (const std::optional<double> value = ParseNumberText(text)) {
            return *value;
        }
        const std::string shown = "Text string\r\n" + text + "\r\n";
        if (module.boxes().MessageBoxFull(shown + "is not a valid number!", 5 + 16, title) == 2) {
            module.ModuleEnd();
        }
        text = module.boxes().InputBox(shown + "is not a valid number! Try again. ", title, text);
    }
}

double TextValue(Module& module, const std::string& text) {
    return TextToNumber(module, text);
}

} // namespace lorvane
