#include "structural/LikelihoodRefinement.h"

#include <Eigen/Dense>
#include <cmath>
#include <limits>

#include "structural/SimplexObjectives.h"

namespace lorvane {

namespace {

constexpr int StepLimit = 100;
constexpr int HalvingLimit = 60;
constexpr int DampingLimit = 40;

using Eigen::MatrixXd;
using Eigen::VectorXd;

} // namespace

StructuralLikelihood::StructuralLikelihood(const Pattern& Apat, const Matrix& S)
    : n_(Apat.Size()), S_(static_cast<std::size_t>(n_ * n_)) {
    for (int i = 1; i <= n_; ++i) {
        for (int j = 1; j <= n_; ++j) {
            if (Apat(i, j) == 1 || Apat(i, j) == -1) {
                places_.push_back({i - 1, j - 1});
            }
            S_[static_cast<std::size_t>((i - 1) * n_ + j - 1)] = S(i, j);
        }
    }
}

namespace {

// B at b, or false where a free diagonal element is at or below 0.
bool PlaceB(int n, const auto& places, const std::vector<double>& b, MatrixXd& B) {
    B = MatrixXd::Zero(n, n);
    for (std::size_t k = 0; k < places.size(); ++k) {
        if (places[k].i == places[k].j && !(b[k] > 0)) {
            return false;
        }
        B(places[k].i, places[k].j) = b[k];
    }
    return true;
}

// ln |det B| - 0.5 tr(S B'B) = ln |det B| - 0.5 tr(B S B').
bool Evaluate(const MatrixXd& B, const Eigen::Map<const MatrixXd>& S,
              const Eigen::PartialPivLU<MatrixXd>& lu, double& value) {
    const double determinant = lu.determinant();
    if (!(std::abs(determinant) > 0) || !std::isfinite(determinant)) {
        return false;
    }
    value = std::log(std::abs(determinant)) - 0.5 * (B * S).cwiseProduct(B).sum();
    return std::isfinite(value);
}

} // namespace

bool StructuralLikelihood::Value(const std::vector<double>& b, double& value) const {
    MatrixXd B;
    if (!PlaceB(n_, places_, b, B)) {
        return false;
    }
    const Eigen::Map<const MatrixXd> S(S_.data(), n_, n_);
    return Evaluate(B, S, Eigen::PartialPivLU<MatrixXd>(B), value);
}

bool StructuralLikelihood::Derivatives(const std::vector<double>& b, double& value,
                                       std::vector<double>& gradient, Matrix& hessian) const {
    MatrixXd B;
    if (!PlaceB(n_, places_, b, B)) {
        return false;
    }
    // S is symmetric, so its storage by rows reads as itself by columns.
    const Eigen::Map<const MatrixXd> S(S_.data(), n_, n_);
    const Eigen::PartialPivLU<MatrixXd> lu(B);
    if (!Evaluate(B, S, lu, value)) {
        return false;
    }
    const MatrixXd BInv = lu.inverse();
    const MatrixXd G = BInv.transpose() - B * S;
    const int m = ParameterCount();
    gradient.assign(static_cast<std::size_t>(m), 0);
    hessian.Resize(m, m);
    for (int r = 0; r < m; ++r) {
        const Place& p = places_[static_cast<std::size_t>(r)];
        gradient[static_cast<std::size_t>(r)] = G(p.i, p.j);
        for (int c = 0; c < m; ++c) {
            const Place& q = places_[static_cast<std::size_t>(c)];
            hessian(r + 1, c + 1) =
                -BInv(p.j, q.i) * BInv(q.j, p.i) - (p.i == q.i ? S(q.j, p.j) : 0.0);
        }
    }
    return true;
}

int RefineLikelihood(const StructuralLikelihood& likelihood, std::vector<double>& b) {
    const int m = likelihood.ParameterCount();
    std::vector<double> gradient;
    Matrix hessian;
    double value = 0;
    int steps = 0;
    while (steps < StepLimit && likelihood.Derivatives(b, value, gradient, hessian)) {
        const Eigen::Map<const VectorXd> g(gradient.data(), m);
        MatrixXd negative(m, m);
        for (int r = 0; r < m; ++r) {
            for (int c = 0; c < m; ++c) {
                negative(r, c) = -hessian(r + 1, c + 1);
            }
        }
        // Away from a maximum the Hessian need not be negative definite: the step is damped
        // towards the gradient until it is an ascent direction.
        const double scale = std::max(negative.diagonal().cwiseAbs().maxCoeff(), 1.0);
        double damping = 0;
        Eigen::LLT<MatrixXd> factor(negative);
        for (int tries = 0; factor.info() != Eigen::Success && tries < DampingLimit; ++tries) {
            damping = damping == 0 ? 1e-10 * scale : 10 * damping;
            factor.compute(negative + damping * MatrixXd::Identity(m, m));
        }
        if (factor.info() != Eigen::Success) {
            break;
        }
        const VectorXd step = factor.solve(g);
        const Eigen::Map<const VectorXd> current(b.data(), m);
        const double size = current.cwiseAbs().maxCoeff();
        if (!(step.cwiseAbs().maxCoeff() > std::numeric_limits<double>::epsilon() * size)) {
            break;
        }
        std::vector<double> trial(b.size());
        double length = 1;
        bool taken = false;
        for (int halving = 0; halving < HalvingLimit && !taken; ++halving, length /= 2) {
            Eigen::Map<VectorXd>(trial.data(), m) = current + length * step;
            double next = 0;
            taken = likelihood.Value(trial, next) && next >= value;
        }
        if (!taken || trial == b) {
            break;
        }
        b = trial;
        ++steps;
    }
    return steps;
}

std::optional<double> RefineSimplexResult(SimplexObjectives& objectives, const Matrix& S,
                                          std::vector<double>& b) {
    const double found = objectives.LogLikelihood(b);
    std::vector<double> refined = b;
    RefineLikelihood(StructuralLikelihood(objectives.Apat(), S), refined);
    const double reached = objectives.LogLikelihood(refined);
    if (!(reached >= found)) {
        return std::nullopt;
    }
    b = refined;
    return reached - found;
}

} // namespace lorvane
