#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "frame/TextFile.h"
#include "frame/Workspace.h"
#include "numeric/Matrix.h"

namespace lorvane::test {

using Rows = std::vector<std::vector<double>>;

inline Matrix MatrixOf(const Rows& rows) {
    Matrix m(static_cast<int>(rows.size()), static_cast<int>(rows.front().size()));
    for (int r = 1; r <= m.Rows(); ++r) {
        for (int c = 1; c <= m.Cols(); ++c) {
            m(r, c) = rows[static_cast<std::size_t>(r - 1)][static_cast<std::size_t>(c - 1)];
        }
    }
    return m;
}

inline Matrix Diagonal(const std::vector<double>& values) {
    Matrix m(static_cast<int>(values.size()), static_cast<int>(values.size()));
    for (int r = 1; r <= m.Rows(); ++r) {
        m(r, r) = values[static_cast<std::size_t>(r - 1)];
    }
    return m;
}

// A small VAR written by hand into the work files of the innovation analysis, in the layout
// of the estimation: VARZERO.TMP, VARL.TMP, VARLPAT.TMP and WALDT.TMP (per equation the lag
// coefficients and d deterministic ones, the free elements of L, the joint variance matrix).
struct HandModel {
    int n = 2;
    int p = 1;
    int d = 1;
    double T = 50;
    Matrix Z;              // 0/1
    Matrix LPattern;       // 0/1
    std::vector<Matrix> A; // A[k - 1]
    Matrix L;
    Matrix VA;
    Matrix VL;
    // What stands where the analysis must read past: the variance of the deterministic
    // coefficients and the covariances between the blocks.
    double ignored = 99;
    // False: WALDT.TMP as SUR leaves it, without the elements of L and their variance.
    bool varianceOfL = true;
};

inline void WriteModelFiles(const Workspace& workspace, const HandModel& model) {
    const int n = model.n;
    TextOutput zero(workspace.DataFile("VARZERO.TMP"), TextOutput::Mode::Output);
    TextOutput l(workspace.DataFile("VARL.TMP"), TextOutput::Mode::Output);
    TextOutput pattern(workspace.DataFile("VARLPAT.TMP"), TextOutput::Mode::Output);
    l.WriteRecord(CommaRecord().Whole(n));
    std::vector<double> free;
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            zero.WriteRecord(CommaRecord().Number(model.Z(i, j)));
            l.WriteRecord(CommaRecord().Number(model.L(i, j)));
            pattern.WriteRecord(CommaRecord().Number(model.LPattern(i, j)));
            if (model.LPattern(i, j) == 1 && model.varianceOfL) {
                free.push_back(model.L(i, j));
            }
        }
    }
    // The parameter vector in the estimation's order; lag[q] is the place in Theta, or 0.
    std::vector<double> values;
    std::vector<int> lag;
    for (int i = 1; i <= n; ++i) {
        for (int k = 1; k <= model.p; ++k) {
            for (int j = 1; j <= n; ++j) {
                if (model.Z(i, j) == 1) {
                    values.push_back(model.A[static_cast<std::size_t>(k - 1)](i, j));
                    lag.push_back(static_cast<int>(std::count_if(lag.begin(), lag.end(),
                                                                 [](int a) { return a > 0; })) +
                                  1);
                }
            }
        }
        for (int c = 1; c <= model.d; ++c) {
            values.push_back(10.0 * i + c);
            lag.push_back(0);
        }
    }
    const auto all = values.size() + free.size();
    TextOutput out(workspace.DataFile("WALDT.TMP"), TextOutput::Mode::Output);
    out.WriteRecord(CommaRecord().Number(model.T).Whole(static_cast<long long>(all)));
    for (std::size_t c = 0; c < all; ++c) {
        out.WriteRecord(CommaRecord().Text("row, " + std::to_string(c)));
    }
    for (const double value : values) {
        out.WriteRecord(CommaRecord().Number(value));
    }
    for (const double value : free) {
        out.WriteRecord(CommaRecord().Number(value));
    }
    for (std::size_t r = 0; r < all; ++r) {
        for (std::size_t c = 0; c < all; ++c) {
            double value = model.ignored;
            if (r < values.size() && c < values.size() && lag[r] > 0 && lag[c] > 0) {
                value = model.VA(lag[r], lag[c]);
            } else if (r >= values.size() && c >= values.size()) {
                value = model.VL(static_cast<int>(r - values.size()) + 1,
                                 static_cast<int>(c - values.size()) + 1);
            }
            out.WriteRecord(CommaRecord().Number(value));
        }
    }
}

// The VAR(1) of two variables whose responses the tests work out by hand:
// A = [0.5 0.1; 0.2 0.3], L = [1 0; 0.5 2], an intercept in each equation, T = 50.
inline HandModel FirstOrderModel() {
    HandModel model;
    model.Z = MatrixOf({{1, 1}, {1, 1}});
    model.LPattern = MatrixOf({{1, 0}, {1, 1}});
    model.A = {MatrixOf({{0.5, 0.1}, {0.2, 0.3}})};
    model.L = MatrixOf({{1.0, 0.0}, {0.5, 2.0}});
    model.VA = Diagonal({0.04, 0.09, 0.16, 0.25});
    model.VL = Diagonal({0.5, 0.2, 0.8});
    return model;
}

} // namespace lorvane::test
