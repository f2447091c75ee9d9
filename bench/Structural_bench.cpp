#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "frame/Int16.h"
#include "frame/NumberText.h"
#include "numeric/Matrix.h"
#include "numeric/MatrixProducts.h"
#include "numeric/Pattern.h"
#include "structural/StructuralVariance.h"
#include "structural/SymbolicSolver.h"

namespace {

using lorvane::CompiledSystem;
using lorvane::Int16;
using lorvane::Matrix;
using lorvane::NumberToText;
using lorvane::Pattern;
using lorvane::SolverDisplay;
using lorvane::SolveSystem;
using lorvane::ToSingle;
using lorvane::Trim;

// The just identified recursive model with six variables: B lower triangular with all 21 places
// free, and its moment system B'B = c with the right-hand sides in single precision, as the
// variance of the structural parameters re-solves it.
struct RecursiveSystem {
    Int16 parameters;
    std::vector<std::string> lhs;
    std::vector<double> rhs;
    std::vector<std::string> rhsTexts;
};

RecursiveSystem MakeRecursiveSystem() {
    constexpr int k = 6;
    Pattern pattern(k);
    Matrix B(k, k);
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= i; ++j) {
            pattern(i, j) = i == j ? 1 : -1;
            B(i, j) = i == j ? 10.0 + i : 0.37 * (i - 2 * j) + 0.11 * i * j;
        }
    }
    const lorvane::StructuralSystem structure(pattern);
    RecursiveSystem system{structure.ParameterCount(), structure.Equations(), {}, {}};
    const Matrix moments = lorvane::CrossProduct(B);
    for (const auto& [i, j] : structure.EquationPlaces()) {
        system.rhs.push_back(ToSingle(moments(i, j)));
        system.rhsTexts.push_back(Trim(NumberToText(system.rhs.back())));
    }
    return system;
}

void BM_CompiledSystemSolve(benchmark::State& state) {
    const RecursiveSystem system = MakeRecursiveSystem();
    const CompiledSystem compiled(system.parameters, system.lhs);
    std::vector<double> solution;
    bool ok = true;
    for (auto _ : state) {
        ok = compiled.Solve(system.rhs, solution) && ok;
        benchmark::DoNotOptimize(solution);
    }
    if (!ok || solution.size() != 21) {
        state.SkipWithError("the recursive system did not solve");
    }
}

// The list form: the lists are the solver's input and output, so each solve starts from a copy.
void BM_SolveSystemSilent(benchmark::State& state) {
    const RecursiveSystem system = MakeRecursiveSystem();
    bool ok = true;
    for (auto _ : state) {
        std::vector<std::string> lhs = system.lhs;
        std::vector<std::string> rhs = system.rhsTexts;
        ok = SolveSystem(SolverDisplay::Silent, system.parameters, lhs, rhs) == 1 && ok;
        benchmark::DoNotOptimize(rhs);
    }
    if (!ok) {
        state.SkipWithError("the recursive system did not solve");
    }
}

BENCHMARK(BM_CompiledSystemSolve)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_SolveSystemSilent)->Unit(benchmark::kMicrosecond);

} // namespace
