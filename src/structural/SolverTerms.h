#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace lorvane {

// The moment system in numbers instead of text. A row such as "b(4)b(7)-b(2)b(5)" is the list
// of its terms; what the solver looks for in a row (a solved unknown "b(3)", a solved product,
// or two solved unknowns joined to "b(3)b(5)") is a run of factors.
//
// Why the tables find what the texts find. A row's text is its terms "b(p)b(q)" joined by "+"
// or "-", the first term without a sign, and every step of the solver keeps that form: a row
// only loses whole terms and has its signs flipped, and a row that is one product is never cut.
// Each factor begins with "b(" and ends with its closing bracket, so a run of factors occurs in
// a row's text only at factor boundaries: "b(1)" stands in "b(1)b(2)" and "b(2)b(1)", never in
// "b(11)b(2)". A sign stands between every two terms, so a run of two factors occurs only as a
// whole term, in its order, and a longer run never. Hence the first occurrence of a factor in
// the text is its first place among the factors of the row (the first term that holds it, its
// first factor before its second), the first occurrence of a product is the first equal term,
// the text before and after an occurrence is empty exactly when no factor stands there, a piece
// holds "b(" as often as it holds factors, and the sign at a cut is the sign of the term beside
// it. Rows never begin with a sign, so flipping every sign of a remainder is flipping the signs
// of its terms.

// One product b(first)b(second) of a row and whether a "-" stands before it.
struct Term {
    int first = 0;
    int second = 0;
    bool negative = false;
};

using TermRow = std::vector<Term>;

// Up to four factors b(n) written one after another.
struct FactorRun {
    std::array<int, 4> number{};
    int count = 0;
};

// The first place of a run of factors in a row: it covers the factors at .. at + count - 1 of
// the row's 2n factors (the factors of term k are 2k and 2k + 1).
struct FactorMatch {
    bool found = false;
    int at = 0;
};

// The terms of a left-hand side written as "b(p)b(q)" joined by signs, with blanks around the
// whole allowed. False when the text is not of that form exactly (a number with a leading zero,
// a lone factor, a leading sign, inner blanks).
bool ParseTermRow(std::string_view text, TermRow& row);

std::string TermRowText(const TermRow& row);
std::string FactorText(int number);
std::string FactorRunText(const FactorRun& run);

FactorRun SingleFactor(int number);
// The factors of a followed by those of b; together at most four.
FactorRun Joined(const FactorRun& a, const FactorRun& b);

FactorMatch FindFactors(const TermRow& row, const FactorRun& run);
// The number of factor `index` of the row, counted as in FactorMatch.
int FactorAt(const TermRow& row, int index);

} // namespace lorvane
