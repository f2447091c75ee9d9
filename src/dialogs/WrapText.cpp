#include "dialogs/WrapText.h"

#include <vector>

#include "frame/NumberText.h"

namespace lorvane {

namespace {

double Measure(const TextMeasure& measure, std::string_view text) {
    return measure ? measure(text) : static_cast<double>(text.size());
}

std::vector<std::string> SplitParagraphs(std::string_view text) {
    std::vector<std::string> paragraphs;
    std::size_t start = 0;
    while (true) {
        const std::size_t end = text.find("\r\n", start);
        paragraphs.push_back(
            TrimLeft(text.substr(start, end == std::string_view::npos ? text.npos : end - start)));
        if (end == std::string_view::npos) {
            return paragraphs;
        }
        start = end + 2;
    }
}

// The longest prefix of rest that fits into width, at least one character.
std::size_t FittingLength(std::string_view rest, double width, const TextMeasure& measure) {
    std::size_t length = 0;
    while (length < rest.size() && Measure(measure, rest.substr(0, length + 1)) <= width) {
        ++length;
    }
    return length == 0 ? 1 : length;
}

void FoldParagraph(std::string_view rest, double width, const TextMeasure& measure,
                   std::string& out, bool& first) {
    do {
        std::string line;
        if (Measure(measure, rest) <= width) {
            line = rest;
            rest = {};
        } else {
            const std::size_t fits = FittingLength(rest, width, measure);
            // A break after a blank that still fits; ", " and ". " end in that blank too.
            std::size_t cut = rest.substr(0, fits + 1).rfind(' ');
            if (cut == std::string_view::npos || cut == 0) {
                cut = fits;
                line = rest.substr(0, cut);
                rest.remove_prefix(cut);
            } else {
                line = TrimRight(rest.substr(0, cut));
                rest.remove_prefix(cut + 1);
            }
            while (!rest.empty() && rest.front() == ' ') {
                rest.remove_prefix(1);
            }
        }
        if (!first) {
            out += "\r\n";
        }
        first = false;
        out += line;
    } while (!rest.empty());
}

} // namespace

std::string WrapText(std::string_view text, double width, const TextMeasure& measure) {
    std::string out;
    bool first = true;
    for (const std::string& paragraph : SplitParagraphs(TrimLeft(text))) {
        FoldParagraph(paragraph, width, measure, out, first);
    }
    return out;
}

std::string ShortenTitle(std::string_view title, double width, const TextMeasure& measure) {
    if (Measure(measure, title) <= width) {
        return std::string(title);
    }
    std::string shortened(title);
    while (!shortened.empty() && Measure(measure, shortened + "..") > width) {
        shortened.pop_back();
    }
    return shortened + "..";
}

} // namespace lorvane
