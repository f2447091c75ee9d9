#pragma once

#include <filesystem>
#include <vector>

#include "frame/Int16.h"

namespace lorvane {

// An n by n matrix of 16-bit whole numbers with subscripts from 1, stored row by row: the 0/1
// patterns of the zero restrictions and of the impact matrix, and the -1/0/1 pattern of the
// structural model.
class Pattern {
public:
    Pattern() = default;
    explicit Pattern(int n)
        : n_(n), cells_(static_cast<std::size_t>(n) * static_cast<std::size_t>(n)) {}

    int Size() const { return n_; }
    Int16& operator()(int i, int j) { return cells_[Offset(i, j)]; }
    Int16 operator()(int i, int j) const { return cells_[Offset(i, j)]; }
    // The number of ones.
    int Ones() const;

    friend bool operator==(const Pattern&, const Pattern&) = default;

private:
    std::size_t Offset(int i, int j) const;

    int n_ = 0;
    std::vector<Int16> cells_;
};

// n * n whole numbers, one a line, row by row (VARZERO.TMP, VARLPAT.TMP, SVARA.TMP). A file
// too short for them is its read error, found before the pattern is made.
Pattern ReadPattern(const std::filesystem::path& file, int n);

// A pattern of 0 and 1 (VARZERO.TMP, VARLPAT.TMP): any other value is the file's read error.
Pattern ReadZeroOnePattern(const std::filesystem::path& file, int n);

} // namespace lorvane
