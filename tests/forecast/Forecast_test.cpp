// Forecasts of the example VAR against the peers' figures, and of a restricted model with trend
// and seasonal dummies against a companion-form computation and numerical derivatives.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "forecast/Forecast.h"
#include "support/Reference.h"

namespace lorvane {
namespace {

// dlinvest, dlincome, dlcons of the example data: row t - 1 for observation t (the first row,
// without differences, holds zeros).
Eigen::MatrixXd E1Differences() {
    std::ifstream in(std::filesystem::path(LORVANE_SOURCE_DIR) / "examples" / "e1.csv");
    std::string line;
    std::getline(in, line);
    std::vector<std::vector<double>> rows;
    while (std::getline(in, line)) {
        std::stringstream fields(line);
        std::string field;
        std::vector<double> row;
        for (int c = 0; std::getline(fields, field, ','); ++c) {
            if (c >= 4) {
                row.push_back(field.empty() ? 0.0 : std::stod(field));
            }
        }
        // A line that ends in empty cells gives no field after its last comma.
        row.resize(3, 0.0);
        rows.push_back(row);
    }
    Eigen::MatrixXd Y(rows.size(), 3);
    for (std::size_t t = 0; t < rows.size(); ++t) {
        for (int j = 0; j < 3; ++j) {
            Y(t, j) = rows[t][j];
        }
    }
    return Y;
}

Eigen::MatrixXd FromJson(const nlohmann::json& rows) {
    Eigen::MatrixXd m(rows.size(), rows[0].size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        for (std::size_t j = 0; j < rows[0].size(); ++j) {
            m(i, j) = rows[i][j].get<double>();
        }
    }
    return m;
}

// The example VAR(2) with an intercept, estimated on rows 3..75 (observations 4..76).
struct E1Var {
    ForecastModel model;
    ForecastData data;
    int first = 3;
    int last = 75;
    Eigen::MatrixXd Gamma; // X'X / T of the regressors

    // Sigma and the variance of the OLS coefficients with the given divisor of the residuals'
    // sum of squares.
    void UseDivisor(double divisor) {
        const nlohmann::json& reference = test::E1Reference()["var2_intercept"];
        model.Sigma = FromJson(reference["Sigma"]) * model.T / divisor;
        const Eigen::MatrixXd inverse = Gamma.inverse();
        const int m = static_cast<int>(inverse.rows());
        model.V.resize(3 * m, 3 * m);
        for (int i = 0; i < 3; ++i) {
            for (int j = 0; j < 3; ++j) {
                model.V.block(i * m, j * m, m, m) = model.Sigma(i, j) * inverse;
            }
        }
    }
};

E1Var MakeE1Var() {
    E1Var e1;
    const nlohmann::json& reference = test::E1Reference()["var2_intercept"];
    const Eigen::MatrixXd B = FromJson(reference["coefficients"]);
    e1.model.p = 2;
    e1.model.Z = Eigen::MatrixXi::Ones(3, 3);
    e1.model.A = B.leftCols(6);
    e1.model.C = B.rightCols(1);
    e1.model.T = reference["T"].get<double>();
    e1.data.Y = E1Differences();
    e1.data.D = Eigen::MatrixXd::Ones(e1.data.Y.rows() + 8, 1);
    const int T = e1.last - e1.first + 1;
    Eigen::MatrixXd X(T, 7);
    for (int s = e1.first; s <= e1.last; ++s) {
        X.row(s - e1.first) << e1.data.Y.row(s - 1), e1.data.Y.row(s - 2), 1.0;
    }
    e1.Gamma = X.transpose() * X / T;
    e1.UseDivisor(e1.model.T);
    return e1;
}

void ExpectNear(const Eigen::MatrixXd& actual, const Eigen::MatrixXd& expected, double relative) {
    ASSERT_EQ(actual.rows(), expected.rows());
    ASSERT_EQ(actual.cols(), expected.cols());
    for (int i = 0; i < actual.rows(); ++i) {
        for (int j = 0; j < actual.cols(); ++j) {
            EXPECT_NEAR(actual(i, j), expected(i, j), relative * std::abs(expected(i, j)))
                << "at (" << i << ", " << j << ")";
        }
    }
}

TEST(E1Forecast, PointsAndStandardErrorsAgreeWithThePeers) {
    E1Var e1 = MakeE1Var();
    const nlohmann::json& reference = test::E1Reference()["var2_intercept_checks_and_forecasts"];
    ASSERT_EQ(reference["forecast_origin_t"].get<int>(), e1.last + 1);

    Forecast forecast = ComputeForecast(e1.model, e1.data, e1.first, e1.last, 8, false);
    ExpectNear(forecast.Points, FromJson(reference["forecast"]), 1e-9);
    ExpectNear(forecast.StandardErrors, FromJson(reference["forecast_se_sigma_over_T"]), 1e-9);
    ExpectNear(e1.data.Y.middleRows(e1.last + 1, 8), FromJson(reference["actual_after_origin"]),
               1e-12);

    // The peers divide the residuals' sum of squares by T - kp - 1, for the forecasts' own
    // error and for the coefficients' variance alike.
    e1.UseDivisor(e1.model.T - 7);
    forecast = ComputeForecast(e1.model, e1.data, e1.first, e1.last, 8, false);
    ExpectNear(forecast.StandardErrors, FromJson(reference["forecast_se_peers"]), 1e-9);
    forecast = ComputeForecast(e1.model, e1.data, e1.first, e1.last, 8, true);
    ExpectNear(forecast.StandardErrors,
               FromJson(reference["forecast_se_with_estimation_uncertainty_peers"]), 1e-8);
}

// A VAR(3) in two variables with zeros, an intercept, a trend and two seasonal dummies of a
// period of three.
struct SeasonalVar {
    ForecastModel model;
    ForecastData data;
    int first = 3;
    int last = 29;

    SeasonalVar() {
        model.p = 3;
        model.Z.resize(2, 2);
        model.Z << 1, 0, 1, 1;
        model.A.resize(2, 6);
        model.A << 0.5, 0, -0.2, 0, 0.1, 0, //
            0.3, 0.4, 0.1, -0.3, -0.05, 0.2;
        model.C.resize(2, 4);
        model.C << 1.0, 0.02, 0.5, -0.4, //
            -0.5, 0.01, 0.2, 0.3;
        model.Sigma.resize(2, 2);
        model.Sigma << 0.4, 0.1, 0.1, 0.25;
        model.T = last - first + 1;
        const int rows = 40;
        data.D.resize(rows, 4);
        data.Y.resize(rows, 2);
        for (int t = 0; t < rows; ++t) {
            data.D.row(t) << 1.0, t + 1.0, t % 3 == 0 ? 1.0 : 0.0, t % 3 == 1 ? 1.0 : 0.0;
            data.Y.row(t) << std::sin(0.7 * t), std::cos(1.3 * t) + 0.1 * t;
        }
    }
};

TEST(RestrictedSeasonalForecast, PointsAndMseFollowTheCompanionForm) {
    const SeasonalVar var;
    const ForecastModel& m = var.model;
    const int H = 6;
    const int origin = var.last;

    // The state (y(t), y(t-1), y(t-2)) moves by the companion matrix plus the deterministic
    // part in its first block.
    Eigen::MatrixXd companion = Eigen::MatrixXd::Zero(6, 6);
    companion.topRows(2) = m.A;
    companion.bottomLeftCorner(4, 4) = Eigen::MatrixXd::Identity(4, 4);
    Eigen::VectorXd state(6);
    state << var.data.Y.row(origin).transpose(), var.data.Y.row(origin - 1).transpose(),
        var.data.Y.row(origin - 2).transpose();
    const Eigen::MatrixXd points = PointForecasts(m, var.data, origin, H);
    const std::vector<Eigen::MatrixXd> mse = ForecastMse(m, H);
    Eigen::MatrixXd J = Eigen::MatrixXd::Zero(2, 6);
    J.leftCols(2) = Eigen::MatrixXd::Identity(2, 2);
    Eigen::MatrixXd power = Eigen::MatrixXd::Identity(6, 6);
    Eigen::MatrixXd sum = Eigen::MatrixXd::Zero(2, 2);
    for (int h = 1; h <= H; ++h) {
        state = companion * state;
        state.head(2) += m.C * var.data.D.row(origin + h).transpose();
        const Eigen::MatrixXd phi = J * power * J.transpose();
        sum += phi * m.Sigma * phi.transpose();
        power = companion * power;
        for (int j = 0; j < 2; ++j) {
            EXPECT_NEAR(points(h - 1, j), state(j), 1e-12) << "step " << h;
        }
        EXPECT_LT((mse[h - 1] - sum).norm(), 1e-12) << "step " << h;
    }
}

TEST(RestrictedSeasonalForecast, EstimationShareUsesTheForecastsDerivatives) {
    SeasonalVar var;
    ForecastModel& m = var.model;
    const int H = 4;
    const int K = m.Coefficients();
    ASSERT_EQ(K, 3 * 3 + 4 * 2);

    // With V a single 1 on the diagonal, Omega(h) T is the mean over the origins of the square
    // of that coefficient's derivative, found here by moving the coefficient itself.
    const double step = 1e-6;
    for (int a = 0; a < K; ++a) {
        m.V = Eigen::MatrixXd::Zero(K, K);
        m.V(a, a) = 1.0;
        const std::vector<Eigen::MatrixXd> omega =
            EstimationMse(m, var.data, var.first, var.last, H);

        ForecastModel moved = m;
        int c = 0;
        for (int i = 0; i < 2; ++i) {
            for (int k = 1; k <= m.p; ++k) {
                for (int j = 0; j < 2; ++j) {
                    if (m.Z(i, j) == 1 && c++ == a) {
                        moved.A(i, (k - 1) * 2 + j) += step;
                    }
                }
            }
            for (int l = 0; l < m.d(); ++l) {
                if (c++ == a) {
                    moved.C(i, l) += step;
                }
            }
        }
        std::vector<Eigen::MatrixXd> expected(H, Eigen::MatrixXd::Zero(2, 2));
        for (int s = var.first; s <= var.last; ++s) {
            const Eigen::MatrixXd g = (PointForecasts(moved, var.data, s - 1, H) -
                                       PointForecasts(m, var.data, s - 1, H)) /
                                      step;
            for (int h = 0; h < H; ++h) {
                expected[h] += g.row(h).transpose() * g.row(h) / (m.T * m.T);
            }
        }
        for (int h = 0; h < H; ++h) {
            EXPECT_LT((omega[h] - expected[h]).norm(), 1e-5 * (1 + expected[h].norm()))
                << "coefficient " << a << ", step " << h + 1;
        }
    }
}

} // namespace
} // namespace lorvane
