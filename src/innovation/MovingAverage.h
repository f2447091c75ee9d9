#pragma once

#include <functional>
#include <vector>

#include "numeric/Matrix.h"

namespace lorvane {

class Pattern;
struct InnovationModel;

// A response array Psi(i, j, h): variable i, innovation j (both 1..n), horizon h (0..H).
class Responses {
public:
    Responses() = default;
    Responses(int n, int H) { Resize(n, H); }

    // Sets the sizes and fills the array with zeros.
    void Resize(int n, int H);
    int Size() const { return n_; }
    int Horizon() const { return H_; }

    double& operator()(int i, int j, int h) { return data_[Offset(i, j, h)]; }
    double operator()(int i, int j, int h) const { return data_[Offset(i, j, h)]; }
    // The place of (i, j, h) in horizon-major order, from 0 to Count() - 1.
    std::size_t Offset(int i, int j, int h) const;
    // n * n * (H + 1).
    std::size_t Count() const { return data_.size(); }

private:
    int n_ = 0;
    int H_ = 0;
    std::vector<double> data_;
};

// The moving-average form of a VAR: Psi(0) = L and Psi(h) = sum over k = 1..p of
// A(k) Psi(h - k), where Psi of a negative horizon is zero. The state holds only the last
// p + 1 matrices and shifts them each horizon. One object serves many runs with perturbed
// parameters.
class MovingAverage {
public:
    MovingAverage(const Pattern& Z, int n, int p);

    // Rebuilds A from Theta and runs the recursion up to horizon psi.Horizon(). step runs at
    // h = 0 and after each further horizon: H + 1 times.
    void Run(const Vector& Theta, const Matrix& L, Responses& psi,
             const std::function<void()>& step = {});

private:
    void RebuildLags(const Vector& Theta);
    std::size_t Index(int k, int a, int b) const {
        return (static_cast<std::size_t>(k) * static_cast<std::size_t>(n_) +
                static_cast<std::size_t>(a - 1)) *
                   static_cast<std::size_t>(n_) +
               static_cast<std::size_t>(b - 1);
    }

    const Pattern& Z_;
    int n_;
    int p_;
    // A(a, c) of lag k at Index(k, a, c), k = 1..p; P(a, b) of k horizons back at
    // Index(k, a, b), k = 0..p.
    std::vector<double> lags_;
    std::vector<double> state_;
};

// The responses of the model for horizons 0..H.
Responses ComputeResponses(const InnovationModel& model, int H,
                           const std::function<void()>& step = {});

// The largest absolute response of each variable over all innovations and horizons 0..H, from
// a run of its own; refresh runs after each horizon.
Vector ComputeMaxResponses(const InnovationModel& model, int H,
                           const std::function<void()>& refresh = {});

} // namespace lorvane
