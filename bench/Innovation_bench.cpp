#include <benchmark/benchmark.h>

#include <cstdint>

#include "innovation/InnovationModel.h"
#include "innovation/MovingAverage.h"
#include "innovation/ResponseErrors.h"
#include "innovation/WorkCounter.h"

namespace {

using lorvane::InnovationModel;
using lorvane::Matrix;

// A stable VAR(p) of n variables without zero restrictions, with dense variance matrices, from
// a fixed linear congruential sequence.
InnovationModel SyntheticModel(int n, int p, int T) {
    std::uint64_t state = 20261122;
    const auto next = [&state] {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<double>(state >> 11) / 9007199254740992.0; // [0, 1)
    };
    InnovationModel model;
    model.n = n;
    model.p = p;
    model.T = T;
    model.Z = lorvane::Pattern(n);
    model.LPattern = lorvane::Pattern(n);
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            model.Z(i, j) = 1;
            model.LPattern(i, j) = j <= i ? 1 : 0;
        }
    }
    model.NA = p * n * n;
    model.NL = n * (n + 1) / 2;
    // Row sums of |A(1)| + .. + |A(p)| stay below 0.9, which keeps the VAR stable.
    model.Theta.Resize(model.NA);
    for (int a = 1; a <= model.NA; ++a) {
        model.Theta(a) = (next() - 0.5) * 1.8 / (n * p);
    }
    model.L.Resize(n, n);
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= i; ++j) {
            model.L(i, j) = i == j ? 0.5 + next() : next() - 0.5;
        }
    }
    // Symmetric and diagonally dominant, so positive definite.
    const auto variance = [&next](int size) {
        Matrix v(size, size);
        for (int r = 1; r <= size; ++r) {
            for (int c = 1; c < r; ++c) {
                v(r, c) = v(c, r) = (next() - 0.5) * 0.01;
            }
            v(r, r) = 0.01 * size + next();
        }
        return v;
    };
    model.VA = variance(model.NA);
    model.VL = variance(model.NL);
    return model;
}

// The computation of the Start button: the largest responses, the responses, and their
// standard errors from 2 (NA + NL) further runs of the recursion.
void BM_InnovationStart(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    const int p = static_cast<int>(state.range(1));
    const int T = static_cast<int>(state.range(2));
    const int H = static_cast<int>(state.range(3));
    const InnovationModel original = SyntheticModel(n, p, T);
    for (auto _ : state) {
        InnovationModel model = original;
        lorvane::WorkCounter work{0, lorvane::TotalWork(n, H, model.NA, model.NL), {}};
        const lorvane::Vector largest = lorvane::ComputeMaxResponses(model, H);
        const lorvane::Responses psi =
            lorvane::ComputeResponses(model, H, [&work] { work.Step(); });
        const lorvane::Responses se = lorvane::ComputeStandardErrors(model, H, work);
        benchmark::DoNotOptimize(largest);
        benchmark::DoNotOptimize(psi);
        benchmark::DoNotOptimize(se);
    }
}
// The three sizes of the estimation benchmarks at horizon 11, the largest that the 16-bit work
// counter allows for the large model (k = 10, p = 12: NA = 1200, NL = 55), and the medium
// model at horizon 40.
BENCHMARK(BM_InnovationStart)
    ->ArgNames({"k", "p", "T", "H"})
    ->Args({3, 2, 73, 11})
    ->Args({6, 8, 1000, 11})
    ->Args({10, 12, 2000, 11})
    ->Args({6, 8, 1000, 40})
    ->Unit(benchmark::kMillisecond);

} // namespace
