#pragma once

#include <string>

#include "frame/Int16.h"

namespace lorvane {

// The standard normal distribution function, from series: a Taylor series below 5, the
// asymptotic tail series from 5 on, exactly 0 below -10 and exactly 1 above 10. In between the
// result is kept within [1E-15, 0.999999999999999].
double NormalCDF(double x);
// The two-sided p-value of a standard normal statistic: 2 - 2 NormalCDF(|x|).
double NormalPValue(double x);

// The chi-square distribution function with df degrees of freedom: the normal approximation
// above 499 degrees, the normal function for 1, the exponential for 2, the incomplete gamma
// function otherwise; 0 below 1E-07 and 1 where a Chebyshev bound leaves no doubt.
double ChiSquareCDF(double x, Int16 df);
// The upper tail: 1 - ChiSquareCDF(x, df).
double ChiSquarePValue(double x, Int16 df);
// The value whose upper tail is level percent, found by bisection to a tail within 1E-05.
double ChiSquareCritical(Int16 df, double level);

// The regularised lower incomplete gamma function P(a, x): series below a + 1, continued
// fraction above, each to a relative 3E-07 in at most 100 steps.
double IncompleteGammaP(double a, double x);
// ln Gamma(a): exact sums of logarithms for whole numbers and halves, Lanczos otherwise.
double LogGamma(double a);

// The regularised incomplete beta function I_x(a, b), by its continued fraction.
double IncompleteBeta(double a, double b, double x);
// The upper tail of the F distribution with df1 and df2 degrees of freedom (either may be
// fractional); 1 for x not above 0.
double FPValue(double x, double df1, double df2);
// The value whose upper tail is level percent, found as the chi-square critical value is.
double FCritical(double df1, double df2, double level);

// The four lines of the accept/reject report of a chi-square statistic x with df degrees of
// freedom at the 10% and 5% levels.
void ChiSquareReport(double x, Int16 df, std::string& pLine, std::string& levelLine,
                     std::string& criticalLine, std::string& conclusionLine);
// The same lines for an F statistic x with df1 and df2 degrees of freedom.
void FReport(double x, double df1, double df2, std::string& pLine, std::string& levelLine,
             std::string& criticalLine, std::string& conclusionLine);

} // namespace lorvane
