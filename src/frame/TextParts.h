#pragma once

#include <string>
#include <string_view>

#include "frame/Int16.h"

namespace lorvane {

// Where part stands in text: found = 1 with its 1-based first and last positions, else 0.
void FindPart(std::string_view text, std::string_view part, Int16& first, Int16& last,
              Int16& found);

// The text before and after the first occurrence of part.
void SplitAround(std::string_view text, std::string_view part, std::string& before,
                 std::string& after, Int16& found);

template <typename T> constexpr T Larger(T a, T b) {
    return a > b ? a : b;
}

template <typename T> constexpr T Smaller(T a, T b) {
    return a < b ? a : b;
}

} // namespace lorvane
