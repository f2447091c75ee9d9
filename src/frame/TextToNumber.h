#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace lorvane {

class Module;

// The locale-proof reading of a number: digits, "E", "+", "-" and one "," or one "." as the
// decimal mark. Nothing when the text is not such a number. An empty text is 0.
std::optional<double> ParseNumberText(std::string_view text);

// ParseNumberText that asks again: an invalid text brings up a Retry/Cancel box; Cancel ends
// the module, Retry asks for a new text in an input box.
double TextToNumber(Module& module, std::string text);
double TextValue(Module& module, const std::string& text);

} // namespace lorvane
