#pragma once

#include <filesystem>
#include <functional>
#include <vector>

#include "frame/Int16.h"
#include "numeric/Matrix.h"
#include "numeric/Pattern.h"

namespace lorvane {

struct Workspace;

// Whether a pattern of the impact matrix belongs to a structural model: a free element above
// the diagonal.
bool IsStructuralPattern(const Pattern& lPattern);

// The switches of d(t) that decide how many deterministic coefficients each equation has.
struct DeterministicSwitches {
    int Intercept = 0;
    int Trend = 0;
    int Seasonal = 0;
    int PeriodsPerYear = 0;
    // The number of Chebishev columns in d(t), 0 when they are off.
    int ChebishevColumns = 0;
};

// The number of deterministic coefficients per equation: 1 for the intercept, 2 when the trend
// is in (with the intercept that always goes with it), the seasonal dummies (one fewer beside
// an intercept or trend) and the Chebishev columns.
int DeterministicTermCount(const DeterministicSwitches& switches);

// The estimated VAR as the innovation analysis needs it. Lag matrices A(k), k = 1..p, come
// from the free lag coefficients Theta, ordered equation i outer, lag k, variable j inner,
// over the places where Z(i, j) = 1. L is the impact matrix, nonzero where LPattern is 1.
// VA and VL are the variance matrices of the square root of T times the estimation error of
// Theta and of the free elements of L (counted row by row over LPattern).
struct InnovationModel {
    int n = 0;
    int p = 0;
    double T = 0;
    Pattern Z;
    Pattern LPattern;
    Int16 NA;
    Int16 NL;
    Vector Theta;
    Matrix L;
    Matrix VA;
    Matrix VL;
    // Whether WALDT.TMP holds the variance of L; without it VL is zero.
    bool VarianceOfL = false;
};

// Reads the model of the innovation analysis: Z from VARZERO.TMP, the parameters and their
// variance from WALDT.TMP, the pattern of L from VARLPAT.TMP. d is the number of
// deterministic coefficients per equation; they and the covariances between the lag block
// and the L block are read past. rowDone runs after each row read of the parameter file.
// Patterns with other values than 0 and 1, or a parameter count of WALDT.TMP that does not
// fit them, are the read error of the files (run-time error 62).
InnovationModel ReadInnovationModel(const Workspace& workspace, int n, int p, double T, int d,
                                    const std::function<void()>& rowDone = {});

} // namespace lorvane
