#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "frame/RuntimeError.h"
#include "numeric/Matsubs.h"
#include "support/Errors.h"
#include "support/TestModule.h"

using namespace lorvane;
using lorvane::test::ErrorNumberOf;
using lorvane::test::TestModule;

namespace {

Matrix FromRows(std::initializer_list<std::initializer_list<double>> rows) {
    Matrix m(static_cast<int>(rows.size()), static_cast<int>(rows.begin()->size()));
    int r = 0;
    for (const auto& row : rows) {
        ++r;
        int c = 0;
        for (const double value : row) {
            m(r, ++c) = value;
        }
    }
    return m;
}

struct Inversion {
    Matrix inverse;
    double determinant = -99.0;
    Int16 flag = -1;
    InversionResidual residual;
};

Inversion Invert(const Matrix& m, double size) {
    Inversion result;
    InvertMatrix(m, result.inverse, result.determinant, size, result.flag, &result.residual);
    return result;
}

void ExpectNear(const Matrix& actual, const Matrix& expected, double relative) {
    for (int i = 1; i <= expected.Rows(); ++i) {
        for (int j = 1; j <= expected.Cols(); ++j) {
            EXPECT_NEAR(actual(i, j), expected(i, j), relative * std::fabs(expected(i, j)) + 1e-300)
                << "(" << i << ", " << j << ")";
        }
    }
}

double Binomial(int n, int k) {
    double result = 1.0;
    for (int i = 1; i <= k; ++i) {
        result = result * (n - k + i) / i;
    }
    return result;
}

} // namespace

// Hilbert matrices have integer inverses with a closed form, and det H(n) = c(n)^4 / c(2n) with
// c(n) = 1! 2! ... (n-1)!. Their elements are not exact in doubles, and the condition number
// (about 1.5E7 at n = 6) scales those 1E-16 errors up; the decimal arithmetic adds nothing to it.
TEST(InvertMatrix, HilbertMatricesAgainstTheirIntegerInverses) {
    const auto c = [](int n) {
        double product = 1.0;
        for (int k = 1; k < n; ++k) {
            product *= std::tgamma(k + 1.0);
        }
        return product;
    };
    for (int n = 2; n <= 6; ++n) {
        Matrix hilbert(n, n);
        Matrix exact(n, n);
        for (int i = 1; i <= n; ++i) {
            for (int j = 1; j <= n; ++j) {
                hilbert(i, j) = 1.0 / (i + j - 1);
                const double b = Binomial(i + j - 2, i - 1);
                exact(i, j) = ((i + j) % 2 == 0 ? 1 : -1) * (i + j - 1) *
                              Binomial(n + i - 1, n - j) * Binomial(n + j - 1, n - i) * b * b;
            }
        }
        const Inversion result = Invert(hilbert, n);
        ASSERT_EQ(result.flag, 0) << n;
        ExpectNear(result.inverse, exact, 2e-16 * std::pow(10.0, 1.6 * n));
        EXPECT_NEAR(result.determinant, std::pow(c(n), 4) / c(2 * n),
                    1e-9 * std::pow(c(n), 4) / c(2 * n))
            << n;
        EXPECT_FALSE(result.residual.poor);
    }
}

// tridiag(-1, 2, -1) of order n: inverse min(i, j) (n + 1 - max(i, j)) / (n + 1), det n + 1.
TEST(InvertMatrix, TridiagonalMatrixToTwentyEightDigits) {
    for (const int n : {2, 7, 40}) {
        Matrix t(n, n);
        Matrix exact(n, n);
        for (int i = 1; i <= n; ++i) {
            for (int j = 1; j <= n; ++j) {
                t(i, j) = i == j ? 2.0 : (std::abs(i - j) == 1 ? -1.0 : 0.0);
                exact(i, j) = std::min(i, j) * (n + 1.0 - std::max(i, j)) / (n + 1.0);
            }
        }
        const Inversion result = Invert(t, n);
        ASSERT_EQ(result.flag, 0);
        ExpectNear(result.inverse, exact, 4e-16);
        EXPECT_EQ(result.determinant, n + 1.0);
        EXPECT_LT(result.residual.largestDeviation, 1e-25);
    }
}

TEST(InvertMatrix, RowAdditionInsteadOfInterchange) {
    // 101 beats 100 |1|: row 2 is added to row 1; the determinant is unchanged, -199.
    Inversion result = Invert(FromRows({{1, 2}, {101, 3}}), 2);
    ASSERT_EQ(result.flag, 0);
    EXPECT_EQ(result.determinant, -199.0);
    ExpectNear(result.inverse, FromRows({{-3 / 199.0, 2 / 199.0}, {101 / 199.0, -1 / 199.0}}),
               1e-15);
    result = Invert(FromRows({{1, 2}, {100, 3}}), 2);
    ASSERT_EQ(result.flag, 0);
    EXPECT_EQ(result.determinant, -197.0);
    ExpectNear(result.inverse, FromRows({{-3 / 197.0, 2 / 197.0}, {100 / 197.0, -1 / 197.0}}),
               1e-15);

    // Where only the addition lifts the pivot above 1E-10, the flag shows whether it was made:
    // the test is strict, so a lower element of exactly 100 times the diagonal is not enough.
    EXPECT_EQ(Invert(FromRows({{1e-11, 1}, {1e-9, 1}}), 2).flag, 1);
    result = Invert(FromRows({{1e-11, 1}, {1.01e-9, 1}}), 2);
    EXPECT_EQ(result.flag, 0);
    EXPECT_NEAR(result.determinant, 1e-11 - 1.01e-9, 1e-24);
    // Opposite signs: the row is subtracted, so that the magnitudes still add up.
    result = Invert(FromRows({{1e-11, 1}, {-1, 1}}), 2);
    ASSERT_EQ(result.flag, 0);
    EXPECT_NEAR(result.determinant, 1 + 1e-11, 1e-15);
    ExpectNear(
        result.inverse,
        FromRows({{1 / (1 + 1e-11), -1 / (1 + 1e-11)}, {1 / (1 + 1e-11), 1e-11 / (1 + 1e-11)}}),
        1e-15);
    // The sign decides at the edge: 1E-10 and 1E-13 add up to a pivot of 1.001E-10, but would
    // leave 0.999E-10 if they cancelled.
    EXPECT_EQ(Invert(FromRows({{-1e-13, 1}, {1e-10, 1}}), 2).flag, 0);
    EXPECT_EQ(Invert(FromRows({{1e-13, 1}, {1e-10, 1}}), 2).flag, 0);
    // A zero diagonal counts as negative: [[0, 1], [1, 0]] is its own inverse.
    result = Invert(FromRows({{0, 1}, {1, 0}}), 2);
    ASSERT_EQ(result.flag, 0);
    EXPECT_EQ(result.determinant, -1.0);
    EXPECT_EQ(result.inverse, FromRows({{0, 1}, {1, 0}}));
}

TEST(InvertMatrix, SmallPivotFailsAndLeavesTheInverse) {
    const Matrix untouched = FromRows({{7, 7, 7}, {7, 7, 7}, {7, 7, 7}});
    Inversion result;
    result.inverse = untouched;
    InvertMatrix(FromRows({{1, 0, 0}, {0, 1e-11, 0}, {0, 0, 1}}), result.inverse,
                 result.determinant, 3, result.flag);
    EXPECT_EQ(result.flag, 1);
    EXPECT_EQ(result.determinant, 0.0);
    EXPECT_EQ(result.inverse, untouched);
    // 1E-10 itself passes.
    result = Invert(FromRows({{1, 0, 0}, {0, 1e-10, 0}, {0, 0, 1}}), 3);
    EXPECT_EQ(result.flag, 0);
    EXPECT_EQ(result.inverse(2, 2), 1e10);
}

TEST(InvertMatrix, OneByOneStaysInDoubles) {
    // The determinant stays 1, and only 0 fails.
    for (const double element : {4.0, 1e-12, -1e-300}) {
        const Inversion result = Invert(FromRows({{element}}), 1);
        EXPECT_EQ(result.flag, 0);
        EXPECT_EQ(result.determinant, 1.0);
        EXPECT_EQ(result.inverse(1, 1), 1 / element);
    }
    const Inversion result = Invert(FromRows({{0}}), 1);
    EXPECT_EQ(result.flag, 1);
    EXPECT_EQ(result.determinant, 0.0);
}

TEST(InvertMatrix, FailingStatementsAreSkippedAndTheFlagStaysZero) {
    // The true inverse has -2.5E29 at (1, 2), beyond the decimal range: that statement is
    // skipped, the rest goes on, and the result is poor but not flagged.
    Inversion result = Invert(FromRows({{2e-10, 1e10}, {0, 2e-10}}), 2);
    EXPECT_EQ(result.flag, 0);
    EXPECT_EQ(result.inverse, FromRows({{5e9, 0}, {0, 5e9}}));
    EXPECT_NEAR(result.determinant, 4e-20, 1e-34);
    EXPECT_TRUE(result.residual.poor);
    EXPECT_EQ(result.residual.largestDeviation, 5e19);
    // An element beyond the decimal range counts as 0: this inverts [[0, 1], [1, 1]].
    result = Invert(FromRows({{1e30, 1}, {1, 1}}), 2);
    EXPECT_EQ(result.flag, 0);
    EXPECT_EQ(result.determinant, -1.0);
    EXPECT_EQ(result.inverse, FromRows({{-1, 1}, {1, 0}}));
    // Pivots below the decimal resolution multiply to a determinant of 0.
    result =
        Invert(FromRows({{1e-8, 0, 0, 0}, {0, 1e-8, 0, 0}, {0, 0, 1e-8, 0}, {0, 0, 0, 1e-8}}), 4);
    EXPECT_EQ(result.flag, 0);
    EXPECT_EQ(result.determinant, 0.0);
    EXPECT_EQ(result.inverse(4, 4), 1e8);
}

TEST(InvertMatrix, UsesTheTopLeftBlockOfALargerMatrix) {
    Matrix inverse = FromRows({{9, 9, 9}, {9, 9, 9}, {9, 9, 9}});
    double determinant = 0.0;
    Int16 flag;
    // Size 2.4 rounds to 2.
    InvertMatrix(FromRows({{2, 0, 5}, {0, 4, 5}, {5, 5, 5}}), inverse, determinant, 2.4, flag);
    EXPECT_EQ(flag, 0);
    EXPECT_EQ(determinant, 8.0);
    EXPECT_EQ(inverse, FromRows({{0.5, 0, 9}, {0, 0.25, 9}, {9, 9, 9}}));
    Matrix empty;
    InvertMatrix(FromRows({{2, 0}, {0, 4}}), empty, determinant, 2, flag);
    EXPECT_EQ(empty, FromRows({{0.5, 0}, {0, 0.25}}));
    EXPECT_EQ(ErrorNumberOf([&] {
                  InvertMatrix(FromRows({{2, 0}, {0, 4}}), empty, determinant, 3, flag);
              }),
              SubscriptOutOfRange);
}

// Without a residual to report the check is skipped, and the inverse is the same to the bit; the
// row hook runs once per row of the elimination and once per row of the back substitution.
TEST(InvertMatrix, TheResidualAndTheRowHookLeaveTheInverseAsItIs) {
    const Matrix m = FromRows({{4, 1, 2}, {1, 5, 3}, {2, 3, 7}});
    const Inversion checked = Invert(m, 3);
    Matrix inverse;
    double determinant = 0.0;
    Int16 flag;
    int rows = 0;
    InvertMatrix(m, inverse, determinant, 3, flag, nullptr, [&rows] { ++rows; });
    EXPECT_EQ(rows, 6);
    EXPECT_EQ(flag, 0);
    EXPECT_EQ(determinant, checked.determinant);
    EXPECT_EQ(inverse, checked.inverse);
    EXPECT_LT(checked.residual.largestDeviation, 1e-20);
}

TEST(CroutDecompose, UnitTrianglesAndPivotsRebuildTheMatrix) {
    const Matrix a = FromRows({{4, 3, 2}, {8, 10, 7}, {-4, 9, 12}});
    Matrix lu = a;
    Int16 flag = -1;
    CroutDecompose(lu, 3, flag);
    ASSERT_EQ(flag, 0);
    // L D U with L = [[1,0,0],[2,1,0],[-1,3,1]], D = diag(4, 4, 5), U =
    // [[1,.75,.5],[0,1,.75],[0,0,1]].
    EXPECT_EQ(lu, FromRows({{4, 0.75, 0.5}, {2, 4, 0.75}, {-1, 3, 5}}));
    Matrix singular = FromRows({{1, 2}, {2, 4}});
    CroutDecompose(singular, 2, flag);
    EXPECT_EQ(flag, 1);
}

TEST(LLDecomposition, FactorTimesItsTransposeGivesTheMatrix) {
    TestModule test;
    const Matrix l = FromRows({{2, 0, 0}, {1, 3, 0}, {-1, 2, 4}});
    const Matrix a = FromRows({{4, 2, -2}, {2, 10, 5}, {-2, 5, 21}}); // L L'
    Matrix factor;
    Int16 flag = -1;
    LLDecomposition(a, factor, 3, flag, test.module().boxes(), "VAR");
    EXPECT_EQ(flag, 0);
    ExpectNear(factor, l, 1e-15);
    EXPECT_EQ(factor(1, 3), 0.0);
    EXPECT_TRUE(test.dialogs().Shown().empty());
}

TEST(LLDecomposition, ZeroPivotFailsWithTheMessageEvenWhenNonsingular) {
    TestModule test;
    test.dialogs().QueueAnswer("OK");
    Matrix factor;
    Int16 flag = -1;
    LLDecomposition(FromRows({{0, 1}, {1, 2}}), factor, 2, flag, test.module().boxes(), "VAR");
    EXPECT_EQ(flag, 1);
    ASSERT_EQ(test.dialogs().Shown().size(), 1u);
    EXPECT_EQ(test.dialogs().LastMessage().text,
              "LL decomposition of a symmetric matrix failed due to near-singularity");
    EXPECT_EQ(test.dialogs().LastMessage().title, "VAR");
    EXPECT_EQ(test.dialogs().LastMessage().buttons, std::vector<std::string>{"OK"});
    // A negative pivot reaches the square root.
    EXPECT_EQ(ErrorNumberOf([&] {
                  LLDecomposition(FromRows({{-4, 0}, {0, 1}}), factor, 2, flag,
                                  test.module().boxes(), "VAR");
              }),
              InvalidProcedureCall);
}
