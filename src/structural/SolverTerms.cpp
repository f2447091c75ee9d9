#include "structural/SolverTerms.h"

#include <cctype>

#include "frame/NumberText.h"
#include "frame/RuntimeError.h"

namespace lorvane {

namespace {

// Reads "b(" digits ")" at position at and moves at behind it. Digits with a leading zero are
// refused: "b(01)" reads like "b(1)" but is another text.
bool ReadFactor(std::string_view text, std::size_t& at, int& number) {
    if (text.substr(at, 2) != "b(") {
        return false;
    }
    at += 2;
    const std::size_t digits = at;
    number = 0;
    while (at < text.size() && std::isdigit(static_cast<unsigned char>(text[at])) &&
           at - digits < 5) {
        number = number * 10 + (text[at] - '0');
        ++at;
    }
    const bool leadingZero = at - digits > 1 && text[digits] == '0';
    if (at == digits || leadingZero || at >= text.size() || text[at] != ')') {
        return false;
    }
    ++at;
    return true;
}

} // namespace

bool ParseTermRow(std::string_view text, TermRow& row) {
    row.clear();
    const std::string trimmed = Trim(text);
    std::size_t at = 0;
    bool negative = false;
    for (;;) {
        Term term{0, 0, negative};
        if (!ReadFactor(trimmed, at, term.first) || !ReadFactor(trimmed, at, term.second)) {
            return false;
        }
        row.push_back(term);
        if (at == trimmed.size()) {
            break;
        }
        if (trimmed[at] != '+' && trimmed[at] != '-') {
            return false;
        }
        negative = trimmed[at] == '-';
        ++at;
    }
    return true;
}

std::string FactorText(int number) {
    return "b(" + TrimLeft(NumberToText(number)) + ")";
}

std::string TermRowText(const TermRow& row) {
    std::string text;
    for (std::size_t k = 0; k < row.size(); ++k) {
        if (k > 0) {
            text += row[k].negative ? "-" : "+";
        }
        text += FactorText(row[k].first) + FactorText(row[k].second);
    }
    return text;
}

std::string FactorRunText(const FactorRun& run) {
    std::string text;
    for (int f = 0; f < run.count; ++f) {
        text += FactorText(run.number[static_cast<std::size_t>(f)]);
    }
    return text;
}

FactorRun SingleFactor(int number) {
    FactorRun run;
    run.number[0] = number;
    run.count = 1;
    return run;
}

FactorRun Joined(const FactorRun& a, const FactorRun& b) {
    if (a.count + b.count > static_cast<int>(a.number.size())) {
        Raise(SubscriptOutOfRange);
    }
    FactorRun run = a;
    for (int f = 0; f < b.count; ++f) {
        run.number[static_cast<std::size_t>(run.count++)] = b.number[static_cast<std::size_t>(f)];
    }
    return run;
}

FactorMatch FindFactors(const TermRow& row, const FactorRun& run) {
    const int only = run.number[0];
    for (std::size_t k = 0; k < row.size(); ++k) {
        const Term& term = row[k];
        const int first = 2 * static_cast<int>(k);
        if (run.count == 1 && term.first == only) {
            return {true, first};
        }
        if (run.count == 1 && term.second == only) {
            return {true, first + 1};
        }
        if (run.count == 2 && term.first == only && term.second == run.number[1]) {
            return {true, first};
        }
    }
    return {};
}

int FactorAt(const TermRow& row, int index) {
    const Term& term = row.at(static_cast<std::size_t>(index / 2));
    return index % 2 == 0 ? term.first : term.second;
}

} // namespace lorvane
