#include "forecast/Forecast.h"

namespace lorvane {

namespace {

// The observations origin - p + 1..origin in the first p rows, room for H forecasts below.
Eigen::MatrixXd StartPath(const ForecastModel& model, const ForecastData& data, int origin, int H) {
    Eigen::MatrixXd path = Eigen::MatrixXd::Zero(model.p + H, model.n());
    path.topRows(model.p) = data.Y.middleRows(origin - model.p + 1, model.p);
    return path;
}

// The regressors of every equation for the path's row, each in its equation's columns of the
// parameter vector (n by the number of coefficients).
Eigen::MatrixXd Regressors(const ForecastModel& model, const Eigen::MatrixXd& path, int row,
                           const Eigen::RowVectorXd& dt) {
    const int n = model.n();
    Eigen::MatrixXd X = Eigen::MatrixXd::Zero(n, model.Coefficients());
    int c = 0;
    for (int i = 0; i < n; ++i) {
        for (int k = 1; k <= model.p; ++k) {
            for (int j = 0; j < n; ++j) {
                if (model.Z(i, j) == 1) {
                    X(i, c++) = path(row - k, j);
                }
            }
        }
        for (int l = 0; l < model.d(); ++l) {
            X(i, c++) = dt(l);
        }
    }
    return X;
}

// Fills the path's row from the rows above it and d(t).
void StepPath(const ForecastModel& model, Eigen::MatrixXd& path, int row,
              const Eigen::RowVectorXd& dt) {
    Eigen::VectorXd y = model.C * dt.transpose();
    for (int k = 1; k <= model.p; ++k) {
        y += model.Lag(k) * path.row(row - k).transpose();
    }
    path.row(row) = y.transpose();
}

} // namespace

Eigen::MatrixXd PointForecasts(const ForecastModel& model, const ForecastData& data, int origin,
                               int H) {
    Eigen::MatrixXd path = StartPath(model, data, origin, H);
    for (int h = 1; h <= H; ++h) {
        StepPath(model, path, model.p - 1 + h, data.D.row(origin + h));
    }
    return path.bottomRows(H);
}

std::vector<Eigen::MatrixXd> MovingAverageMatrices(const ForecastModel& model, int H) {
    const int n = model.n();
    std::vector<Eigen::MatrixXd> phi{Eigen::MatrixXd::Identity(n, n)};
    for (int i = 1; i < H; ++i) {
        Eigen::MatrixXd next = Eigen::MatrixXd::Zero(n, n);
        for (int k = 1; k <= std::min(i, model.p); ++k) {
            next += phi[i - k] * model.Lag(k);
        }
        phi.push_back(next);
    }
    return phi;
}

std::vector<Eigen::MatrixXd> ForecastMse(const ForecastModel& model, int H) {
    const std::vector<Eigen::MatrixXd> phi = MovingAverageMatrices(model, H);
    std::vector<Eigen::MatrixXd> mse;
    Eigen::MatrixXd sum = Eigen::MatrixXd::Zero(model.n(), model.n());
    for (int h = 1; h <= H; ++h) {
        sum += phi[h - 1] * model.Sigma * phi[h - 1].transpose();
        mse.push_back(sum);
    }
    return mse;
}

std::vector<Eigen::MatrixXd> EstimationMse(const ForecastModel& model, const ForecastData& data,
                                           int first, int last, int H) {
    const int n = model.n();
    std::vector<Eigen::MatrixXd> omega(H, Eigen::MatrixXd::Zero(n, n));
    for (int s = first; s <= last; ++s) {
        const int origin = s - 1;
        Eigen::MatrixXd path = StartPath(model, data, origin, H);
        // G(h) = X(h) + sum over k < h of A(k) G(h - k): the forecast's own derivative and
        // the one it inherits through the forecasts it rests on.
        std::vector<Eigen::MatrixXd> G;
        for (int h = 1; h <= H; ++h) {
            const int row = model.p - 1 + h;
            const Eigen::RowVectorXd dt = data.D.row(origin + h);
            Eigen::MatrixXd g = Regressors(model, path, row, dt);
            for (int k = 1; k <= std::min(model.p, h - 1); ++k) {
                g += model.Lag(k) * G[h - 1 - k];
            }
            omega[h - 1] += g * model.V * g.transpose();
            G.push_back(std::move(g));
            StepPath(model, path, row, dt);
        }
    }
    const double origins = last - first + 1;
    for (Eigen::MatrixXd& o : omega) {
        o /= origins * model.T;
    }
    return omega;
}

Forecast ComputeForecast(const ForecastModel& model, const ForecastData& data, int first, int last,
                         int H, bool estimationUncertainty) {
    Forecast forecast;
    forecast.Points = PointForecasts(model, data, last, H);
    // Decision: Sigma keeps the divisor T of every other figure of the module; the estimation's
    // share averages over the sample's own forecast origins, so restricted, SUR and FIML
    // estimates are covered by the same rule.
    std::vector<Eigen::MatrixXd> mse = ForecastMse(model, H);
    if (estimationUncertainty) {
        const std::vector<Eigen::MatrixXd> omega = EstimationMse(model, data, first, last, H);
        for (int h = 0; h < H; ++h) {
            mse[h] += omega[h];
        }
    }
    forecast.StandardErrors.resize(H, model.n());
    for (int h = 0; h < H; ++h) {
        forecast.StandardErrors.row(h) = mse[h].diagonal().cwiseSqrt().transpose();
    }
    return forecast;
}

} // namespace lorvane
