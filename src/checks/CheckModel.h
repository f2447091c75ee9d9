#pragma once

#include <Eigen/Dense>

#include "numeric/Pattern.h"

namespace lorvane {

struct Workspace;

// The estimated VAR as the model checks need it: the residuals, the regressors of the system
// and the lag matrices A(1..p) side by side in A = [A(1) .. A(p)] (k by kp).
struct CheckModel {
    int k = 0;
    int p = 0;
    // The residuals, T by k, observation t in row t - 1.
    Eigen::MatrixXd U;
    // Every regressor that enters some equation, once, in the order of first appearance: the
    // lags of the variables, then d(t). T by n.
    Eigen::MatrixXd X;
    Eigen::MatrixXd A;
    // The number of free lag coefficients, p times the ones of the zero pattern.
    int FreeLags = 0;
};

// Reads the model of k variables, order p and T observations from the work files of the estimation:
// the zero pattern (VARZERO.TMP), the coefficients (VARB.TMP), the regressors (XSURE.TMP with
// YSURE.TMP) and the residuals (U.TMP) of the last successful estimate.
CheckModel ReadCheckModel(const Workspace& workspace, int k, int p, int T);

} // namespace lorvane
