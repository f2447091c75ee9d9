#include "innovation/ResponseErrors.h"

#include <cmath>
#include <vector>

#include "frame/RuntimeError.h"
#include "innovation/InnovationModel.h"
#include "innovation/WorkCounter.h"
#include "numeric/DataUnits.h"

namespace lorvane {

namespace {

// Derivatives of every response with respect to a set of parameters, stored response by
// response: the derivatives of response r (in the order of Responses::Offset) at
// [r * count, (r + 1) * count).
struct Derivatives {
    int count = 0;
    std::vector<double> values;

    Derivatives(std::size_t responses, int parameters)
        : count(parameters), values(responses * static_cast<std::size_t>(parameters), 0.0) {}

    const double* Of(std::size_t response) const {
        return values.data() + response * static_cast<std::size_t>(count);
    }

    // Stores the central difference of parameter number `parameter` (1-based) over the step.
    void Store(int parameter, const Responses& plus, const Responses& minus, double step) {
        for (std::size_t r = 0; r < plus.Count(); ++r) {
            values[r * static_cast<std::size_t>(count) + static_cast<std::size_t>(parameter - 1)] =
                (Value(plus, r) - Value(minus, r)) * 0.5 / step;
        }
    }

    static double Value(const Responses& psi, std::size_t r) {
        const auto n = static_cast<std::size_t>(psi.Size());
        const std::size_t block = n * n;
        const auto h = static_cast<int>(r / block);
        const auto i = static_cast<int>((r % block) / n) + 1;
        const auto j = static_cast<int>(r % n) + 1;
        return psi(i, j, h);
    }
};

// The steps of the lag coefficients in the order of Theta (equation i, lag, variable j over
// the places of Z): A(i, j) turns variable j into variable i and has their ratio of units.
std::vector<double> LagSteps(const InnovationModel& model, const std::vector<int>& units) {
    std::vector<double> steps;
    for (int i = 1; i <= model.n; ++i) {
        for (int k = 1; k <= model.p; ++k) {
            for (int j = 1; j <= model.n; ++j) {
                if (model.Z(i, j) == 1) {
                    steps.push_back(ResponseStep *
                                    PowerOfTen(units[static_cast<std::size_t>(i - 1)] -
                                               units[static_cast<std::size_t>(j - 1)]));
                }
            }
        }
    }
    return steps;
}

} // namespace

Responses ComputeStandardErrors(InnovationModel& model, int H, WorkCounter& work) {
    const int n = model.n;
    MovingAverage recursion(model.Z, n, model.p);
    Responses plus(n, H);
    Responses minus(n, H);
    auto step = [&work] { work.Step(); };
    // The steps follow the units of the variables, taken from the rows of L.
    const std::vector<int> units = UnitPowers(model.L);

    Derivatives DA(plus.Count(), model.NA);
    const std::vector<double> lagSteps = LagSteps(model, units);
    for (int a = 1; a <= model.NA; ++a) {
        const double h = lagSteps[static_cast<std::size_t>(a - 1)];
        const double saved = model.Theta(a);
        model.Theta(a) = saved + h;
        recursion.Run(model.Theta, model.L, plus, step);
        model.Theta(a) = saved - h;
        recursion.Run(model.Theta, model.L, minus, step);
        model.Theta(a) = saved;
        DA.Store(a, plus, minus, h);
        work.RefreshOnly();
    }

    Derivatives DL(plus.Count(), model.NL);
    int l = 0;
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            if (model.LPattern(i, j) != 1) {
                continue;
            }
            ++l;
            // An element of row i has the units of variable i.
            const double h = ResponseStep * PowerOfTen(units[static_cast<std::size_t>(i - 1)]);
            const double saved = model.L(i, j);
            model.L(i, j) = saved + h;
            recursion.Run(model.Theta, model.L, plus, step);
            model.L(i, j) = saved - h;
            recursion.Run(model.Theta, model.L, minus, step);
            model.L(i, j) = saved;
            DL.Store(l, plus, minus, h);
            work.RefreshOnly();
        }
    }

    if (model.T == 0) {
        Raise(DivisionByZero);
    }
    Responses SE(n, H);
    const int NA = model.NA;
    const int NL = model.NL;
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            for (int h = 0; h <= H; ++h) {
                const std::size_t r = SE.Offset(i, j, h);
                const double* da = DA.Of(r);
                const double* dl = DL.Of(r);
                double S = 0;
                // Term by term, a outer and b inner.
                for (int a = 1; a <= NA; ++a) {
                    const double* va = &model.VA(a, 1);
                    for (int b = 1; b <= NA; ++b) {
                        S = da[a - 1] * va[b - 1] * da[b - 1] + S;
                    }
                }
                for (int a = 1; a <= NL; ++a) {
                    const double* vl = &model.VL(a, 1);
                    for (int b = 1; b <= NL; ++b) {
                        S = vl[b - 1] * dl[a - 1] * dl[b - 1] + S;
                    }
                }
                SE(i, j, h) = S <= 0 ? 0.0 : std::sqrt(CheckedFinite(S / model.T));
                work.Step();
            }
        }
    }
    return SE;
}

} // namespace lorvane
