#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "frame/Int16.h"
#include "numeric/Matsubs.h"
#include "platform/Headless.h"
#include "structural/DownhillSimplex.h"
#include "structural/SimplexObjectives.h"
#include "structural/SimplexRecords.h"

using namespace lorvane;

namespace {

TEST(SimplexRandom, AFixedSeedOutlivesTheClock) {
    ClassicRandom clocked;
    clocked.seedFromClock(100.25);
    const float first = clocked.next();
    clocked.seedFromClock(200.5);
    EXPECT_NE(clocked.next(), first);
    clocked.seedFromClock(100.25);
    EXPECT_EQ(clocked.next(), first);

    // Once a script fixes the seed, the clock seeding of each run leaves the sequence alone.
    ClassicRandom fixed;
    ClassicRandom reference;
    fixed.seed(7);
    reference.seed(7);
    for (int draw = 0; draw < 3; ++draw) {
        fixed.seedFromClock(1000.0 * draw);
        EXPECT_EQ(fixed.next(), reference.next());
    }
}

// S = diag(4, 1) and the free diagonal B of the pattern diag(1, 1): the likelihood is largest at
// B = diag(1/2, 1), where B'B is the inverse of S.
class TwoByTwo : public ::testing::Test {
protected:
    TwoByTwo() : S(2, 2), SInv(2, 2), Apat(2) {
        S(1, 1) = 4;
        S(2, 2) = 1;
        SInv(1, 1) = 0.25;
        SInv(2, 2) = 1;
        Apat(1, 1) = 1;
        Apat(2, 2) = 1;
    }
    SimplexObjectives Objectives() { return SimplexObjectives(Apat, S, SInv, 10, c0); }

    Matrix S;
    Matrix SInv;
    Pattern Apat;
    double c0 = 0;
};

TEST_F(TwoByTwo, LogLikelihoodAndItsGuards) {
    SimplexObjectives objectives = Objectives();
    const double pi = 4 * std::atan(1.0);
    const double constant = -2 * std::log(std::sqrt(2 * pi));
    // At the maximum, ln det(B'B) = -ln 4 and tr(S B'B) = 2.
    EXPECT_NEAR(objectives.LogLikelihood({0.5, 1}), 10 * (-0.5 * std::log(4.0) - 1 + constant),
                1e-12);
    EXPECT_NEAR(objectives.NonstructuralLogLikelihood(4), objectives.LogLikelihood({0.5, 1}),
                1e-12);
    EXPECT_LT(objectives.LogLikelihood({0.6, 1}), objectives.LogLikelihood({0.5, 1}));
    // A free diagonal element at or below zero rules the point out.
    EXPECT_EQ(objectives.LogLikelihood({0, 1}), -1E+30);
    EXPECT_EQ(objectives.LogLikelihood({0.5, -1}), -1E+30);
    // A tiny determinant counts as it is, whatever the units; only a singular B'B (here b(1)
    // squared underflows to 0) counts as 1E-30.
    EXPECT_NEAR(objectives.LogLikelihood({1E-20, 1}),
                10 * (0.5 * std::log(1E-40) - 0.5 * (4E-40 + 1) + constant), 1e-9);
    EXPECT_NEAR(objectives.LogLikelihood({1E-200, 1}),
                10 * (0.5 * std::log(1E-30) - 0.5 + constant), 1e-9);
}

TEST_F(TwoByTwo, MaximumAbsoluteDeviationInSinglePrecision) {
    const SimplexObjectives objectives = Objectives();
    EXPECT_EQ(objectives.MaximumAbsoluteDeviation({0.5, 1}), 0);
    // B'B = diag(0.01, 1.21): the deviations are 0.24 and 0.21.
    const double mad = objectives.MaximumAbsoluteDeviation({0.1, 1.1});
    EXPECT_EQ(mad, ToSingle(0.24));
    EXPECT_NE(mad, 0.24);
    // No diagonal guard here: the sign of b does not matter to B'B.
    EXPECT_EQ(objectives.MaximumAbsoluteDeviation({-0.1, -1.1}), mad);
}

TEST_F(TwoByTwo, TheSimplexFindsTheMaximum) {
    SimplexObjectives objectives = Objectives();
    ClassicRandom random;
    random.seed(11);
    SimplexSearch search;
    search.objective = [&objectives](const std::vector<double>& b) {
        return SimplexValue(objectives, 1, b);
    };
    int displays = 0;
    double shown = 0;
    search.display = [&](double iteration, const std::vector<double>&, double) {
        ++displays;
        shown = iteration;
    };
    std::vector<double> b = {1, 2};
    double iterations = 0;
    const double value = RunSimplexSearch(search, random, b, iterations);
    EXPECT_NEAR(b[0], 0.5, 0.01);
    EXPECT_NEAR(b[1], 1, 0.02);
    EXPECT_EQ(value, -objectives.LogLikelihood(b));
    // Shown once built, after each round and at the end, which counts one more.
    EXPECT_EQ(shown, iterations);
    EXPECT_EQ(displays, static_cast<int>(iterations));
}

TEST(DownhillSimplex, StopsOnlyWhenTheLimitIsExceeded) {
    // Every new point is worse than all before it: the simplex never closes.
    double calls = 0;
    SimplexSearch search;
    search.objective = [&calls](const std::vector<double>&) { return ++calls; };
    search.display = [](double, const std::vector<double>&, double) {};
    ClassicRandom random;
    random.seed(3);
    std::vector<double> b = {1, 1};
    double iterations = 0;
    const double value = RunSimplexSearch(search, random, b, iterations);
    // 5000 rounds: the counter, starting at 1, still runs at 5000 and stops at 5001; the end
    // adds one.
    EXPECT_EQ(iterations, 5002);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(b, (std::vector<double>{1, 1}));
}

TEST(DownhillSimplex, TheMadOptionStopsAtItsLevel) {
    const auto deviation = [](const std::vector<double>& x) {
        return std::max(std::abs(x[0] - 1), std::abs(x[1] - 2));
    };
    auto run = [&](bool madStop, double& iterations) {
        SimplexSearch search;
        search.objective = deviation;
        search.madStop = madStop;
        search.display = [](double, const std::vector<double>&, double) {};
        ClassicRandom random;
        random.seed(5);
        std::vector<double> b = {1.5, 2.5};
        return RunSimplexSearch(search, random, b, iterations);
    };
    double stoppedAfter = 0;
    double convergedAfter = 0;
    const double stopped = run(true, stoppedAfter);
    const double converged = run(false, convergedAfter);
    EXPECT_LE(stopped, SimplexSearch::MadStopLevel);
    EXPECT_LT(converged, stopped);
    EXPECT_LT(stoppedAfter, convergedAfter);
}

TEST(SimplexRecords, TheBestRecordByEitherCriterionLaterWinsTies) {
    const std::vector<SimplexRecord> records = {
        {10, 0.5, {1}}, {12, 0.2, {2}}, {12, 0.7, {3}}, {11, 0.2, {4}}, {9, 0.9, {5}}};
    EXPECT_EQ(BestByLogLikelihood(records)->b[0], 3);
    EXPECT_EQ(BestByMAD(records)->b[0], 4);
    EXPECT_EQ(BestByLogLikelihood({}), nullptr);
    EXPECT_EQ(BestByMAD({}), nullptr);
}

} // namespace
