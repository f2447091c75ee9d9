#include "structural/DownhillSimplex.h"

#include <cmath>

#include "frame/Int16.h"
#include "platform/Random.h"

namespace lorvane {

namespace {

constexpr double Reflection = 1.0;
constexpr double Contraction = 0.5;
constexpr double Expansion = 2.0;
constexpr double Tiny = 0.00001;
constexpr double SimplexScale = 0.1;

using Point = std::vector<double>;

// The lowest, highest and next highest vertex. A tie goes to the later vertex for the highest
// one, and the first vertex is compared with itself as well.
void RankVertices(const std::vector<double>& Y, std::size_t& ilo, std::size_t& ihi,
                  std::size_t& inhi) {
    ilo = 0;
    if (Y[0] > Y[1]) {
        ihi = 0;
        inhi = 1;
    } else {
        ihi = 1;
        inhi = 0;
    }
    for (std::size_t i = 0; i < Y.size(); ++i) {
        if (Y[i] < Y[ilo]) {
            ilo = i;
        }
        if (Y[i] >= Y[ihi]) {
            inhi = ihi;
            ihi = i;
        } else if (Y[i] > Y[inhi] && i != ihi) {
            inhi = i;
        }
    }
}

} // namespace

double RunSimplexSearch(const SimplexSearch& search, Random& random, std::vector<double>& b,
                        double& iterations) {
    const std::size_t m = b.size();
    const std::size_t mp = m + 1;

    std::vector<Point> P(mp, Point(m));
    std::vector<double> Y(mp);
    P[0] = b;
    Y[0] = search.objective(b);
    double sumOfSquares = 0;
    for (const double value : b) {
        sumOfSquares += value * value;
    }
    const double N = std::sqrt(sumOfSquares);
    for (std::size_t v = 1; v < mp; ++v) {
        for (std::size_t k = 0; k < m; ++k) {
            const double w = random.next();
            P[v][k] = ToSingle((w - 0.5 + w - 0.5) * SimplexScale * N + b[k]);
        }
        Y[v] = search.objective(P[v]);
    }

    std::size_t ilo = 0;
    std::size_t ihi = 0;
    std::size_t inhi = 0;
    iterations = 1;
    search.display(iterations, P[ilo], Y[ilo]);

    Point pbar(m);
    Point pr(m);
    Point prr(m);
    // A simplex of one vertex (no free element) has nothing to rank.
    while (mp > 1) {
        RankVertices(Y, ilo, ihi, inhi);
        const double rtol =
            2 * std::abs(Y[ihi] - Y[ilo]) / (std::abs(Y[ihi]) + std::abs(Y[ilo]) + Tiny);
        if (iterations > SimplexSearch::IterationLimit || rtol < SimplexSearch::Tolerance) {
            break;
        }
        if (search.madStop && Y[ilo] <= SimplexSearch::MadStopLevel) {
            break;
        }
        iterations += 1;

        for (std::size_t k = 0; k < m; ++k) {
            double sum = 0;
            for (std::size_t i = 0; i < mp; ++i) {
                if (i != ihi) {
                    sum += P[i][k];
                }
            }
            pbar[k] = sum / static_cast<double>(m);
        }
        for (std::size_t k = 0; k < m; ++k) {
            pr[k] = (1 + Reflection) * pbar[k] - Reflection * P[ihi][k];
        }
        const double ypr = search.objective(pr);
        if (ypr <= Y[ilo]) {
            for (std::size_t k = 0; k < m; ++k) {
                prr[k] = Expansion * pr[k] + (1 - Expansion) * pbar[k];
            }
            const double yprr = search.objective(prr);
            if (yprr < Y[ilo]) {
                P[ihi] = prr;
                Y[ihi] = yprr;
            } else {
                P[ihi] = pr;
                Y[ihi] = ypr;
            }
        } else if (ypr < Y[inhi]) {
            P[ihi] = pr;
            Y[ihi] = ypr;
        } else {
            if (ypr < Y[ihi]) {
                P[ihi] = pr;
                Y[ihi] = ypr;
            }
            for (std::size_t k = 0; k < m; ++k) {
                prr[k] = Contraction * P[ihi][k] + (1 - Contraction) * pbar[k];
            }
            const double yprr = search.objective(prr);
            if (yprr < Y[ihi]) {
                P[ihi] = prr;
                Y[ihi] = yprr;
            } else {
                for (std::size_t i = 0; i < mp; ++i) {
                    if (i == ilo) {
                        continue;
                    }
                    for (std::size_t k = 0; k < m; ++k) {
                        P[i][k] = 0.5 * (P[i][k] + P[ilo][k]);
                    }
                    Y[i] = search.objective(P[i]);
                }
            }
        }
        search.display(iterations, P[ilo], Y[ilo]);
    }

    ilo = 0;
    for (std::size_t v = 1; v < mp; ++v) {
        if (Y[v] < Y[ilo]) {
            ilo = v;
        }
    }
    b = P[ilo];
    iterations += 1;
    search.display(iterations, P[ilo], Y[ilo]);
    return Y[ilo];
}

} // namespace lorvane
