#pragma once

// A plain gradient search of the structural log likelihood, written apart from the module's
// refinement so that the tests can judge where that one ends.

#include <cmath>
#include <random>
#include <vector>

#include "frame/Int16.h"
#include "numeric/Matrix.h"
#include "numeric/Matsubs.h"
#include "numeric/Pattern.h"

namespace lorvane::test {

// ln |det B| - 0.5 tr(S B'B) at the free elements b of the pattern (by rows), with its gradient
// B^-T - B S at the free places; false where a diagonal element is not positive or B singular.
inline bool PlainLikelihood(const Pattern& Apat, const Matrix& S, const std::vector<double>& b,
                            double& value, std::vector<double>& gradient) {
    const int n = Apat.Size();
    Matrix B(n, n);
    std::size_t k = 0;
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            if (Apat(i, j) != 0) {
                if (i == j && !(b[k] > 0)) {
                    return false;
                }
                B(i, j) = b[k++];
            }
        }
    }
    Matrix BInv(n, n);
    double determinant = 0;
    Int16 flag;
    InvertMatrix(B, BInv, determinant, n, flag);
    if (flag == 1 || !(std::abs(determinant) > 0)) {
        return false;
    }
    value = std::log(std::abs(determinant));
    gradient.clear();
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            double BS = 0;
            for (int m = 1; m <= n; ++m) {
                BS += B(i, m) * S(m, j);
            }
            value -= 0.5 * BS * B(i, j);
            if (Apat(i, j) != 0) {
                gradient.push_back(BInv(j, i) - BS);
            }
        }
    }
    return true;
}

// Steepest ascent with the step of Barzilai and Borwein, halved until the likelihood does not
// fall, until the gradient vanishes; b is replaced by the end point and its value returned.
inline double PlainGradientSearch(const Pattern& Apat, const Matrix& S, std::vector<double>& b) {
    double value = 0;
    std::vector<double> gradient;
    if (!PlainLikelihood(Apat, S, b, value, gradient)) {
        return -1E+300;
    }
    double step = 1e-3;
    for (int round = 0; round < 20000; ++round) {
        double largest = 0;
        for (const double g : gradient) {
            largest = std::max(largest, std::abs(g));
        }
        if (largest < 1e-9) {
            break;
        }
        std::vector<double> trial = b;
        double next = 0;
        std::vector<double> nextGradient;
        for (;;) {
            for (std::size_t k = 0; k < b.size(); ++k) {
                trial[k] = b[k] + step * gradient[k];
            }
            if (PlainLikelihood(Apat, S, trial, next, nextGradient) && next >= value) {
                break;
            }
            step /= 2;
            if (step < 1e-300) {
                return value;
            }
        }
        double ss = 0;
        double sy = 0;
        for (std::size_t k = 0; k < b.size(); ++k) {
            const double s = trial[k] - b[k];
            ss += s * s;
            sy += s * (nextGradient[k] - gradient[k]);
        }
        step = sy < 0 ? ss / -sy : 2 * step;
        b = trial;
        value = next;
        gradient = nextGradient;
    }
    return value;
}

// The best of several plain searches, from the given start and from starts spread around it.
inline double IndependentMaximum(const Pattern& Apat, const Matrix& S, std::vector<double> start,
                                 std::vector<double>& best) {
    std::mt19937 random(17);
    std::uniform_real_distribution<double> spread(0.7, 1.3);
    double bestValue = -1E+300;
    for (int attempt = 0; attempt < 4; ++attempt) {
        std::vector<double> b = start;
        if (attempt > 0) {
            for (double& x : b) {
                x *= spread(random);
            }
        }
        const double value = PlainGradientSearch(Apat, S, b);
        if (value > bestValue) {
            bestValue = value;
            best = b;
        }
    }
    return bestValue;
}

} // namespace lorvane::test
