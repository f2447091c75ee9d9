#pragma once

#include <string>
#include <vector>

namespace lorvane {

class Module;

// The names of d(t) for the current switches, in column order: "1", the trend, the seasonal
// dummies, the Chebishev polynomials.
std::vector<std::string> DeterministicNames(const Module& module);

// Fills the d(t) store for every observation of the data set with the columns of the current
// switches. The Chebishev polynomials run over the effective sample of a VAR of order p and
// hold the missing code elsewhere.
void BuildDeterministic(Module& module, int p);

// The number of Chebishev columns of the current switches.
int ChebishevCount(const Module& module);
// 1 for detrended polynomials (d(t) holds a trend), 0 for regular ones: the order that means
// none.
int ChebishevMinimum(const Module& module);

// The description of the VAR model: its variables, its form and its d(t).
std::string VarModelText(const Module& module);

} // namespace lorvane
