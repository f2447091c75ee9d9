#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace lorvane::help {

// The longest line a page holds.
inline constexpr std::size_t MaxLineLength = 80;

// A PDF document of plain ASCII text on A4 pages: every line in Courier of 10 points, a line
// that begins with "# " as a heading in bold without its mark. Lines end in LF or CR LF.
// Throws std::invalid_argument, naming the line, for a line longer than MaxLineLength or a
// character outside printable ASCII.
std::string TextToPdf(std::string_view text, std::string_view title);

} // namespace lorvane::help
