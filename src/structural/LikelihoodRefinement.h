#pragma once

#include <optional>
#include <vector>

#include "numeric/Matrix.h"
#include "numeric/Pattern.h"

namespace lorvane {

// The log likelihood of the structural model in the free elements b of B, up to T and its
// constant: f(b) = ln |det B| - 0.5 tr(S B'B), with S the variance of the nonstructural errors.
// Its gradient is B^-T - B S at the free places, its Hessian
// H[(i,j),(k,l)] = -B^-1(j,k) B^-1(l,i) - [i = k] S(l,j).
class StructuralLikelihood {
public:
    StructuralLikelihood(const Pattern& Apat, const Matrix& S);

    int ParameterCount() const { return static_cast<int>(places_.size()); }
    // f at b; false where the likelihood of the search is impossible (a free diagonal element at
    // or below 0) or B is singular.
    bool Value(const std::vector<double>& b, double& value) const;
    // f with its gradient and Hessian, in the order of b.
    bool Derivatives(const std::vector<double>& b, double& value, std::vector<double>& gradient,
                     Matrix& hessian) const;

private:
    struct Place {
        int i;
        int j;
    };
    int n_;
    std::vector<Place> places_;
    std::vector<double> S_;
};

// Newton's method from b to the nearest maximum of the likelihood, each step damped until the
// Hessian is negative definite and halved until the likelihood does not fall; it stops when a
// step no longer moves b at working precision or no longer raises the likelihood. b is replaced
// by the maximum; the steps taken are returned. A b where the likelihood is impossible is left
// as it is.
int RefineLikelihood(const StructuralLikelihood& likelihood, std::vector<double>& b);

class SimplexObjectives;

// Decision: the simplex stops when its vertices agree to a relative 1E-5 of the log likelihood,
// which leaves it short of the maximum by up to whole units, and a restart shrinks back onto the
// same point. After each run of option 1 its best vertex is taken to the maximum by Newton's
// method on the analytic derivatives, and that point becomes the run's result. b is replaced
// when the log likelihood of the search does not fall; the rise is returned, or nothing when b
// stays. S is the variance of the nonstructural errors of the objectives.
std::optional<double> RefineSimplexResult(SimplexObjectives& objectives, const Matrix& S,
                                          std::vector<double>& b);

} // namespace lorvane
