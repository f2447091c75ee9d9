// The variance of the structural coefficients by 2M silent re-solves of the moment system at
// perturbed L: k = 3 and k = 6 recursive (each variable on the ones before it), and k = 6
// over-identified (the recursive model less the coefficients two or more places below the
// diagonal). L is lower triangular with a unit diagonal and 0.3 below it; W is the identity.

#include <benchmark/benchmark.h>

#include "structural/StructuralVariance.h"

namespace {

using namespace lorvane;

Pattern ModelPattern(int k, int reach) {
    Pattern Apat(k);
    for (int i = 1; i <= k; ++i) {
        Apat(i, i) = 1;
        for (int j = 1; j < i; ++j) {
            Apat(i, j) = i - j <= reach ? -1 : 0;
        }
    }
    return Apat;
}

void BM_StructuralVariance(benchmark::State& state) {
    const int k = static_cast<int>(state.range(0));
    const Pattern Apat = ModelPattern(k, static_cast<int>(state.range(1)));
    const StructuralSystem system(Apat);
    Matrix L(k, k);
    for (int i = 1; i <= k; ++i) {
        L(i, i) = 1;
        for (int j = 1; j < i; ++j) {
            L(i, j) = 0.3;
        }
    }
    const int M = k * (k + 1) / 2;
    Matrix W(M, M);
    for (int c = 1; c <= M; ++c) {
        W(c, c) = 1;
    }
    const SolveAt solve = [&system](const Matrix& at, Vector& CoefA, Vector& CoefC, Int16& ok,
                                    bool* singular) {
        system.SolveAtL(at, CoefA, CoefC, ok, nullptr, singular);
    };
    for (auto _ : state) {
        StructuralVariance result;
        benchmark::DoNotOptimize(ComputeStructuralVariance(solve, L, W, 100, result, {}));
    }
}
BENCHMARK(BM_StructuralVariance)
    ->Args({3, 2})
    ->Args({6, 5})
    ->Args({6, 1})
    ->Unit(benchmark::kMillisecond);

} // namespace
