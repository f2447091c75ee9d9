#pragma once

#include <cstddef>
#include <vector>

#include "frame/Int16.h"
#include "frame/RuntimeError.h"

namespace lorvane {

// A table with subscripts from 1 in both directions. A subscript outside the table is
// run-time error 9, as is a negative size.
template <typename T> class Table {
public:
    Table() = default;
    Table(int rows, int columns) : rows_(rows), columns_(columns) {
        if (rows < 0 || columns < 0) {
            Raise(SubscriptOutOfRange);
        }
        cells_.resize(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns));
    }

    int Rows() const { return rows_; }
    int Columns() const { return columns_; }

    T& operator()(int row, int column) { return cells_[Index(row, column)]; }
    const T& operator()(int row, int column) const { return cells_[Index(row, column)]; }

private:
    std::size_t Index(int row, int column) const {
        if (row < 1 || row > rows_ || column < 1 || column > columns_) {
            Raise(SubscriptOutOfRange);
        }
        return static_cast<std::size_t>(column - 1) * static_cast<std::size_t>(rows_) +
               static_cast<std::size_t>(row - 1);
    }

    int rows_ = 0;
    int columns_ = 0;
    std::vector<T> cells_;
};

// The mode argument of the store routines.
inline constexpr int ClearMode = -1;
inline constexpr int StoreMode = 1;
inline constexpr int FetchMode = 0;

// A list 1..count that knows whether it was filled. Store(mode, count, index, item):
//   mode -1 marks the list empty (nothing else is used);
//   mode  1 puts item at index; the first store after clearing takes count and allocates;
//   other modes give back count (0 while empty) and, unless index is 0, the item at index.
// Clearing only marks the list empty: the next store allocates to the new count.
template <typename T> class ListStore {
public:
    void Store(int mode, Int16& count, int index, T& item) {
        if (mode == ClearMode) {
            Clear();
            return;
        }
        if (mode == StoreMode) {
            if (!filled_) {
                Allocate(count);
            }
            items_[Index(index)] = item;
            return;
        }
        count = Count();
        if (index != 0) {
            item = At(index);
        }
    }

    void Clear() { filled_ = false; }
    bool Filled() const { return filled_; }
    Int16 Count() const { return filled_ ? Int16(items_.size()) : Int16(0); }
    const T& At(int index) const { return items_[Index(index)]; }

    // Mode 1 for a whole list at once.
    void Assign(const std::vector<T>& items) {
        Allocate(Int16(items.size()));
        items_ = items;
    }

private:
    void Allocate(int count) {
        if (count < 0) {
            Raise(SubscriptOutOfRange);
        }
        items_.assign(static_cast<std::size_t>(count), T{});
        filled_ = true;
    }
    std::size_t Index(int index) const {
        if (!filled_ || index < 1 || static_cast<std::size_t>(index) > items_.size()) {
            Raise(SubscriptOutOfRange);
        }
        return static_cast<std::size_t>(index - 1);
    }

    bool filled_ = false;
    std::vector<T> items_;
};

// A table (1..rows, 1..columns) that knows whether it was filled, with the same three
// modes: Store(mode, rows, columns, row, column, value); a fetch with row 0 gives back the
// dimensions only.
template <typename T> class TableStore {
public:
    void Store(int mode, Int16& rows, Int16& columns, int row, int column, T& value) {
        if (mode == ClearMode) {
            Clear();
            return;
        }
        if (mode == StoreMode) {
            if (!filled_) {
                table_ = Table<T>(rows, columns);
                filled_ = true;
            }
            table_(row, column) = value;
            return;
        }
        rows = Rows();
        columns = Columns();
        if (row != 0) {
            value = At(row, column);
        }
    }

    void Clear() { filled_ = false; }
    bool Filled() const { return filled_; }
    Int16 Rows() const { return filled_ ? Int16(table_.Rows()) : Int16(0); }
    Int16 Columns() const { return filled_ ? Int16(table_.Columns()) : Int16(0); }
    const T& At(int row, int column) const {
        if (!filled_) {
            Raise(SubscriptOutOfRange);
        }
        return table_(row, column);
    }

private:
    bool filled_ = false;
    Table<T> table_;
};

} // namespace lorvane
