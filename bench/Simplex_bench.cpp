// One run of the simplex search of the structural model by maximum likelihood, for the
// recursive model (B lower triangular, all (k^2 + k) / 2 elements free) from its moment
// solution B = L^-1, with the iteration line made after every round as the screen makes it:
//   k = 3: 6 parameters,  k = 6: 21 parameters.
// A start at half the moment solution shows a longer run (more rounds before the simplex
// closes). The refinement of a run's result by Newton's method is measured for k = 6 as well.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

#include "frame/Int16.h"
#include "numeric/Matsubs.h"
#include "platform/Headless.h"
#include "structural/DownhillSimplex.h"
#include "structural/LikelihoodRefinement.h"
#include "structural/MLReport.h"
#include "structural/SimplexObjectives.h"

namespace {

using namespace lorvane;

// The search's problem for k variables: S = LL' for a lower triangular L of the size of the
// example data's (diagonal near 0.01, small elements below it), the recursive pattern and the
// lower triangle of L^-1.
struct Problem {
    Pattern Apat;
    Matrix S;
    Matrix SInv;
    std::vector<double> start;
};

Problem RecursiveProblem(int k) {
    std::uint64_t state = 2024;
    auto next = [&state] {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<double>(state >> 11) / 9007199254740992.0; // [0, 1)
    };
    Matrix L(k, k);
    Problem problem{Pattern(k), Matrix(k, k), Matrix(k, k), {}};
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j < i; ++j) {
            L(i, j) = 0.004 * (next() - 0.5);
            problem.Apat(i, j) = -1;
        }
        L(i, i) = 0.005 + 0.01 * next();
        problem.Apat(i, i) = 1;
    }
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= k; ++j) {
            for (int m = 1; m <= k; ++m) {
                problem.S(i, j) += L(i, m) * L(j, m);
            }
        }
    }
    double determinant = 0;
    Int16 flag;
    InvertMatrix(problem.S, problem.SInv, determinant, k, flag);
    Matrix B(k, k);
    InvertMatrix(L, B, determinant, k, flag);
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= i; ++j) {
            problem.start.push_back(B(i, j));
        }
    }
    return problem;
}

// range(0): k; range(1): the start in percent of the moment solution.
void BM_SimplexRun(benchmark::State& state) {
    const int k = static_cast<int>(state.range(0));
    Problem problem = RecursiveProblem(k);
    for (double& value : problem.start) {
        value *= static_cast<double>(state.range(1)) / 100;
    }
    double iterations = 0;
    for (auto _ : state) {
        double c0 = 0;
        SimplexObjectives objectives(problem.Apat, problem.S, problem.SInv, 73, c0);
        SimplexSearch search;
        search.objective = [&objectives](const std::vector<double>& b) {
            return SimplexValue(objectives, 1, b);
        };
        std::string shown;
        search.display = [&shown](double iteration, const std::vector<double>& vertex,
                                  double value) {
            shown = IterationLine(1, iteration, vertex, value);
        };
        ClassicRandom random;
        random.seed(1);
        std::vector<double> b = problem.start;
        benchmark::DoNotOptimize(RunSimplexSearch(search, random, b, iterations));
        benchmark::DoNotOptimize(shown);
    }
    state.counters["iterations"] = iterations;
}

BENCHMARK(BM_SimplexRun)
    ->ArgNames({"k", "start"})
    ->Args({3, 100})
    ->Args({6, 100})
    ->Args({6, 50})
    ->Unit(benchmark::kMillisecond);

// The refinement that follows a run of option 1: Newton's method from the start (range(1) in
// percent of the moment solution, where the simplex would have left off far from the maximum)
// to the maximum, with the log likelihood of the search before and after.
void BM_Refinement(benchmark::State& state) {
    const int k = static_cast<int>(state.range(0));
    Problem problem = RecursiveProblem(k);
    for (double& value : problem.start) {
        value *= static_cast<double>(state.range(1)) / 100;
    }
    std::vector<double> b;
    for (auto _ : state) {
        double c0 = 0;
        SimplexObjectives objectives(problem.Apat, problem.S, problem.SInv, 73, c0);
        b = problem.start;
        benchmark::DoNotOptimize(RefineSimplexResult(objectives, problem.S, b));
    }
    state.counters["parameters"] = static_cast<double>(b.size());
}

BENCHMARK(BM_Refinement)
    ->ArgNames({"k", "start"})
    ->Args({6, 99})
    ->Args({6, 50})
    ->Unit(benchmark::kMillisecond);

} // namespace
