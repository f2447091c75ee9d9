#include <benchmark/benchmark.h>

#include <cstdint>

#include "frame/Int16.h"
#include "numeric/Matsubs.h"

namespace {

using lorvane::Int16;
using lorvane::Matrix;

// A well conditioned n by n matrix of 15-digit values, like a cross-product matrix of data:
// symmetric, diagonally dominant, from a fixed linear congruential sequence.
Matrix TestMatrix(int n) {
    std::uint64_t state = 12345;
    const auto next = [&state] {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<double>(state >> 11) / 9007199254740992.0; // [0, 1)
    };
    Matrix matrix(n, n);
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j < i; ++j) {
            matrix(i, j) = matrix(j, i) = next() - 0.5;
        }
        matrix(i, i) = n * (1.0 + next());
    }
    return matrix;
}

// Decimal operations of one inversion of a dense matrix: the elimination and the back
// substitution perform about n^3 multiply-subtract pairs (multiples of zero are skipped); a
// pair counts as two operations.
double DecimalOperations(int n) {
    const double cube = static_cast<double>(n) * n * n;
    return 2.0 * cube;
}

void BM_InvertMatrix(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    const Matrix matrix = TestMatrix(n);
    Matrix inverse(n, n);
    double determinant = 0.0;
    Int16 flag;
    for (auto _ : state) {
        lorvane::InvertMatrix(matrix, inverse, determinant, n, flag);
        benchmark::DoNotOptimize(inverse);
        benchmark::DoNotOptimize(determinant);
    }
    if (flag != 0) {
        state.SkipWithError("the test matrix did not invert");
    }
    state.counters["decimal_ops_per_s"] =
        benchmark::Counter(DecimalOperations(n), benchmark::Counter::kIsIterationInvariantRate);
}

// 19, 214 and 778 are the sizes of the SUR round's system at the three sizes of the estimation
// benchmarks; 10 is the Sigma of the large model; 300 is the size of our goal of one second.
BENCHMARK(BM_InvertMatrix)
    ->ArgName("n")
    ->Arg(10)
    ->Arg(19)
    ->Arg(214)
    ->Arg(300)
    ->Arg(778)
    ->Unit(benchmark::kMillisecond);

} // namespace
