#pragma once

#include "innovation/MovingAverage.h"

namespace lorvane {

struct InnovationModel;
struct WorkCounter;

// The step of the central differences of the responses, for series whose errors are of the
// size of growth rates; a parameter moves by it times the powers of ten of the units of the
// variables it links (UnitPowers), whatever the parameter's own value.
inline constexpr double ResponseStep = 0.001;

// The asymptotic standard errors of the responses for horizons 0..H by the delta method:
// SE^2 = (DA' VA DA + DL' VL DL) / T, with DA and DL the numerical derivatives of a response
// with respect to Theta and to the free elements of L. The two parameter blocks count as
// independent. A quadratic form that is not positive gives 0. Theta and L are perturbed one
// element at a time and restored. T = 0 is run-time error 11.
Responses ComputeStandardErrors(InnovationModel& model, int H, WorkCounter& work);

} // namespace lorvane
