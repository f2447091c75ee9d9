#include "numeric/DISTRIB.h"

#include <cmath>

#include "frame/NumberText.h"
#include "frame/RuntimeError.h"

namespace lorvane {

namespace {

constexpr double kSqrtTwoPi = 2.506628274631;
constexpr double kNormalTolerance = 1e-15;
constexpr double kGammaTolerance = 3e-07;
constexpr int kGammaIterations = 100;
// Whole numbers and halves above this go to the Lanczos form instead of a sum of that many
// logarithms (the chi-square function never comes near).
constexpr double kLargestLogSum = 1e6;

// 0.5 + phi-weighted Taylor series of the normal integral from 0 to a, for 0 < a < 5.
double NormalTaylor(double a) {
    const double logHalfSquare = std::log(a * a / 2);
    double sum = 0.0;
    double logFactorial = 0.0;
    double sign = 1.0;
    double previous = 0.5;
    for (int n = 0;; ++n) {
        double term = 1.0; // n = 0: exp(0)
        if (n > 0) {
            logFactorial += std::log(static_cast<double>(n));
            term = std::exp(n * logHalfSquare - logFactorial - std::log(2.0 * n + 1));
        }
        sum += sign * term;
        const double value = 0.5 + sum * a / kSqrtTwoPi;
        if (std::fabs(value - previous) <= kNormalTolerance) {
            return value;
        }
        previous = value;
        sign = -sign;
    }
}

// The asymptotic series of the lower tail at -a, for a >= 5.
double NormalTail(double a) {
    const double factor = std::exp(-0.5 * a * a) / (a * a * kSqrtTwoPi);
    const double logA = std::log(a);
    double s = a;
    double sign = 1.0;
    double logOddFactorial = 0.0;
    double before = 0.5;
    for (int n = 0;; ++n) {
        logOddFactorial += std::log(2.0 * n + 1);
        s -= sign * std::exp(logOddFactorial - (2.0 * n + 1) * logA);
        double value = s * factor;
        if (!(value > 0.0)) {
            value = before;
        }
        sign = -sign;
        const bool settled = std::fabs(value - before) <= kNormalTolerance;
        before = value;
        if (settled) {
            return value;
        }
    }
}

} // namespace

double NormalCDF(double x) {
    if (x > 10.0) {
        return 1.0;
    }
    if (x < -10.0) {
        return 0.0;
    }
    const double a = std::fabs(x);
    if (a == 0.0) {
        return 0.5;
    }
    double result;
    if (a < 5.0) {
        const double upper = NormalTaylor(a);
        result = x > 0.0 ? upper : 1.0 - upper;
    } else {
        const double lower = NormalTail(a);
        result = x <= 0.0 ? lower : 1.0 - lower;
    }
    if (result >= 1.0) {
        return 0.999999999999999;
    }
    if (result <= 0.0) {
        return 1e-15;
    }
    return result;
}

double NormalPValue(double x) {
    return 2.0 - 2.0 * NormalCDF(std::fabs(x));
}

double ChiSquareCDF(double x, Int16 df) {
    const double degrees = df;
    if (x < 1e-07) {
        return 0.0;
    }
    if (x > 10.0 * degrees) {
        // Chebyshev: the upper tail is at most this.
        const double bound = 2.0 * degrees / ((x - degrees) * (x - degrees));
        if (bound < 1e-06) {
            return 1.0;
        }
    }
    if (df > 499) {
        return NormalCDF((x - degrees) / std::sqrt(2.0 * degrees));
    }
    if (df == 1) {
        return (NormalCDF(std::sqrt(x)) - 0.5) * 2.0;
    }
    try {
        if (df == 2) {
            return 1.0 - CheckedExp(-x / 2.0);
        }
        return IncompleteGammaP(degrees / 2.0, x / 2.0);
    } catch (const RuntimeError&) {
        return 1.0;
    }
}

double ChiSquarePValue(double x, Int16 df) {
    return 1.0 - ChiSquareCDF(x, df);
}

namespace {

// The value whose upper tail is level percent: halving from 1 until the tail passes p, doubling
// from 1 until it falls below p, then bisection to a tail within 1E-05 of p.
template <typename Tail> double CriticalValue(Tail tail, double level) {
    if (!(level > 0.0 && level < 100.0)) {
        Raise(InvalidProcedureCall);
    }
    const double p = level / 100.0;
    double x = 1.0;
    double q = tail(x);
    while (q <= p) {
        x /= 2.0;
        q = tail(x);
    }
    double lower = x;
    x = 1.0;
    while (q >= p) {
        x *= 2.0;
        q = tail(x);
    }
    double upper = x;
    double middle = (lower + upper) / 2.0;
    q = tail(middle);
    // The second test only ends a search that can no longer move (a jump of the tail across p).
    while (std::fabs(q - p) > 1e-05 && middle != lower && middle != upper) {
        if (q > p) {
            lower = middle;
        } else {
            upper = middle;
        }
        middle = (lower + upper) / 2.0;
        q = tail(middle);
    }
    return middle;
}

// The last three lines of a test's report from its critical values at 10% and 5%: a statistic
// exactly on a critical value is accepted.
void LevelLines(double x, double c10, double c5, std::string& levelLine, std::string& criticalLine,
                std::string& conclusionLine) {
    levelLine = std::string("Significance levels:") + "        10%" + "         5%";
    criticalLine = "Critical values:    " + RightAligned(FormatNumber(c10, "########.##"), 11) +
                   RightAligned(FormatNumber(c5, "########.##"), 11);
    conclusionLine = "Conclusions:        ";
    if (c10 < x) {
        conclusionLine += "     reject";
        conclusionLine += c5 < x ? "     reject" : "     accept";
    } else {
        conclusionLine += "     accept";
        conclusionLine += "     accept";
    }
}

// The continued fraction of the regularised incomplete beta function, by the modified Lentz
// method, for x below (a + 1) / (a + b + 2).
double BetaFraction(double a, double b, double x) {
    constexpr double tiny = 1e-300;
    constexpr double tolerance = 1e-15;
    const auto kept = [](double value) { return std::fabs(value) < tiny ? tiny : value; };
    double c = 1.0;
    double d = 1.0 / kept(1.0 - (a + b) * x / (a + 1.0));
    double fraction = d;
    for (int m = 1; m <= 1000; ++m) {
        const double even = m * (b - m) * x / ((a + 2 * m - 1) * (a + 2 * m));
        d = 1.0 / kept(1.0 + even * d);
        c = kept(1.0 + even / c);
        fraction *= d * c;
        const double odd = -(a + m) * (a + b + m) * x / ((a + 2 * m) * (a + 2 * m + 1));
        d = 1.0 / kept(1.0 + odd * d);
        c = kept(1.0 + odd / c);
        const double step = d * c;
        fraction *= step;
        if (std::fabs(step - 1.0) < tolerance) {
            break;
        }
    }
    return fraction;
}

} // namespace

double ChiSquareCritical(Int16 df, double level) {
    return CriticalValue([df](double x) { return ChiSquarePValue(x, df); }, level);
}

double IncompleteBeta(double a, double b, double x) {
    if (x <= 0.0) {
        return 0.0;
    }
    if (x >= 1.0) {
        return 1.0;
    }
    const double front = std::exp(std::lgamma(a + b) - std::lgamma(a) - std::lgamma(b) +
                                  a * std::log(x) + b * std::log1p(-x));
    if (x < (a + 1.0) / (a + b + 2.0)) {
        return front * BetaFraction(a, b, x) / a;
    }
    return 1.0 - front * BetaFraction(b, a, 1.0 - x) / b;
}

double FPValue(double x, double df1, double df2) {
    if (x <= 0.0) {
        return 1.0;
    }
    return IncompleteBeta(df2 / 2.0, df1 / 2.0, df2 / (df2 + df1 * x));
}

double FCritical(double df1, double df2, double level) {
    return CriticalValue([df1, df2](double x) { return FPValue(x, df1, df2); }, level);
}

double IncompleteGammaP(double a, double x) {
    if (x <= 0.0 || a <= 0.0) {
        return 0.0;
    }
    const double logFactor = -x + a * CheckedLog(x) - LogGamma(a);
    if (x < a + 1.0) {
        double ap = a;
        double del = 1.0 / a;
        double sum = del;
        for (int n = 1; n <= kGammaIterations; ++n) {
            ap += 1.0;
            del *= x / ap;
            sum += del;
            if (std::fabs(del) < std::fabs(sum) * kGammaTolerance) {
                break;
            }
        }
        return sum * CheckedExp(logFactor);
    }
    double a0 = 1.0;
    double a1 = x;
    double b0 = 0.0;
    double b1 = 1.0;
    double fac = 1.0;
    double old = 0.0;
    double g = 0.0;
    for (int n = 1; n <= kGammaIterations; ++n) {
        const double ana = n - a;
        a0 = (a1 + a0 * ana) * fac;
        b0 = (b1 + b0 * ana) * fac;
        const double anf = n * fac;
        a1 = x * a0 + anf * a1;
        b1 = x * b0 + anf * b1;
        if (a1 != 0.0) {
            fac = 1.0 / a1;
            g = b1 * fac;
            if (std::fabs(CheckedDivide(g - old, g)) < kGammaTolerance) {
                break;
            }
            old = g;
        }
    }
    return 1.0 - CheckedExp(logFactor) * g;
}

double LogGamma(double a) {
    if (a >= 0.5 && a <= kLargestLogSum && std::floor(2.0 * a) == 2.0 * a) {
        const bool half = std::floor(a) != a;
        const double last = half ? 0.5 : 1.0;
        double sum = 0.0;
        for (double j = a - 1.0; j >= last; j -= 1.0) {
            sum += std::log(j);
        }
        if (half) {
            sum += std::log(4.0 * std::atan(1.0)) / 2.0;
        }
        return sum;
    }
    static constexpr double kCoefficients[] = {76.18009173,  -86.50532033,  24.01409822,
                                               -1.231739516, 0.00120858003, -0.00000536382};
    const double z = a - 1.0;
    const double t = z + 5.5;
    double series = 1.0;
    double denominator = z;
    for (const double coefficient : kCoefficients) {
        denominator += 1.0;
        series += coefficient / denominator;
    }
    return (z + 0.5) * CheckedLog(t) - t + CheckedLog(2.50662827465 * series);
}

void ChiSquareReport(double x, Int16 df, std::string& pLine, std::string& levelLine,
                     std::string& criticalLine, std::string& conclusionLine) {
    pLine = "p-value = " + FormatNumber(ChiSquarePValue(x, df), "0.00000");
    LevelLines(x, ChiSquareCritical(df, 10), ChiSquareCritical(df, 5), levelLine, criticalLine,
               conclusionLine);
}

void FReport(double x, double df1, double df2, std::string& pLine, std::string& levelLine,
             std::string& criticalLine, std::string& conclusionLine) {
    pLine = "p-value = " + FormatNumber(FPValue(x, df1, df2), "0.00000");
    LevelLines(x, FCritical(df1, df2, 10), FCritical(df1, df2, 5), levelLine, criticalLine,
               conclusionLine);
}

} // namespace lorvane
