#include "frame/TextParts.h"

namespace lorvane {

void FindPart(std::string_view text, std::string_view part, Int16& first, Int16& last,
              Int16& found) {
    found = 0;
    if (part.size() > text.size()) {
        return;
    }
    const std::size_t at = text.find(part);
    if (at == std::string_view::npos) {
        return;
    }
    found = 1;
    first = static_cast<long long>(at) + 1;
    last = first - 1 + static_cast<long long>(part.size());
}

void SplitAround(std::string_view text, std::string_view part, std::string& before,
                 std::string& after, Int16& found) {
    Int16 first;
    Int16 last;
    FindPart(text, part, first, last, found);
    if (found == 0) {
        return;
    }
    before = std::string(text.substr(0, static_cast<std::size_t>(first - 1)));
    after = std::string(text.substr(static_cast<std::size_t>(last.Value())));
}

} // namespace lorvane
