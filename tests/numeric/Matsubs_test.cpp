#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

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

// Inverses of matrices whose diagonal lies in [0.1, 10), as the inversion gave them before it
// learnt to scale: the same bits are expected, and the determinant to the last bits.
struct Recorded {
    const char* what;
    int n;
    std::vector<double> matrix; // row by row
    double determinant;
    std::vector<double> inverse;
};

const std::vector<Recorded>& RecordedInversions() {
    static const std::vector<Recorded> recorded = {
        {"a correlation matrix",
         4,
         {0x1p+0, 0x1.65a6814f58868p-4, 0x1.cebc5195c0aep-6, -0x1.1c9bc7e9624b8p-2,
          0x1.65a6814f58868p-4, 0x1p+0, 0x1.058d3577cdb3p-5, -0x1.65949998185cep-2,
          0x1.cebc5195c0aep-6, 0x1.058d3577cdb3p-5, 0x1p+0, 0x1.30a09f280495cp-2,
          -0x1.1c9bc7e9624b8p-2, -0x1.65949998185cep-2, 0x1.30a09f280495cp-2, 0x1p+0},
         0x1.6baf490794365p-1,
         {0x1.19ccb519e6992p+0, 0x1.141e10bd8d0a5p-5, -0x1.1ca3091c05774p-3, 0x1.6fae8bc2222e8p-2,
          0x1.141e10bd8d0a5p-5, 0x1.2ab18fdc9b74ap+0, -0x1.6c6f417f33593p-3, 0x1.e103e33ad307ep-2,
          -0x1.1ca3091c05774p-3, -0x1.6c6f417f33593p-3, 0x1.23f9057901102p+0, -0x1.c29e80354e48p-2,
          0x1.6fae8bc2222e8p-2, 0x1.e103e33ad307ep-2, -0x1.c29e80354e48p-2, 0x1.650ddf709b012p+0}},
        {"a dense matrix without symmetry",
         6,
         {0x1.db8e82a4d6f42p+0,  -0x1.b8c5000dfbc96p-1, 0x1.a20394adbf98p-6,  0x1.2dd3102949b4p-3,
          0x1.deae823e9406ap-1,  0x1.e55fcd15aeeb6p-1,  -0x1.33410111bfc1p-4, 0x1.1127c20c8ea08p+2,
          -0x1.13a40a6ea246p-3,  0x1.7795edbbe84c8p-1,  0x1.cb9c35865725cp-2, 0x1.47bde685d9dap-5,
          0x1.ef38ecb01e204p-1,  0x1.40be054bfb4c8p-1,  0x1.fd38f6b694039p+1, -0x1.458bea8af3ffep-1,
          -0x1.bd83523d4e80cp-2, 0x1.d17cfd6608e6ep-1,  0x1.510c660f6e0aap-1, 0x1.3097f11ad0e14p-1,
          -0x1.6e5a6c4a92e5p-2,  0x1.fb3ca5cb5cc32p+1,  0x1.a34742e8342dp-1,  -0x1.2c7f8151a8ep-3,
          0x1.209984e254de8p-3,  0x1.17fc48e0e6662p-1,  0x1.22d7bbab25da6p-1, -0x1.ae1656862b9dp-4,
          0x1.0faf8c3a09d78p+2,  -0x1.91f86f5bb301cp-2, 0x1.9a01b0358f5a4p-1, -0x1.4c3014b5cf30cp-2,
          0x1.333e9c1b5bb24p-2,  -0x1.2b3954bb74454p-1, -0x1.9ca8bf1fc4ddp-3, 0x1.5eac2bbc08c41p+0},
         0x1.87c4a014d34b6p+8,
         {0x1.d452e5eba5dc6p-1,  0x1.562a1aa6f812ep-3,  0x1.2a230f03edceep-4,
          -0x1.602ac138aac42p-3, -0x1.b803caf9f8bfp-3,  -0x1.884bdfefe97a2p-1,
          0x1.ca716867d9d8bp-5,  0x1.00581168d320bp-2,  0x1.961480a15ed93p-7,
          -0x1.d61cd23f02ad3p-5, -0x1.e702929ea8996p-6, -0x1.1a577d72eaep-4,
          -0x1.1613f0120aeddp-3, -0x1.507699b965747p-4, 0x1.00c50bc10b303p-2,
          0x1.bee83cdc9131dp-5,  0x1.a5327d42dffe9p-5,  -0x1.95584c7f1a5b8p-5,
          -0x1.6cad14d27f0e9p-3, -0x1.15ddd5465d84bp-4, 0x1.e0c1a523c3b67p-7,
          0x1.2e85824814778p-2,  -0x1.18ff40e7995efp-9, 0x1.2c0b64a72122cp-3,
          -0x1.3cda5ae2c111dp-4, -0x1.1269b63b37737p-5, -0x1.78c61eaee757p-5,
          0x1.073f24a4563b7p-5,  0x1.02f0c1e48978p-2,   0x1.499ee3060ba21p-3,
          -0x1.287de45cd9721p-1, -0x1.bc8596ca78512p-5, -0x1.85500dc93ec67p-4,
          0x1.a5639c4695373p-3,  0x1.260e5bbe82357p-3,  0x1.42367006c407dp+0}},
        {"a lower triangular factor",
         3,
         {0x1.c153bd1676641p-2, 0x0p+0, 0x0p+0, 0x1.e3872375500e3p-7, 0x1.c467381d7dbf5p-4, 0x0p+0,
          0x1.a0098ac33d011p-6, 0x1.8055c605326efp-5, 0x1.27e846a5d6becp-3},
         0x1.caeabbdefe9d4p-8,
         {0x1.23b512261bdp+1, 0x0p+0, 0x0p+0, -0x1.37c6bec4f5766p-2, 0x1.21b94eb062464p+3, 0x0p+0,
          -0x1.34e54550fc3c2p-2, -0x1.784dc1d310e72p+1, 0x1.baf311c56901ep+2}},
        {"a row addition before the first pivot",
         2,
         {0x1.eb851eb851eb8p-4, 0x1p+1, 0x1.ap+3, 0x1.8p+1},
         -0x1.9a3d70a3d70a4p+4,
         {-0x1.df404cae20bfcp-4, 0x1.3f80331ec07fdp-4, 0x1.03982988fc67ep-1,
          -0x1.32b882fecd478p-8}},
        {"the Hilbert matrix of order 4",
         4,
         {0x1p+0, 0x1p-1, 0x1.5555555555555p-2, 0x1p-2, 0x1p-1, 0x1.5555555555555p-2, 0x1p-2,
          0x1.999999999999ap-3, 0x1.5555555555555p-2, 0x1p-2, 0x1.999999999999ap-3,
          0x1.5555555555555p-3, 0x1p-2, 0x1.999999999999ap-3, 0x1.5555555555555p-3,
          0x1.2492492492492p-3},
         0x1.6312c75c3aa36p-23,
         {0x1.0000000001da5p+4, -0x1.e000000005221p+6, 0x1.e00000000626dp+7, -0x1.1800000003fe1p+7,
          -0x1.e000000005221p+6, 0x1.2c000000038fap+10, -0x1.5180000004456p+11,
          0x1.a4000000058bfp+10, 0x1.e00000000626dp+7, -0x1.5180000004456p+11,
          0x1.95000000051fdp+12, -0x1.068000000354p+12, -0x1.1800000003fe1p+7,
          0x1.a4000000058bfp+10, -0x1.068000000354p+12, 0x1.5e0000000452cp+11}},
        {"zeros on the diagonal",
         3,
         {0x0p+0, 0x1p+0, 0x1p-2, 0x1p+0, 0x0p+0, 0x0p+0, -0x1.8p-1, 0x0p+0, 0x1p-1},
         -0x1p-1,
         {0x0p+0, 0x1p+0, 0x0p+0, 0x1p+0, -0x1.8p-2, -0x1p-1, 0x0p+0, 0x1.8p+0, 0x1p+1}},
        {"a nearly singular matrix",
         2,
         {0x1p+0, 0x1.ffffde7210be9p-1, 0x1.ffffde7210be9p-1, 0x1p+0},
         0x1.0c6f713f92184p-19,
         {0x1.e848100000865p+18, -0x1.e847efffff79dp+18, -0x1.e847efffff79dp+18,
          0x1.e848100000865p+18}},
        {"row additions at later pivots",
         5,
         {0x1.2beba7e8296ep-2,  -0x1.1c979edf753acp+0, 0x1.12538702ab1bp-1,
          0x1.2cbaf40f4ad14p-1, -0x1.55f7da4b454e1p-1, 0x1.4p+5,
          0x1.d9a763b4bec8cp-3, 0x1.3e6e6f588e4c8p+0,  0x1.6f70e99ddacb6p+0,
          0x1.8ad38409cb388p-1, -0x1.5852ba041a87cp-2, 0x1.69d59b87a4342p+0,
          0x1.3e425be101b8fp-2, -0x1.156629d7613a8p-3, 0x1.be66e41b380ep-5,
          0x1.6d0aebb9d5eap+0,  -0x1.05067ed25728ep+0, -0x1.3f2f07a4cc129p-1,
          0x1.354e1c376c5fcp-3, 0x1.4dfa86a7aac98p+0,  0x1.730795ab3c3f8p+0,
          0x1.66890deba0d5p-1,  -0x1.eb46e2025596p-3,  0x1.85355e0f74958p-1,
          0x1.97b6a45880b8p-3},
         -0x1.7a36d250f379fp+5,
         {-0x1.102949a584db5p-4, 0x1.b3362b0bd35e1p-6,  -0x1.63087c40f1768p-4,
          -0x1.731048e0af56ep-5, -0x1.58b4a86ee07e1p-8, -0x1.e7861e84f1746p-3,
          0x1.2b3609721018p-11,  0x1.0e50673ddf3c6p-2,  -0x1.637d2c31ee3p-3,
          0x1.0eb9155ce33c4p-2,  0x1.36dc1c82f0f65p+0,  0x1.5da19f7f6edb3p-7,
          0x1.cea31b0a0d244p+0,  0x1.50564eef739bfp-1,  -0x1.88a7b934c0a3ap-1,
          0x1.4072f29127c43p-1,  -0x1.5fe21b593aaadp-5, 0x1.8bb73bd69f20ap-3,
          0x1.97fb05647673ep-3,  0x1.d0d16ab4807f5p-1,  0x1.93d67e091ed13p-2,
          -0x1.2f604a643024bp-6, 0x1.246a5c4fdfb04p+0,  0x1.f141c6c294dc7p-1,
          -0x1.09680e8bd3fa8p-2}},
    };
    return recorded;
}

// A symmetric matrix with six-digit elements from a fixed congruential sequence: diagonal in
// [1, 3), the rest in (-0.5, 0.5).
Matrix SixDigitMatrix(int n) {
    std::uint64_t state = 1919;
    const auto next = [&state] {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        return std::round(static_cast<double>(state >> 11) / 9007199254740992.0 * 1e6) / 1e6;
    };
    Matrix m(n, n);
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j < i; ++j) {
            m(i, j) = m(j, i) = next() - 0.5;
        }
        m(i, i) = 1 + 2 * next();
    }
    return m;
}

// Row and column i multiplied by 10^powers[i - 1].
Matrix Scaled(const Matrix& m, const std::vector<int>& powers) {
    Matrix scaled = m;
    for (int i = 1; i <= m.Rows(); ++i) {
        for (int j = 1; j <= m.Cols(); ++j) {
            scaled(i, j) *= std::pow(10.0, powers[static_cast<std::size_t>(i - 1)] +
                                               powers[static_cast<std::size_t>(j - 1)]);
        }
    }
    return scaled;
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

    // After the first pivot the second row is (0, x, 1) and the third (0, y, 1); the diagonal
    // lies near 1, so nothing is scaled. Where only the addition lifts the pivot x above 1E-10,
    // the flag shows whether it was made: the test is strict, so a lower element of exactly 100
    // times the diagonal is not enough. The determinant is x - y.
    const auto shaped = [](double x, double y) {
        return FromRows({{1, 1, 0}, {1, 1 + x, 1}, {0, y, 1}});
    };
    EXPECT_EQ(Invert(shaped(1e-11, 1e-9), 3).flag, 1);
    result = Invert(shaped(1e-11, 1.01e-9), 3);
    EXPECT_EQ(result.flag, 0);
    EXPECT_NEAR(result.determinant, 1e-11 - 1.01e-9, 1e-24);
    // Opposite signs: the row is subtracted, so that the magnitudes still add up.
    result = Invert(shaped(1e-11, -1), 3);
    ASSERT_EQ(result.flag, 0);
    EXPECT_NEAR(result.determinant, 1 + 1e-11, 1e-15);
    const double q = 1 / (1 + 1e-11);
    ExpectNear(result.inverse,
               FromRows({{(2 + 1e-11) * q, -q, q}, {-q, q, -q}, {-q, q, 1e-11 * q}}), 1e-15);
    // The sign decides at the edge: 1E-10 and 1E-13 add up to a pivot of 1.001E-10, but would
    // leave 0.999E-10 if they cancelled.
    EXPECT_EQ(Invert(shaped(-1e-13, 1e-10), 3).flag, 0);
    EXPECT_EQ(Invert(shaped(1e-13, 1e-10), 3).flag, 0);
    // A zero diagonal counts as negative: [[0, 1], [1, 0]] is its own inverse.
    result = Invert(FromRows({{0, 1}, {1, 0}}), 2);
    ASSERT_EQ(result.flag, 0);
    EXPECT_EQ(result.determinant, -1.0);
    EXPECT_EQ(result.inverse, FromRows({{0, 1}, {1, 0}}));
}

TEST(InvertMatrix, CollinearRowsFailAndLeaveTheInverse) {
    const Matrix untouched = FromRows({{7, 7, 7}, {7, 7, 7}, {7, 7, 7}});
    Inversion result;
    result.inverse = untouched;
    // The second row is the first but for 1E-11: the second pivot is below 1E-10.
    InvertMatrix(FromRows({{1, 1, 0}, {1, 1 + 1e-11, 0}, {0, 0, 1}}), result.inverse,
                 result.determinant, 3, result.flag);
    EXPECT_EQ(result.flag, 1);
    EXPECT_EQ(result.determinant, 0.0);
    EXPECT_EQ(result.inverse, untouched);
    // A pivot of 1E-10 itself passes.
    result = Invert(FromRows({{1, 1}, {1, 1 + 1e-10}}), 2);
    EXPECT_EQ(result.flag, 0);
    EXPECT_EQ(result.inverse(2, 2), 1e10);
    // A small diagonal element alone is a matter of units, not of collinearity.
    result = Invert(FromRows({{1, 0, 0}, {0, 1e-11, 0}, {0, 0, 1}}), 3);
    EXPECT_EQ(result.flag, 0);
    EXPECT_EQ(result.inverse(2, 2), 1e11);
    EXPECT_EQ(result.determinant, 1e-11);
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
    // The diagonal needs no scaling, but element (1, 3) of the inverse, 1E40, is beyond the
    // decimal range: that statement is skipped, the rest goes on, and the result is wrong but
    // not flagged.
    Inversion result = Invert(FromRows({{1, 1e20, 0}, {0, 1, 1e20}, {0, 0, 1}}), 3);
    EXPECT_EQ(result.flag, 0);
    EXPECT_EQ(result.inverse, FromRows({{1, -1e20, 0}, {0, 1, -1e20}, {0, 0, 1}}));
    EXPECT_EQ(result.determinant, 1.0);
    // An element beyond the decimal range counts as 0: this inverts [[1, 0], [1, 1]].
    result = Invert(FromRows({{1, 1e30}, {1, 1}}), 2);
    EXPECT_EQ(result.flag, 0);
    EXPECT_EQ(result.determinant, 1.0);
    EXPECT_EQ(result.inverse, FromRows({{1, 0}, {-1, 1}}));
}

TEST(InvertMatrix, WellScaledMatricesAreInvertedAsBefore) {
    for (const Recorded& recorded : RecordedInversions()) {
        Matrix m(recorded.n, recorded.n);
        Matrix expected(recorded.n, recorded.n);
        for (int i = 1; i <= recorded.n; ++i) {
            for (int j = 1; j <= recorded.n; ++j) {
                const auto at = static_cast<std::size_t>((i - 1) * recorded.n + j - 1);
                m(i, j) = recorded.matrix[at];
                expected(i, j) = recorded.inverse[at];
            }
        }
        const Inversion result = Invert(m, recorded.n);
        EXPECT_EQ(result.flag, 0) << recorded.what;
        EXPECT_EQ(result.inverse, expected) << recorded.what;
        EXPECT_DOUBLE_EQ(result.determinant, recorded.determinant) << recorded.what;
    }
}

// Rows and columns multiplied by powers of ten: the decimal digits of the scaled matrix are
// those of the matrix itself, the point moved, so the inverse is the same to the last digit,
// the point moved back, and the determinant takes the power of ten along.
TEST(InvertMatrix, PowersOfTenScaleTheAnswersExactly) {
    const Matrix m = SixDigitMatrix(6);
    const Inversion plain = Invert(m, 6);
    ASSERT_EQ(plain.flag, 0);
    Determinant plainDeterminant;
    Matrix inverse;
    Int16 flag;
    InvertMatrix(m, inverse, plainDeterminant, 6, flag);
    for (const std::vector<int>& powers :
         {std::vector<int>{-3, -3, -3, -3, -3, -3}, std::vector<int>{9, 9, 9, 9, 9, 9},
          std::vector<int>{0, -16, 4, 20, -2, 7}, std::vector<int>{-40, 0, 0, 35, 0, 0}}) {
        const Matrix scaled = Scaled(m, powers);
        Determinant determinant;
        InvertMatrix(scaled, inverse, determinant, 6, flag);
        ASSERT_EQ(flag, 0);
        int total = 0;
        for (int i = 1; i <= 6; ++i) {
            total += 2 * powers[static_cast<std::size_t>(i - 1)];
            for (int j = 1; j <= 6; ++j) {
                const double back = std::pow(10.0, powers[static_cast<std::size_t>(i - 1)] +
                                                       powers[static_cast<std::size_t>(j - 1)]);
                EXPECT_NEAR(inverse(i, j) * back, plain.inverse(i, j),
                            4e-16 * std::fabs(plain.inverse(i, j)))
                    << i << ", " << j << " at " << powers[0];
            }
        }
        EXPECT_NEAR(determinant.Log(), plainDeterminant.Log() + total * std::log(10.0), 1e-12);
    }
    // Collinear stays collinear in any units.
    Matrix collinear = m;
    for (int j = 1; j <= 6; ++j) {
        collinear(6, j) = collinear(j, 6) = m(j, 1) + m(j, 2);
    }
    collinear(6, 6) = m(1, 1) + 2 * m(1, 2) + m(2, 2);
    for (const int power : {-12, 0, 12}) {
        InvertMatrix(Scaled(collinear, std::vector<int>(6, power)), inverse, plainDeterminant, 6,
                     flag);
        EXPECT_EQ(flag, 1) << power;
    }
}

TEST(InvertMatrix, TheDeterminantNeitherUnderflowsNorOverflows) {
    for (const double element : {1e-9, 1e9, 1e-100}) {
        Matrix m(40, 40);
        for (int i = 1; i <= 40; ++i) {
            m(i, i) = element;
        }
        Determinant determinant;
        Matrix inverse;
        Int16 flag;
        InvertMatrix(m, inverse, determinant, 40, flag);
        ASSERT_EQ(flag, 0);
        EXPECT_DOUBLE_EQ(inverse(40, 40), 1 / element);
        EXPECT_NEAR(determinant.Log(), 40 * std::log(element),
                    1e-12 * 40 * std::fabs(std::log(element)));
        EXPECT_EQ(determinant.Sign(), 1);
        double value = 0;
        InvertMatrix(m, inverse, value, 40, flag);
        EXPECT_EQ(value, element < 1 ? 0.0 : HUGE_VAL);
    }
    // Within the range of doubles the value comes to the last bits: 1E-8 to the fourth.
    const Inversion result =
        Invert(FromRows({{1e-8, 0, 0, 0}, {0, 1e-8, 0, 0}, {0, 0, 1e-8, 0}, {0, 0, 0, 1e-8}}), 4);
    EXPECT_DOUBLE_EQ(result.determinant, 1e-32);
    // A negative determinant has no logarithm.
    Determinant negative;
    Matrix inverse;
    Int16 flag;
    InvertMatrix(FromRows({{0, 1}, {1, 0}}), inverse, negative, 2, flag);
    EXPECT_EQ(negative.Sign(), -1);
    EXPECT_EQ(ErrorNumberOf([&] { negative.Log(); }), InvalidProcedureCall);
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
