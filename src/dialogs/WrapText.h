#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace lorvane {

// Width of a piece of text in the units of the box; by default one per character.
using TextMeasure = std::function<double(std::string_view)>;

// Folds text into lines no wider than width: paragraphs (split at CR LF) are trimmed at the
// left, a line ends at the last " ", ", " or ". " that fits, a word longer than a line is cut.
// The lines are joined with CR LF.
std::string WrapText(std::string_view text, double width, const TextMeasure& measure = {});

// The title as it fits into width, shortened with ".." at the end when it does not.
std::string ShortenTitle(std::string_view title, double width, const TextMeasure& measure = {});

} // namespace lorvane
