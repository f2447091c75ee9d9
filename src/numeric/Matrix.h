#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "frame/RuntimeError.h"

namespace lorvane {

// A dense matrix of doubles whose subscripts run from 1: m(1, 1) is the top left element and
// m(Rows(), Cols()) the bottom right one. The sizes travel with the data, stored row by row.
// A subscript outside 1..Rows() or 1..Cols() raises run-time error 9, "Subscript out of
// range", as the classic arrays did. A new or resized matrix holds zeros.
//
// Routines that take a size beside a matrix use its top left Size by Size block, so a matrix
// dimensioned for the largest case serves every smaller one.
class Matrix {
public:
    Matrix() = default;
    Matrix(int rows, int cols) { Resize(rows, cols); }

    int Rows() const { return rows_; }
    int Cols() const { return cols_; }

    // Sets the sizes and fills the matrix with zeros. Negative sizes raise error 9.
    void Resize(int rows, int cols) {
        if (rows < 0 || cols < 0) {
            Raise(SubscriptOutOfRange);
        }
        rows_ = rows;
        cols_ = cols;
        data_.assign(static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols), 0.0);
    }

    double& operator()(int r, int c) { return data_[Offset(r, c)]; }
    double operator()(int r, int c) const { return data_[Offset(r, c)]; }
    // Elements (r, c) to (r, c + count - 1), checked once, for loops that run along a row.
    std::span<double> Row(int r, int c, int count) {
        if (count > 0) {
            Offset(r, c + count - 1);
        }
        return {data_.data() + (count > 0 ? Offset(r, c) : 0), static_cast<std::size_t>(count)};
    }

    friend bool operator==(const Matrix&, const Matrix&) = default;

private:
    std::size_t Offset(int r, int c) const {
        if (r < 1 || r > rows_ || c < 1 || c > cols_) {
            Raise(SubscriptOutOfRange);
        }
        return static_cast<std::size_t>(r - 1) * static_cast<std::size_t>(cols_) +
               static_cast<std::size_t>(c - 1);
    }

    int rows_ = 0;
    int cols_ = 0;
    std::vector<double> data_;
};

// A vector of doubles with subscripts 1..Size(), checked like Matrix.
class Vector {
public:
    Vector() = default;
    explicit Vector(int size) { Resize(size); }

    int Size() const { return static_cast<int>(data_.size()); }

    // Sets the size and fills the vector with zeros. A negative size raises error 9.
    void Resize(int size) {
        if (size < 0) {
            Raise(SubscriptOutOfRange);
        }
        data_.assign(static_cast<std::size_t>(size), 0.0);
    }

    double& operator()(int i) { return data_[Offset(i)]; }
    double operator()(int i) const { return data_[Offset(i)]; }
    // Elements i to i + count - 1, checked once.
    std::span<const double> Part(int i, int count) const {
        if (count > 0) {
            Offset(i + count - 1);
        }
        return {data_.data() + (count > 0 ? Offset(i) : 0), static_cast<std::size_t>(count)};
    }

    friend bool operator==(const Vector&, const Vector&) = default;

private:
    std::size_t Offset(int i) const {
        if (i < 1 || i > Size()) {
            Raise(SubscriptOutOfRange);
        }
        return static_cast<std::size_t>(i - 1);
    }

    std::vector<double> data_;
};

// One observation's share of the moments: adds x * others[j] / T to sums[j], with the
// division made at every step like every moment of the module. The loop runs without
// subscript checks, so the compiler can do several elements at once.
inline void AddMoments(std::span<double> sums, double x, std::span<const double> others, double T) {
    for (std::size_t j = 0; j < sums.size(); ++j) {
        sums[j] += x * others[j] / T;
    }
}

} // namespace lorvane
