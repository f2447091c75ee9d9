#pragma once

#include <functional>
#include <vector>

namespace lorvane {

class Random;

// The downhill simplex search of Nelder and Mead with reflection 1, expansion 2 and
// contraction 0.5. The start simplex has b as its first vertex and m more vertices around it,
// each element moved by up to 0.1 times the Euclidean norm of b with one draw of the random
// source, in single precision.
struct SimplexSearch {
    // The value to minimise at a point.
    std::function<double(const std::vector<double>&)> objective;
    // Stop as soon as the lowest value is at most MadStopLevel (the MAD option).
    bool madStop = false;
    // Shows the iteration counter, the lowest vertex of the last scan and its value; called once
    // the simplex is built, after every round, and at the end.
    std::function<void(double iteration, const std::vector<double>& vertex, double value)> display;

    static constexpr double Tolerance = 0.00001;
    static constexpr double IterationLimit = 5000;
    static constexpr double MadStopLevel = 0.001;
};

// Runs the search from b, which it replaces by the lowest vertex found; returns that vertex's
// value. iterations is the last count shown: the rounds made, plus 1 at the start and 1 at the
// end. The counters are reals, as the bounds they are compared with.
double RunSimplexSearch(const SimplexSearch& search, Random& random, std::vector<double>& b,
                        double& iterations);

} // namespace lorvane
