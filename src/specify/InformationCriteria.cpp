#include "specify/InformationCriteria.h"

#include <cmath>
#include <vector>

#include "frame/Module.h"
#include "numeric/Matsubs.h"
#include "platform/EventPump.h"
#include "specify/Deterministic.h"

namespace lorvane {

bool ComputeCriteria(Module& module, int q, InformationCriteria& criteria) {
    BuildDeterministic(module, q);
    const DataStore& store = module.store();
    const int k = store.SelectedCount();
    const int m = store.DetermCount();
    const int first = module.SampleFirst + q;
    const int last = module.SampleLast;
    const int regressors = k * q + m;
    const double T = last - first + 1;

    auto regressorsAt = [&](int t, std::vector<double>& x) {
        x.clear();
        for (int lag = 1; lag <= q; ++lag) {
            for (int j = 1; j <= k; ++j) {
                x.push_back(store.SelectedValue(t - lag, j));
            }
        }
        for (int j = 1; j <= m; ++j) {
            x.push_back(store.DetermValue(t, j));
        }
    };

    // Every equation has the same regressors: one X'X serves them all.
    Matrix xx(regressors, regressors);
    Matrix xy(regressors, k);
    std::vector<double> x;
    for (int t = first; t <= last; ++t) {
        regressorsAt(t, x);
        for (int r = 1; r <= regressors; ++r) {
            const double xr = x[static_cast<std::size_t>(r - 1)];
            for (int c = 1; c <= regressors; ++c) {
                xx(r, c) += xr * x[static_cast<std::size_t>(c - 1)] / T;
            }
            for (int i = 1; i <= k; ++i) {
                xy(r, i) += xr * store.SelectedValue(t, i) / T;
            }
        }
        module.platform().events.yield();
    }
    Matrix inverse;
    double determinant = 0;
    Int16 flag;
    InvertMatrix(xx, inverse, determinant, regressors, flag);
    if (flag == 1) {
        return false;
    }
    Matrix b(regressors, k);
    for (int i = 1; i <= k; ++i) {
        for (int r = 1; r <= regressors; ++r) {
            for (int c = 1; c <= regressors; ++c) {
                b(r, i) += inverse(r, c) * xy(c, i);
            }
        }
    }

    Matrix S(k, k);
    std::vector<double> u(static_cast<std::size_t>(k));
    for (int t = first; t <= last; ++t) {
        regressorsAt(t, x);
        for (int i = 1; i <= k; ++i) {
            double residual = store.SelectedValue(t, i);
            for (int r = 1; r <= regressors; ++r) {
                residual -= x[static_cast<std::size_t>(r - 1)] * b(r, i);
            }
            u[static_cast<std::size_t>(i - 1)] = residual;
        }
        for (int i = 1; i <= k; ++i) {
            for (int j = 1; j <= k; ++j) {
                S(i, j) +=
                    u[static_cast<std::size_t>(i - 1)] * u[static_cast<std::size_t>(j - 1)] / T;
            }
        }
    }
    Matrix sInverse;
    Determinant determinantOfS;
    InvertMatrix(S, sInverse, determinantOfS, k, flag);
    if (flag == 1) {
        return false;
    }
    // The logarithm of the determinant itself, so that it does not vanish in small units.
    const double D = determinantOfS.Log();
    const double c = static_cast<double>(k) * regressors;
    criteria.Akaike = D + c * 2.0 / T;
    criteria.HannanQuinn = D + c * 2.0 * CheckedLog(CheckedLog(T)) / T;
    criteria.Schwarz = D + c * CheckedLog(T) / T;
    return true;
}

} // namespace lorvane
