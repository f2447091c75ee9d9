#include "numeric/Matsubs.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "dialogs/Boxes.h"
#include "frame/RuntimeError.h"
#include "numeric/Decimal.h"

namespace lorvane {

namespace {

// A decimal work array with subscripts from 1, stored row by row; it starts as zeros.
class DecimalArray {
public:
    DecimalArray(int rows, int cols)
        : cols_(cols), data_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols)) {}

    Decimal& operator()(int r, int c) { return data_[Offset(r, c)]; }
    // Element (r, 1); element (r, c) is at Row(r)[c - 1].
    Decimal* Row(int r) { return &data_[Offset(r, 1)]; }

    void Release() { std::vector<Decimal>().swap(data_); }

private:
    std::size_t Offset(int r, int c) const {
        return static_cast<std::size_t>(r - 1) * static_cast<std::size_t>(cols_) +
               static_cast<std::size_t>(c - 1);
    }

    int cols_;
    std::vector<Decimal> data_;
};

// The offsets (column - 1) from `first` to `last` of a row where it is not zero. The row
// operations skip the others: a multiple of zero leaves the value of every element as it is.
void NonzeroColumns(const Decimal* row, int first, int last, std::vector<int>& offsets) {
    offsets.clear();
    for (int c = first; c <= last; ++c) {
        if (!row[c - 1].IsZero()) {
            offsets.push_back(c - 1);
        }
    }
}

void EnsureSize(Matrix& matrix, int n) {
    if (matrix.Rows() < n || matrix.Cols() < n) {
        matrix.Resize(n, n);
    }
}

void InvertOne(const Matrix& matrix, Matrix& inverse, Determinant& determinant, Int16& flag) {
    const double element = matrix(1, 1);
    if (!(std::fabs(element) > 0.0)) {
        flag = 1;
        determinant.SetZero();
        return;
    }
    EnsureSize(inverse, 1);
    try {
        inverse(1, 1) = CheckedDivide(1.0, element);
    } catch (const RuntimeError&) {
        // A reciprocal beyond the double range is skipped like any failing statement.
    }
}

// The equilibration of InvertMatrix: e(i) such that |d| 10^(-2 e(i)) lies in [0.1, 10) for the
// diagonal element d of row i; 0 where d is zero or not a number.
std::vector<int> EquilibrationPowers(const Matrix& matrix, int n) {
    std::vector<int> powers(static_cast<std::size_t>(n), 0);
    for (int i = 1; i <= n; ++i) {
        const double d = std::fabs(matrix(i, i));
        if (d > 0.0 && std::isfinite(d)) {
            powers[static_cast<std::size_t>(i - 1)] =
                static_cast<int>(std::floor((std::log10(d) + 1.0) / 2.0));
        }
    }
    return powers;
}

} // namespace

void Determinant::MultiplyBy(const Decimal& factor) {
    // Both between 1 and 10 in magnitude: the product keeps 28 digits and cannot overflow.
    const Decimal product = mantissa_ * factor.Normalized();
    power_ += factor.LeadingPower() + product.LeadingPower();
    mantissa_ = product.Normalized();
}

double Determinant::Log() const {
    if (Sign() <= 0) {
        Raise(InvalidProcedureCall);
    }
    return std::log(mantissa_.ToDouble()) + power_ * std::log(10.0);
}

void InvertMatrix(const Matrix& matrix, Matrix& inverse, double& determinant, double size,
                  Int16& flag, InversionResidual* residual, const std::function<void()>& eachRow) {
    Determinant product;
    InvertMatrix(matrix, inverse, product, size, flag, residual, eachRow);
    determinant = product.Value();
}

void InvertMatrix(const Matrix& matrix, Matrix& inverse, Determinant& determinant, double size,
                  Int16& flag, InversionResidual* residual, const std::function<void()>& eachRow) {
    const int n = CInt(size);
    if (matrix.Rows() < n || matrix.Cols() < n) {
        Raise(SubscriptOutOfRange);
    }
    flag = 0;
    determinant = Determinant();
    if (n == 1) {
        InvertOne(matrix, inverse, determinant, flag);
        return;
    }
    const Decimal one = Decimal::FromInteger(1);
    const Decimal tolerance = Decimal::FromText("0.0000000001");
    const Decimal margin = Decimal::FromInteger(100);
    const int width = 2 * n;
    const std::vector<int> powers = EquilibrationPowers(matrix, n);
    // Element (i, j) is scaled by 10^-(e(i) + e(j)) on the way in, and its inverse's by the
    // same on the way out.
    const auto power = [&powers](int i, int j) {
        return -(powers[static_cast<std::size_t>(i - 1)] + powers[static_cast<std::size_t>(j - 1)]);
    };

    // The scaled matrix and the identity side by side. An element that does not convert stays 0.
    DecimalArray a(n, width);
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            try {
                a(i, j) = Decimal::FromDouble(matrix(i, j), power(i, j));
            } catch (const RuntimeError&) {
            }
        }
        a(i, n + i) = one;
    }
    // An untouched copy for the residual check.
    DecimalArray m(residual != nullptr ? n : 0, n);
    if (residual != nullptr) {
        for (int i = 1; i <= n; ++i) {
            std::copy(a.Row(i), a.Row(i) + n, m.Row(i));
        }
    }

    Decimal big; // keeps its last value when 100 |A(i,i)| overflows
    Decimal result;
    std::vector<int> columns;
    columns.reserve(static_cast<std::size_t>(width));

    for (int i = 1; i <= n; ++i) {
        int p = i;
        if (Decimal::TryMultiply(margin, a(i, i).Abs(), result)) {
            big = result;
        }
        for (int r = i + 1; r <= n; ++r) {
            if (a(r, i).Abs() > big) {
                big = a(r, i).Abs();
                p = r;
            }
        }
        if (p > i) {
            // Instead of an interchange: add row p so that the two leading magnitudes add up.
            const int s1 = a(i, i).Sign() > 0 ? 1 : -1;
            const int s2 = a(p, i).Sign() > 0 ? 1 : -1;
            Decimal* target = a.Row(i);
            const Decimal* source = a.Row(p);
            for (int c = 0; c < width; ++c) {
                const bool done = s1 * s2 == 1 ? Decimal::TryAdd(target[c], source[c], result)
                                               : Decimal::TrySubtract(target[c], source[c], result);
                if (done) {
                    target[c] = result;
                }
            }
        }
        const Decimal pivot = a(i, i);
        if (pivot.Abs() < tolerance) {
            flag = 1;
            determinant.SetZero();
            return;
        }
        a(i, i) = one;
        Decimal* pivotRow = a.Row(i);
        for (int c = i + 1; c <= width; ++c) {
            if (!pivotRow[c - 1].IsZero() && Decimal::TryDivide(pivotRow[c - 1], pivot, result)) {
                pivotRow[c - 1] = result;
            }
        }
        determinant.MultiplyBy(pivot);
        NonzeroColumns(pivotRow, i + 1, width, columns);
        for (int r = i + 1; r <= n; ++r) {
            const Decimal f = a(r, i);
            a(r, i) = Decimal();
            if (!f.IsZero()) {
                Decimal::SubtractMultiple(a.Row(r), f, pivotRow, columns.data(), columns.size());
            }
        }
        if (eachRow) {
            eachRow();
        }
    }

    for (int i = n; i >= 1; --i) {
        const Decimal* pivotRow = a.Row(i);
        NonzeroColumns(pivotRow, i + 1, width, columns);
        for (int r = i - 1; r >= 1; --r) {
            const Decimal f = a(r, i);
            a(r, i) = Decimal();
            if (!f.IsZero()) {
                Decimal::SubtractMultiple(a.Row(r), f, pivotRow, columns.data(), columns.size());
            }
        }
        if (eachRow) {
            eachRow();
        }
    }

    int totalPower = 0;
    for (const int e : powers) {
        totalPower += 2 * e;
    }
    determinant.MultiplyByPowerOfTen(totalPower);
    EnsureSize(inverse, n);
    DecimalArray b(n, n);
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            b(i, j) = a(i, n + j);
            inverse(i, j) = b(i, j).ToDouble(power(i, j));
        }
    }
    a.Release();
    if (residual == nullptr) {
        return;
    }

    // Residual check: C = M * B, summed over k in order for every element. It decides nothing.
    DecimalArray c(n, n);
    for (int k = 1; k <= n; ++k) {
        NonzeroColumns(b.Row(k), 1, n, columns);
        for (int i = 1; i <= n; ++i) {
            if (!m(i, k).IsZero()) {
                Decimal::AddMultiple(c.Row(i), m(i, k), b.Row(k), columns.data(), columns.size());
            }
        }
    }
    Decimal largest;
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            if (i != j) {
                result = c(i, j);
            } else if (!Decimal::TrySubtract(one, c(i, j), result)) {
                continue;
            }
            if (result.Abs() > largest) {
                largest = result.Abs();
            }
        }
    }
    residual->largestDeviation = largest.ToDouble();
    residual->poor = largest > Decimal::FromText("0.001");
}

void CroutDecompose(Matrix& matrix, double size, Int16& flag) {
    const int n = CInt(size);
    flag = 0;
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j < i; ++j) {
            double sum = 0.0;
            for (int k = 1; k < j; ++k) {
                sum += matrix(j, k) * matrix(k, i);
            }
            matrix(j, i) = CheckedFinite(matrix(j, i) - sum);
        }
        for (int j = i; j <= n; ++j) {
            double sum = 0.0;
            for (int k = 1; k < i; ++k) {
                sum += matrix(j, k) * matrix(k, i);
            }
            matrix(j, i) = CheckedFinite(matrix(j, i) - sum);
        }
        if (matrix(i, i) == 0.0) {
            flag = 1;
            return;
        }
        if (i < n) {
            const double d = CheckedDivide(1.0, matrix(i, i));
            for (int j = i + 1; j <= n; ++j) {
                matrix(j, i) = CheckedFinite(matrix(j, i) * d);
            }
        }
    }
    for (int i = 1; i <= n; ++i) {
        for (int j = i + 1; j <= n; ++j) {
            matrix(i, j) = CheckedDivide(matrix(i, j), matrix(i, i));
        }
    }
}

void LLDecomposition(const Matrix& matrix, Matrix& factor, Int16 size, Int16& flag, Boxes& boxes,
                     const std::string& title) {
    const int n = size;
    EnsureSize(factor, n);
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            factor(i, j) = matrix(i, j);
        }
    }
    flag = 0;
    CroutDecompose(factor, n, flag);
    if (flag == 1) {
        boxes.MessageBoxFull(
            "LL decomposition of a symmetric matrix failed due to near-singularity", 16, title);
        return;
    }
    Vector d(n);
    for (int i = 1; i <= n; ++i) {
        d(i) = CheckedSqrt(factor(i, i));
        factor(i, i) = 1.0;
        for (int j = i + 1; j <= n; ++j) {
            factor(i, j) = 0.0;
        }
    }
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= i; ++j) {
            factor(i, j) *= d(j);
        }
    }
}

} // namespace lorvane
