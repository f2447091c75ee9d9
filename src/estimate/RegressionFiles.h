#pragma once

#include <string>
#include <vector>

#include "frame/Int16.h"
#include "frame/TextFile.h"
#include "numeric/Matrix.h"

namespace lorvane {

class Module;
struct Workspace;

// Turns the specified VAR into the two regression files that all estimation passes read:
// YSURE.TMP with the k left-hand variables and XSURE.TMP with the regressors of each equation,
// lagged, thinned by the zero pattern of VARZERO.TMP and followed by d(t). Both hold the
// observations first+p..last of the chosen sample. Gives the number of equations k, the number
// of coefficients K of the system, the zeros of the pattern and the effective sample T.
void BuildRegressionFiles(Module& module, Int16& k, Int16& K, Int16& Zeros, double& T);

// The name of a lagged regressor: "LAG2[GDP]".
std::string LagName(int lag, const std::string& variable);

// The heads of the regression files: the variables and the regressors of every equation.
// Equations are numbered from 1; the coefficients of the system follow one another, equation 1
// first.
struct RegressionLayout {
    int k = 0;
    std::vector<std::string> variables; // [i - 1]: name of variable i
    std::vector<int> counts;            // [i - 1]: K(i)
    std::vector<std::vector<std::string>>
        regressors; // [i - 1][c - 1]: name of regressor c of equation i

    int Total() const;
    // Position in the system of the coefficient before the first one of equation i.
    int Offset(int i) const;
    int Count(int i) const { return counts[static_cast<std::size_t>(i - 1)]; }
    const std::string& Variable(int i) const { return variables[static_cast<std::size_t>(i - 1)]; }
    const std::string& Regressor(int i, int c) const {
        return regressors[static_cast<std::size_t>(i - 1)][static_cast<std::size_t>(c - 1)];
    }
};

// Reads the regression files from their start, one observation at a time. The files must fit
// the model being estimated, k equations with K regressors in all; heads that do not were
// changed behind the estimation and are run-time error 51, Internal error, found before
// anything is sized by them.
class RegressionReader {
public:
    RegressionReader(const Workspace& workspace, int k, int K);

    const RegressionLayout& Layout() const { return layout_; }
    // The next observation: y(1..k), and x(1..K) with the regressors of all equations end to end.
    void Next(Vector& y, Vector& x);

private:
    TextInput ys_;
    TextInput xs_;
    RegressionLayout layout_;
};

} // namespace lorvane
