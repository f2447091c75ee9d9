#pragma once

#include <string>
#include <string_view>

namespace lorvane {

// The module's text of a number: through the 96-bit decimal, without an exponent, a leading
// blank for zero and positive values, no trailing zeros, no zero before the point.
// 5 -> " 5", -0.25 -> "-.25", 0 -> " 0".
std::string NumberToText(double value);

// The classic picture format: digit places "0" (always shown) and "#" (shown when
// significant), a decimal point, and an optional exponent part "E+00" / "E-000".
// The value is first rounded to 15 significant digits, then half away from zero to the
// places of the picture.
std::string FormatNumber(double value, std::string_view picture);

// The classic leading-number reader: blanks, tabs and line feeds are skipped anywhere,
// reading stops at the first character that cannot continue a number, "." is the decimal
// point, "E" or "D" start an exponent, and a text without a number gives 0.
double Val(std::string_view text);

// text padded on the left with blanks to width characters; a longer text is kept whole.
std::string RightAligned(std::string_view text, std::size_t width);

std::string Trim(std::string_view text);
std::string TrimLeft(std::string_view text);
std::string TrimRight(std::string_view text);
std::string UpperCase(std::string_view text);

} // namespace lorvane
