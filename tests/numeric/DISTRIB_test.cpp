#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>
#include <tuple>
#include <vector>

#include "numeric/DISTRIB.h"

using namespace lorvane;

namespace {

// The chi-square upper tail in closed form (Abramowitz and Stegun 26.4.4 and 26.4.5): a finite
// Poisson sum for even df, the normal tail plus a finite sum for odd df. Terms are taken in
// logarithms so that large df do not overflow.
double ChiSquareTail(double x, int df) {
    double sum = 0.0;
    if (df % 2 == 0) {
        double logTerm = -x / 2;
        for (int k = 0; k < df / 2; ++k) {
            if (k > 0) {
                logTerm += std::log(x / 2 / k);
            }
            sum += std::exp(logTerm);
        }
        return sum;
    }
    double logTerm =
        -x / 2 + 0.5 * std::log(x) + std::log(2.0) - 0.5 * std::log(2 * std::numbers::pi);
    for (int r = 1; r <= (df - 1) / 2; ++r) {
        if (r > 1) {
            logTerm += std::log(x / (2 * r - 1));
        }
        sum += std::exp(logTerm);
    }
    return std::erfc(std::sqrt(x / 2)) + sum;
}

} // namespace

TEST(NormalCDF, StandardNormalTableToFiveDecimals) {
    // Abramowitz and Stegun, Table 26.1, as printed in the usual five-decimal tables.
    const std::vector<std::pair<double, double>> table = {
        {0.5, 0.69146}, {1.0, 0.84134},  {1.645, 0.95002}, {1.96, 0.97500}, {2.5, 0.99379},
        {3.0, 0.99865}, {-1.0, 0.15866}, {-2.33, 0.00990}, {4.0, 0.99997},  {-0.25, 0.40129},
    };
    for (const auto& [x, p] : table) {
        EXPECT_NEAR(NormalCDF(x), p, 5.0001e-6) << x;
    }
    EXPECT_NEAR(NormalPValue(1.96), 0.05000, 5.0001e-6);
    EXPECT_EQ(NormalPValue(-1.96), NormalPValue(1.96));
}

TEST(NormalCDF, BranchBoundariesAndClamps) {
    EXPECT_EQ(NormalCDF(0.0), 0.5);
    EXPECT_EQ(NormalPValue(0.0), 1.0);
    // The Taylor series below 5 is exact to 1E-9 there.
    EXPECT_NEAR(NormalCDF(4.99), 0.5 * std::erfc(-4.99 / std::numbers::sqrt2), 1e-9);
    // From 5 on the asymptotic tail series runs. Near 5 its terms start to grow before a change
    // falls to 1E-15, and it ends held at its last positive value: 6.0E-07 for the lower tail at
    // 5, where the exact value is 2.9E-07. Both agree to the five decimals printed.
    EXPECT_GT(NormalCDF(-5.0), 5.9e-7);
    for (const double x : {5.0, 5.5, -5.0, -5.5, 6.0, -7.0}) {
        EXPECT_NEAR(NormalCDF(x), 0.5 * std::erfc(-x / std::numbers::sqrt2), 5e-7) << x;
        EXPECT_NEAR(NormalCDF(x) + NormalCDF(-x), 1.0, 2e-16) << x;
    }
    // Farther out it is close in relative terms too.
    EXPECT_NEAR(NormalCDF(-6.0) / (0.5 * std::erfc(6.0 / std::numbers::sqrt2)), 1.0, 1e-6);
    EXPECT_NEAR(NormalCDF(-10.0) / 7.619853024160527e-24, 1.0, 2e-5); // unclamped
    // Results at 1 or above are clamped; beyond +-10 nothing is.
    EXPECT_EQ(NormalCDF(9.0), 0.999999999999999);
    EXPECT_EQ(NormalCDF(10.0), 0.999999999999999);
    EXPECT_EQ(NormalCDF(10.5), 1.0);
    EXPECT_EQ(NormalCDF(-10.5), 0.0);
}

TEST(ChiSquareCDF, TailAgainstClosedForms) {
    // df 1 and 2 have their own exact branches, far closer than the incomplete gamma function's
    // 3E-07.
    for (const double x : {0.5, 3.841, 10.0}) {
        EXPECT_NEAR(ChiSquarePValue(x, 1), ChiSquareTail(x, 1), 1e-12) << x;
    }
    for (const double x : {1.0, 5.991, 20.0}) {
        EXPECT_NEAR(ChiSquarePValue(x, 2), ChiSquareTail(x, 2), 1e-14) << x;
    }
    const std::vector<std::pair<int, double>> cases = {
        {3, 7.815}, {3, 1.0},   {4, 2.0},   {4, 9.5},     {5, 11.07},
        {6, 5.0},   {10, 12.0}, {10, 30.0}, {30, 43.773}, {99, 80.0}};
    for (const auto& [df, x] : cases) {
        EXPECT_NEAR(ChiSquarePValue(x, df), ChiSquareTail(x, df), 1e-6) << df << " " << x;
    }
    // 499 degrees still go through the incomplete gamma function, 500 through the normal one.
    EXPECT_NEAR(ChiSquareCDF(499, 499), 1 - ChiSquareTail(499, 499), 1e-6);
    EXPECT_GT(ChiSquareCDF(499, 499), 0.505);
    EXPECT_EQ(ChiSquareCDF(500, 500), 0.5);
    EXPECT_EQ(ChiSquareCDF(9e-8, 3), 0.0);
    EXPECT_EQ(ChiSquareCDF(-1, 1), 0.0);
}

TEST(ChiSquareCDF, GammaHelpers) {
    EXPECT_EQ(LogGamma(1.0), 0.0);
    EXPECT_DOUBLE_EQ(LogGamma(0.5), std::log(std::numbers::pi) / 2);
    EXPECT_DOUBLE_EQ(LogGamma(6.0), std::log(120.0));
    EXPECT_NEAR(LogGamma(4.5), std::lgamma(4.5), 1e-13);
    EXPECT_NEAR(LogGamma(123.5), std::lgamma(123.5), 1e-11);
    EXPECT_NEAR(LogGamma(4.3), std::lgamma(4.3), 1e-9); // Lanczos
    for (const double x :
         {0.5, 1.9, 3.0, 12.0}) { // series below a + 1 = 2, continued fraction above
        EXPECT_NEAR(IncompleteGammaP(1.0, x), 1 - std::exp(-x), 1e-6) << x;
    }
    EXPECT_EQ(IncompleteGammaP(2.0, 0.0), 0.0);
    EXPECT_EQ(IncompleteGammaP(0.0, 1.0), 0.0);
}

TEST(ChiSquareCritical, PublishedTableAtFivePercentAndTenPercent) {
    // NIST/SEMATECH e-Handbook of Statistical Methods, 1.3.6.7.4, upper-tail critical values.
    // The bisection stops within 1E-05 of the level, worth up to 1.2E-03 in x at df 30.
    const std::vector<std::tuple<int, double, double>> table = {
        {1, 2.706, 3.841},  {2, 4.605, 5.991},    {3, 6.251, 7.815},    {4, 7.779, 9.488},
        {5, 9.236, 11.070}, {10, 15.987, 18.307}, {20, 28.412, 31.410}, {30, 40.256, 43.773},
    };
    for (const auto& [df, ten, five] : table) {
        EXPECT_NEAR(ChiSquareCritical(df, 10), ten, 2e-3) << df;
        EXPECT_NEAR(ChiSquareCritical(df, 5), five, 2e-3) << df;
    }
}

// The F tail in closed forms: with 2 numerator degrees of freedom (1 + 2x/d)^(-d/2); F(1, 1) is
// the square of a Cauchy variable, whose two-sided tail is 1 - 2 atan(t) / pi; I_x(a, 1) = x^a
// and I_x(1, b) = 1 - (1 - x)^b on either side of the continued fraction's switch.
TEST(FDistribution, TailAgainstClosedForms) {
    for (const double d : {2.0, 10.0, 154.0, 154.37}) {
        for (const double x : {0.2, 1.0, 1.5, 4.0, 30.0}) {
            EXPECT_NEAR(FPValue(x, 2, d), std::pow(1 + 2 * x / d, -d / 2), 1e-13) << d << " " << x;
        }
    }
    for (const double t : {0.1, 1.0, 3.0, 50.0}) {
        EXPECT_NEAR(FPValue(t * t, 1, 1), 1 - 2 * std::atan(t) / std::numbers::pi, 1e-13) << t;
    }
    for (const double x : {0.05, 0.5, 0.95}) {
        EXPECT_NEAR(IncompleteBeta(2.5, 1, x), std::pow(x, 2.5), 1e-14) << x;
        EXPECT_NEAR(IncompleteBeta(1, 7, x), 1 - std::pow(1 - x, 7), 1e-14) << x;
    }
    EXPECT_EQ(FPValue(0, 3, 5), 1.0);
    EXPECT_EQ(FPValue(-1, 3, 5), 1.0);
}

TEST(FDistribution, PublishedCriticalValuesAndReport) {
    // NIST/SEMATECH e-Handbook of Statistical Methods, 1.3.6.7.3, upper-tail critical values.
    const std::vector<std::tuple<double, double, double, double>> table = {
        {1, 10, 3.285, 4.965}, {5, 10, 2.522, 3.326}, {10, 20, 1.937, 2.348}};
    for (const auto& [df1, df2, ten, five] : table) {
        EXPECT_NEAR(FCritical(df1, df2, 10), ten, 2e-3) << df1 << " " << df2;
        EXPECT_NEAR(FCritical(df1, df2, 5), five, 2e-3) << df1 << " " << df2;
    }
    // (1 + x/5)^-5 = 0.05 at x = 5 (20^(1/5) - 1).
    EXPECT_NEAR(FCritical(2, 10, 5), 5 * (std::pow(20.0, 0.2) - 1), 1e-3);

    // The tail at 3 by Simpson's rule over the density of F(5, 10): 0.065558.
    std::string p, levels, critical, conclusion;
    FReport(3.0, 5, 10, p, levels, critical, conclusion);
    EXPECT_EQ(p, "p-value = 0.06556");
    EXPECT_EQ(levels, "Significance levels:        10%         5%");
    EXPECT_EQ(critical, "Critical values:           2.52       3.33");
    EXPECT_EQ(conclusion, "Conclusions:             reject     accept");
}

TEST(ChiSquareReport, FourLinesBelowBetweenAndAboveTheCriticalValues) {
    std::string p;
    std::string levels;
    std::string critical;
    std::string conclusion;
    ChiSquareReport(1.0, 2, p, levels, critical, conclusion);
    EXPECT_EQ(p, "p-value = 0.60653");
    EXPECT_EQ(levels, "Significance levels:        10%         5%");
    EXPECT_EQ(critical, "Critical values:           4.61       5.99");
    EXPECT_EQ(conclusion, "Conclusions:             accept     accept");
    ChiSquareReport(5.0, 2, p, levels, critical, conclusion);
    EXPECT_EQ(p, "p-value = 0.08208");
    EXPECT_EQ(conclusion, "Conclusions:             reject     accept");
    ChiSquareReport(7.0, 2, p, levels, critical, conclusion);
    EXPECT_EQ(p, "p-value = 0.03020");
    EXPECT_EQ(conclusion, "Conclusions:             reject     reject");
    // A statistic on the critical value is accepted.
    ChiSquareReport(ChiSquareCritical(2, 10), 2, p, levels, critical, conclusion);
    EXPECT_EQ(conclusion, "Conclusions:             accept     accept");
    ChiSquareReport(50.0, 30, p, levels, critical, conclusion);
    EXPECT_EQ(critical, "Critical values:          40.26      43.77");
    EXPECT_EQ(conclusion, "Conclusions:             reject     reject");
}
