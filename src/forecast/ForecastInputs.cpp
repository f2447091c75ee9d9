#include "forecast/ForecastInputs.h"

#include <algorithm>

#include "estimate/FimlVariance.h"
#include "estimate/WaldFileWriter.h"
#include "frame/Module.h"
#include "frame/WorkFileModel.h"
#include "innovation/InnovationModel.h"
#include "numeric/Pattern.h"
#include "specify/Deterministic.h"

namespace lorvane {

namespace {

int DeterministicColumns(const Module& module) {
    const DataStore& store = module.store();
    return DeterministicTermCount({module.Intercept, module.Trend, module.Seasonal,
                                   store.PeriodsPerYear, ChebishevCount(module)});
}

} // namespace

ForecastModel ReadForecastModel(const Module& module) {
    const int n = module.store().SelectedCount();
    const int d = DeterministicColumns(module);
    ForecastModel model;
    model.p = module.p;
    model.T = EstimationObservations(module);
    const Pattern Z = ReadZeroOnePattern(module.DataFile("VARZERO.TMP"), n);
    model.Z.resize(n, n);
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            model.Z(i - 1, j - 1) = Z(i, j);
        }
    }

    double fileT = 0;
    const ParameterSet parameters = ReadParameterSet(module, fileT);
    const int K = model.p * model.Z.sum() + n * d;
    if (static_cast<int>(parameters.values.size()) < K) {
        Raise(InputPastEndOfFile);
    }
    model.A = Eigen::MatrixXd::Zero(n, n * model.p);
    model.C = Eigen::MatrixXd::Zero(n, d);
    int c = 0;
    for (int i = 0; i < n; ++i) {
        for (int k = 1; k <= model.p; ++k) {
            for (int j = 0; j < n; ++j) {
                if (model.Z(i, j) == 1) {
                    model.A(i, (k - 1) * n + j) = parameters.values[c++];
                }
            }
        }
        for (int l = 0; l < d; ++l) {
            model.C(i, l) = parameters.values[c++];
        }
    }
    model.V.resize(K, K);
    for (int r = 0; r < K; ++r) {
        for (int s = 0; s < K; ++s) {
            model.V(r, s) = parameters.variance(r + 1, s + 1);
        }
    }

    const Matrix u = ReadResiduals(module, static_cast<int>(model.T), n);
    model.Sigma.resize(n, n);
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            double sum = 0;
            for (int t = 1; t <= u.Rows(); ++t) {
                sum += u(t, i) * u(t, j);
            }
            model.Sigma(i - 1, j - 1) = sum / model.T;
        }
    }
    return model;
}

ForecastData ReadForecastData(const Module& module, int H) {
    const DataStore& store = module.store();
    const int n = store.SelectedCount();
    const int d = DeterministicColumns(module);
    const int observations = store.SelectedRows();
    ForecastData data;
    data.Y.resize(observations, n);
    for (int t = 1; t <= observations; ++t) {
        for (int i = 1; i <= n; ++i) {
            data.Y(t - 1, i - 1) = store.SelectedValue(t, i);
        }
    }
    const int rows = std::max<int>(observations, module.SampleLast + H);
    const int s = module.Seasonal == 1 ? static_cast<int>(store.PeriodsPerYear) : 1;
    data.D.resize(rows, d);
    for (int t = 1; t <= rows; ++t) {
        for (int l = 1; l <= d; ++l) {
            data.D(t - 1, l - 1) =
                t <= observations ? store.DetermValue(t, l)
                                  : 2 * data.D(t - 1 - s, l - 1) - data.D(t - 1 - 2 * s, l - 1);
        }
    }
    return data;
}

} // namespace lorvane
