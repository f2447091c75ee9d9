#include "innovation/MovingAverage.h"

#include <algorithm>
#include <cmath>

#include "frame/RuntimeError.h"
#include "innovation/InnovationModel.h"

namespace lorvane {

void Responses::Resize(int n, int H) {
    if (n < 0 || H < 0) {
        Raise(SubscriptOutOfRange);
    }
    n_ = n;
    H_ = H;
    data_.assign(static_cast<std::size_t>(n) * static_cast<std::size_t>(n) *
                     static_cast<std::size_t>(H + 1),
                 0.0);
}

std::size_t Responses::Offset(int i, int j, int h) const {
    if (i < 1 || i > n_ || j < 1 || j > n_ || h < 0 || h > H_) {
        Raise(SubscriptOutOfRange);
    }
    const auto n = static_cast<std::size_t>(n_);
    return (static_cast<std::size_t>(h) * n + static_cast<std::size_t>(i - 1)) * n +
           static_cast<std::size_t>(j - 1);
}

MovingAverage::MovingAverage(const Pattern& Z, int n, int p)
    : Z_(Z), n_(n), p_(p), lags_(static_cast<std::size_t>(p + 1) * static_cast<std::size_t>(n) *
                                     static_cast<std::size_t>(n),
                                 0.0),
      state_(lags_.size(), 0.0) {}

void MovingAverage::RebuildLags(const Vector& Theta) {
    int a = 0;
    for (int i = 1; i <= n_; ++i) {
        for (int k = 1; k <= p_; ++k) {
            for (int j = 1; j <= n_; ++j) {
                lags_[Index(k, i, j)] = Z_(i, j) == 1 ? Theta(++a) : 0.0;
            }
        }
    }
}

void MovingAverage::Run(const Vector& Theta, const Matrix& L, Responses& psi,
                        const std::function<void()>& step) {
    auto stepDone = [&step] {
        if (step) {
            step();
        }
    };
    RebuildLags(Theta);
    const int n = n_;
    const int H = psi.Horizon();
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            state_[Index(0, i, j)] = L(i, j);
            psi(i, j, 0) = L(i, j);
            for (int k = 1; k <= p_; ++k) {
                state_[Index(k, i, j)] = 0.0;
            }
        }
    }
    stepDone();
    const std::size_t block = static_cast<std::size_t>(n) * static_cast<std::size_t>(n);
    for (int h = 1; h <= H; ++h) {
        // The matrix of k horizons back moves one place further back; the newest is rebuilt.
        std::copy_backward(state_.begin(), state_.end() - static_cast<std::ptrdiff_t>(block),
                           state_.end());
        std::fill(state_.begin(), state_.begin() + static_cast<std::ptrdiff_t>(block), 0.0);
        for (int k = 1; k <= p_; ++k) {
            for (int a = 1; a <= n; ++a) {
                const double* lag = &lags_[Index(k, a, 1)];
                double* row = &state_[Index(0, a, 1)];
                for (int b = 1; b <= n; ++b) {
                    double sum = row[b - 1];
                    for (int c = 1; c <= n; ++c) {
                        sum = state_[Index(k, c, b)] * lag[c - 1] + sum;
                    }
                    row[b - 1] = sum;
                }
            }
        }
        for (int i = 1; i <= n; ++i) {
            for (int j = 1; j <= n; ++j) {
                psi(i, j, h) = state_[Index(0, i, j)];
            }
        }
        stepDone();
    }
}

Responses ComputeResponses(const InnovationModel& model, int H, const std::function<void()>& step) {
    Responses psi(model.n, H);
    MovingAverage(model.Z, model.n, model.p).Run(model.Theta, model.L, psi, step);
    return psi;
}

Vector ComputeMaxResponses(const InnovationModel& model, int H,
                           const std::function<void()>& refresh) {
    const Responses psi = ComputeResponses(model, H, refresh);
    Vector largest(model.n);
    for (int h = 0; h <= H; ++h) {
        for (int i = 1; i <= model.n; ++i) {
            for (int j = 1; j <= model.n; ++j) {
                largest(i) = std::max(largest(i), std::fabs(psi(i, j, h)));
            }
        }
    }
    return largest;
}

} // namespace lorvane
