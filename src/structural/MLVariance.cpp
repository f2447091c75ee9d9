#include "structural/MLVariance.h"

#include "numeric/DataUnits.h"
#include "numeric/MatrixProducts.h"
#include "numeric/Matsubs.h"
#include "structural/MomentConditions.h"
#include "structural/SimplexObjectives.h"
#include "structural/StructuralModel.h"

namespace lorvane {

namespace {

// D V D' for a matrix D of derivatives (rows: functions, columns: elements of b).
Matrix Sandwich(const Matrix& D, const Matrix& V) {
    const int rows = D.Rows();
    const int m = D.Cols();
    Matrix result(rows, rows);
    for (int r = 1; r <= rows; ++r) {
        for (int s = 1; s <= rows; ++s) {
            double sum = 0;
            for (int k = 1; k <= m; ++k) {
                for (int l = 1; l <= m; ++l) {
                    sum += D(r, k) * V(k, l) * D(s, l);
                }
            }
            result(r, s) = sum;
        }
    }
    return result;
}

// One observation's log likelihood at a given b without its constant: B'B and the logarithm of
// its determinant, which do not depend on the observation.
struct ObservationTerm {
    Matrix M;
    double logDeterminant = 0;

    double At(const Matrix& u, int t) const {
        const int n = M.Rows();
        double quadratic = 0;
        for (int i = 1; i <= n; ++i) {
            for (int j = 1; j <= n; ++j) {
                quadratic += u(t, i) * M(i, j) * u(t, j);
            }
        }
        return 0.5 * logDeterminant - 0.5 * quadratic;
    }
};

ObservationTerm TermAt(const Pattern& Apat, const std::vector<double>& b) {
    ObservationTerm term;
    term.M = CrossProduct(BuildB(Apat, b));
    const int n = term.M.Rows();
    Matrix inverse(n, n);
    Determinant determinant;
    Int16 flag;
    InvertMatrix(term.M, inverse, determinant, n, flag);
    // A singular B'B has no logarithm of its determinant: the run stops with error 5.
    term.logDeterminant = determinant.Log();
    return term;
}

// The steps of the elements of b, for series whose errors are of the size of growth rates: an
// element in column j of B has the inverse of the units of variable j, and its step moves with
// them. The units come from the rows of B^-1 (UnitPowers).
std::vector<double> StepsOf(const Pattern& Apat, const std::vector<double>& b) {
    double determinant = 0;
    Int16 flag;
    const Matrix BInv = BInverseAt(Apat, b, determinant, flag);
    const std::vector<int> units = UnitPowers(BInv);
    std::vector<double> steps;
    for (int i = 1; i <= Apat.Size(); ++i) {
        for (int j = 1; j <= Apat.Size(); ++j) {
            if (Apat(i, j) == 1 || Apat(i, j) == -1) {
                steps.push_back(MLStep * PowerOfTen(-units[static_cast<std::size_t>(j - 1)]));
            }
        }
    }
    return steps;
}

} // namespace

Matrix BInverseAt(const Pattern& Apat, const std::vector<double>& b, double& determinant,
                  Int16& flag) {
    const Matrix B = BuildB(Apat, b);
    const int n = B.Rows();
    Matrix inverse(n, n);
    InvertMatrix(B, inverse, determinant, n, flag);
    return inverse;
}

bool ScoreVarianceOfB(const Pattern& Apat, std::vector<double> b, const Matrix& u, double Tn,
                      Matrix& VarB, const std::function<void()>& stepDone) {
    const int m = static_cast<int>(b.size());
    const std::vector<double> steps = StepsOf(Apat, b);
    std::vector<ObservationTerm> plus;
    std::vector<ObservationTerm> minus;
    for (std::size_t k = 0; k < b.size(); ++k) {
        double& element = b[k];
        const double kept = element;
        element = kept + steps[k];
        plus.push_back(TermAt(Apat, b));
        element = kept - steps[k];
        minus.push_back(TermAt(Apat, b));
        element = kept;
    }
    Matrix G(m, m);
    Vector g(m);
    const int observations = static_cast<int>(Tn);
    for (int t = 1; t <= observations; ++t) {
        for (int k = 1; k <= m; ++k) {
            const std::size_t index = static_cast<std::size_t>(k - 1);
            g(k) = (plus[index].At(u, t) - minus[index].At(u, t)) * 0.5 / steps[index];
        }
        for (int k = 1; k <= m; ++k) {
            for (int l = 1; l <= m; ++l) {
                G(k, l) += g(k) * g(l) / Tn;
            }
        }
        if (stepDone) {
            stepDone();
        }
    }
    VarB.Resize(m, m);
    double determinant = 0;
    Int16 flag;
    InvertMatrix(G, VarB, determinant, m, flag);
    return flag == 0;
}

bool VarianceOfFactor(const Pattern& Apat, std::vector<double> b, const Matrix& VarB,
                      const std::vector<FactorPlace>& places, Matrix& VarBInv) {
    const int m = static_cast<int>(b.size());
    const std::vector<double> steps = StepsOf(Apat, b);
    Matrix D(static_cast<int>(places.size()), m);
    for (int k = 1; k <= m; ++k) {
        double& element = b[static_cast<std::size_t>(k - 1)];
        const double step = steps[static_cast<std::size_t>(k - 1)];
        const double kept = element;
        double determinant = 0;
        Int16 flag;
        element = kept + step;
        const Matrix BInvPlus = BInverseAt(Apat, b, determinant, flag);
        if (flag == 1) {
            return false;
        }
        element = kept - step;
        const Matrix BInvMinus = BInverseAt(Apat, b, determinant, flag);
        if (flag == 1) {
            return false;
        }
        element = kept;
        int l = 0;
        for (const FactorPlace& place : places) {
            ++l;
            D(l, k) = (BInvPlus(place.i, place.j) - BInvMinus(place.i, place.j)) * 0.5 / step;
        }
    }
    VarBInv = Sandwich(D, VarB);
    return true;
}

bool VarianceOfCoefficients(const Pattern& Apat, std::vector<double> b, const Matrix& VarB,
                            Matrix& VA, Matrix& VC) {
    const int m = static_cast<int>(b.size());
    const int n = Apat.Size();
    Matrix DA(StructuralCoefficientCount(Apat), m);
    Matrix DC(n, m);
    const std::vector<double> steps = StepsOf(Apat, b);
    for (int k = 1; k <= m; ++k) {
        double& element = b[static_cast<std::size_t>(k - 1)];
        const double step = steps[static_cast<std::size_t>(k - 1)];
        const double kept = element;
        Vector plusA;
        Vector plusC;
        Vector minusA;
        Vector minusC;
        element = kept + step;
        if (!StructuralCoefficients(Apat, BuildB(Apat, b), plusA, plusC)) {
            return false;
        }
        element = kept - step;
        if (!StructuralCoefficients(Apat, BuildB(Apat, b), minusA, minusC)) {
            return false;
        }
        element = kept;
        for (int r = 1; r <= DA.Rows(); ++r) {
            DA(r, k) = (plusA(r) - minusA(r)) * 0.5 / step;
        }
        for (int r = 1; r <= n; ++r) {
            DC(r, k) = (plusC(r) - minusC(r)) * 0.5 / step;
        }
    }
    VA = Sandwich(DA, VarB);
    VC = Sandwich(DC, VarB);
    return true;
}

} // namespace lorvane
