#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "numeric/Matsubs.h"
#include "platform/Headless.h"
#include "structural/DownhillSimplex.h"
#include "structural/LikelihoodRefinement.h"
#include "structural/LikelihoodSearch.h"
#include "structural/SimplexObjectives.h"

using namespace lorvane;

namespace {

// Each variable reacts to the one before it: k diagonal and k - 1 further parameters for
// (k^2 + k) / 2 moments, an over-identified model.
Pattern Chain(int k) {
    Pattern Apat(k);
    for (int i = 1; i <= k; ++i) {
        Apat(i, i) = 1;
        if (i > 1) {
            Apat(i, i - 1) = -1;
        }
    }
    return Apat;
}

// The sample variance of T draws of u = B^-1 e, e standard normal, for a B of the pattern with
// its diagonal near 1; the model fits the data only up to sampling error.
Matrix SimulatedVariance(const Pattern& Apat, int T, unsigned seed) {
    const int k = Apat.Size();
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> element(-0.8, 0.8);
    std::normal_distribution<double> normal;
    Matrix B(k, k);
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= k; ++j) {
            B(i, j) = Apat(i, j) == 0 ? 0 : (i == j ? 1 + 0.5 * element(random) : element(random));
        }
    }
    Matrix F(k, k);
    double determinant = 0;
    Int16 flag;
    InvertMatrix(B, F, determinant, k, flag);
    Matrix S(k, k);
    for (int t = 0; t < T; ++t) {
        std::vector<double> e(static_cast<std::size_t>(k));
        for (double& x : e) {
            x = normal(random);
        }
        std::vector<double> u(static_cast<std::size_t>(k));
        for (int i = 1; i <= k; ++i) {
            for (int j = 1; j <= k; ++j) {
                u[static_cast<std::size_t>(i - 1)] += F(i, j) * e[static_cast<std::size_t>(j - 1)];
            }
        }
        for (int i = 1; i <= k; ++i) {
            for (int j = 1; j <= k; ++j) {
                S(i, j) +=
                    u[static_cast<std::size_t>(i - 1)] * u[static_cast<std::size_t>(j - 1)] / T;
            }
        }
    }
    return S;
}

// The start of a model without a moment solution: 1/sqrt of the variances on the diagonal.
std::vector<double> DiagonalStart(const Pattern& Apat, const Matrix& S) {
    std::vector<double> b;
    for (int i = 1; i <= Apat.Size(); ++i) {
        for (int j = 1; j <= Apat.Size(); ++j) {
            if (Apat(i, j) != 0) {
                b.push_back(i == j ? 1 / std::sqrt(S(i, i)) : 0.0);
            }
        }
    }
    return b;
}

TEST(LikelihoodRefinement, DerivativesAgreeWithDifferences) {
    Pattern Apat = Chain(4);
    Apat(1, 3) = 1;
    Apat(4, 2) = -1;
    const Matrix S = SimulatedVariance(Apat, 60, 3);
    const StructuralLikelihood likelihood(Apat, S);
    std::vector<double> b = DiagonalStart(Apat, S);
    for (std::size_t k = 0; k < b.size(); ++k) {
        b[k] += 0.1 * std::sin(static_cast<double>(k) + 1);
    }
    double value = 0;
    std::vector<double> gradient;
    Matrix hessian;
    ASSERT_TRUE(likelihood.Derivatives(b, value, gradient, hessian));
    double plain = 0;
    std::vector<double> plainGradient;
    ASSERT_TRUE(test::PlainLikelihood(Apat, S, b, plain, plainGradient));
    EXPECT_NEAR(value, plain, 1e-12);
    const double h = 1e-5;
    for (std::size_t k = 0; k < b.size(); ++k) {
        EXPECT_NEAR(gradient[k], plainGradient[k], 1e-10) << k;
        std::vector<double> up = b;
        std::vector<double> down = b;
        up[k] += h;
        down[k] -= h;
        double fUp = 0;
        double fDown = 0;
        std::vector<double> gUp;
        std::vector<double> gDown;
        Matrix unused;
        ASSERT_TRUE(likelihood.Derivatives(up, fUp, gUp, unused));
        ASSERT_TRUE(likelihood.Derivatives(down, fDown, gDown, unused));
        EXPECT_NEAR(gradient[k], (fUp - fDown) / (2 * h), 1e-7) << k;
        for (std::size_t l = 0; l < b.size(); ++l) {
            const int r = static_cast<int>(l) + 1;
            const int c = static_cast<int>(k) + 1;
            EXPECT_NEAR(hessian(r, c), (gUp[l] - gDown[l]) / (2 * h), 1e-6) << l << "," << k;
        }
    }

    // Where the search's likelihood is impossible there is nothing to refine.
    std::vector<double> negative = b;
    negative[0] = -negative[0];
    EXPECT_FALSE(likelihood.Value(negative, value));
    const std::vector<double> kept = negative;
    EXPECT_EQ(RefineLikelihood(likelihood, negative), 0);
    EXPECT_EQ(negative, kept);
}

// Two runs of option 1 as the search screen makes them (the simplex, then the refinement of its
// result; the second from the first's record) reach the maximum that plain gradient searches
// from several starts find, and a further run stays there.
TEST(LikelihoodRefinement, OveridentifiedChainsReachTheMaximumWithinTwoRuns) {
    for (const int k : {4, 6}) {
        const Pattern Apat = Chain(k);
        const Matrix S = SimulatedVariance(Apat, 120, 11u + static_cast<unsigned>(k));
        Matrix SInv(k, k);
        double determinant = 0;
        Int16 flag;
        InvertMatrix(S, SInv, determinant, k, flag);
        const double T = 120;
        double c0 = 0;
        SimplexObjectives objectives(Apat, S, SInv, T, c0);

        std::vector<double> independent;
        test::IndependentMaximum(Apat, S, DiagonalStart(Apat, S), independent);
        const double maximum = objectives.LogLikelihood(independent);

        ClassicRandom random;
        random.seed(5);
        SimplexSearch search;
        search.objective = [&objectives](const std::vector<double>& x) {
            return SimplexValue(objectives, 1, x);
        };
        search.display = [](double, const std::vector<double>&, double) {};
        std::vector<double> b = DiagonalStart(Apat, S);
        double reached = -1E+30;
        for (int run = 1; run <= 3; ++run) {
            double iterations = 0;
            RunSimplexSearch(search, random, b, iterations);
            const double closed = objectives.LogLikelihood(b);
            ASSERT_TRUE(RefineSimplexResult(objectives, S, b).has_value());
            const double refined = objectives.LogLikelihood(b);
            EXPECT_GE(refined, closed);
            if (run >= 2) {
                EXPECT_NEAR(refined, maximum, 1e-6) << "k " << k << " run " << run;
                EXPECT_NEAR(refined, reached, 1e-8) << "k " << k << " run " << run;
            }
            reached = refined;
        }
        for (std::size_t p = 0; p < b.size(); ++p) {
            EXPECT_NEAR(b[p], independent[p], 1e-6 * (1 + std::abs(independent[p])));
        }
    }
}

} // namespace
