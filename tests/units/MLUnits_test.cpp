// The maximum likelihood variances and log-likelihoods of the structural model in any units:
// at the same estimate written in other units, the t-values are the same and the
// log-likelihoods differ by the logarithm of the power of ten. (The simplex search itself is
// not repeated here: its start and its stopping rule are the user's.)

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "numeric/MatrixProducts.h"
#include "numeric/Matsubs.h"
#include "numeric/Pattern.h"
#include "structural/MLVariance.h"
#include "structural/MomentConditions.h"
#include "structural/SimplexObjectives.h"
#include "structural/StructuralModel.h"
#include "support/E1Road.h"

namespace lorvane {
namespace {

using test::ExampleFactor;

constexpr int T = 73;

// The recursive model of three variables.
Pattern Recursive() {
    Pattern Apat(3);
    for (int i = 1; i <= 3; ++i) {
        for (int j = 1; j <= i; ++j) {
            Apat(i, j) = 1;
        }
    }
    return Apat;
}

// Everything the maximum likelihood report prints about b at a power of ten of the units: b
// and u are written in units 10^s (b holds elements of B = L^-1, so it is divided).
struct Report {
    std::vector<double> tB;
    std::vector<double> tFactor;
    std::vector<double> tCoefficients;
    double logLikelihood = 0;
    double nonstructural = 0;
};

Report ReportAt(int s) {
    const Pattern Apat = Recursive();
    const double unit = std::pow(10.0, s);
    Matrix L = ExampleFactor();
    Matrix u(T, 3);
    std::uint64_t state = 1987;
    for (int t = 1; t <= T; ++t) {
        double e[3];
        for (double& shock : e) {
            state = state * 6364136223846793005ULL + 1442695040888963407ULL;
            shock = (static_cast<double>(state >> 11) / 9007199254740992.0 - 0.5) * std::sqrt(12.0);
        }
        for (int i = 1; i <= 3; ++i) {
            for (int j = 1; j <= i; ++j) {
                u(t, i) += L(i, j) * e[j - 1] * unit;
            }
        }
    }
    for (int i = 1; i <= 3; ++i) {
        for (int j = 1; j <= 3; ++j) {
            L(i, j) *= unit;
        }
    }
    Matrix F;
    double determinant = 0;
    Int16 flag;
    InvertMatrix(L, F, determinant, 3, flag);
    std::vector<double> b;
    for (int i = 1; i <= 3; ++i) {
        for (int j = 1; j <= i; ++j) {
            b.push_back(F(i, j));
        }
    }

    Report report;
    Matrix VarB;
    EXPECT_TRUE(ScoreVarianceOfB(Apat, b, u, T, VarB));
    for (std::size_t k = 0; k < b.size(); ++k) {
        const int r = static_cast<int>(k) + 1;
        report.tB.push_back(std::sqrt(T) * b[k] / std::sqrt(VarB(r, r)));
    }
    std::vector<FactorPlace> places;
    for (int i = 1; i <= 3; ++i) {
        for (int j = 1; j <= i; ++j) {
            places.push_back({i, j});
        }
    }
    Matrix VarBInv;
    EXPECT_TRUE(VarianceOfFactor(Apat, b, VarB, places, VarBInv));
    for (std::size_t r = 0; r < places.size(); ++r) {
        const int c = static_cast<int>(r) + 1;
        report.tFactor.push_back(std::sqrt(T) * L(places[r].i, places[r].j) /
                                 std::sqrt(VarBInv(c, c)));
    }
    Matrix VA;
    Matrix VC;
    EXPECT_TRUE(VarianceOfCoefficients(Apat, b, VarB, VA, VC));
    Vector CoefA;
    Vector CoefC;
    EXPECT_TRUE(StructuralCoefficients(Apat, BuildB(Apat, b), CoefA, CoefC));
    for (int r = 1; r <= CoefA.Size(); ++r) {
        report.tCoefficients.push_back(std::sqrt(T) * CoefA(r) / std::sqrt(VA(r, r)));
    }
    for (int r = 1; r <= CoefC.Size(); ++r) {
        report.tCoefficients.push_back(std::sqrt(T) * CoefC(r) / std::sqrt(VC(r, r)));
    }

    const Matrix S = OuterProduct(L);
    Matrix SInv;
    Determinant DetS;
    InvertMatrix(S, SInv, DetS, 3, flag);
    double c0 = 0;
    SimplexObjectives objectives(Apat, S, SInv, T, c0);
    report.logLikelihood = objectives.LogLikelihood(b);
    report.nonstructural = objectives.NonstructuralLogLikelihood(DetS.Value());
    return report;
}

void ExpectSame(const std::vector<double>& actual, const std::vector<double>& expected, int s) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t r = 0; r < expected.size(); ++r) {
        EXPECT_NEAR(actual[r], expected[r], 1e-8 * std::fabs(expected[r])) << r << " at " << s;
    }
}

TEST(Units, MaximumLikelihoodVariancesAndLogLikelihoodsInEveryPowerOfTen) {
    const Report base = ReportAt(0);
    // The t-values are those of a well-defined model: none is a zero or a blow-up.
    for (const double t : base.tB) {
        EXPECT_GT(std::fabs(t), 0.1);
        EXPECT_LT(std::fabs(t), 100);
    }
    const double perPower = -T * 3 * std::log(10.0);
    for (int s = -4; s <= 9; ++s) {
        const Report scaled = ReportAt(s);
        ExpectSame(scaled.tB, base.tB, s);
        ExpectSame(scaled.tFactor, base.tFactor, s);
        ExpectSame(scaled.tCoefficients, base.tCoefficients, s);
        // Beyond s = 7 det(B'B) is below 1E-30, which counts as it is.
        EXPECT_NEAR(scaled.logLikelihood, base.logLikelihood + s * perPower,
                    1e-9 * std::fabs(s * perPower) + 1e-9)
            << s;
        EXPECT_NEAR(scaled.nonstructural, base.nonstructural + s * perPower,
                    1e-9 * std::fabs(s * perPower) + 1e-9)
            << s;
    }
}

} // namespace
} // namespace lorvane
