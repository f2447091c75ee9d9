#include "structural/StructuralVariance.h"

#include <cmath>

#include "estimate/FimlVariance.h"
#include "estimate/WaldFileWriter.h"
#include "frame/NumberText.h"
#include "numeric/DataUnits.h"
#include "numeric/MatrixProducts.h"
#include "numeric/Matsubs.h"
#include "structural/StructuralModel.h"

namespace lorvane {

namespace {

// The steps for series whose errors are of the size of growth rates. An element of row i of L
// has the units of variable i, and its step moves with them (UnitPowers).
constexpr double FirstStep = 0.00001;
constexpr int MostStepReductions = 5;
constexpr double ZeroStep = 0.001;

// The inverse of LL'; false when the inversion reports singularity.
bool InverseVarianceOfU(const Matrix& L, Matrix& inverse) {
    const int k = L.Rows();
    double determinant = 0;
    Int16 flag;
    InvertMatrix(OuterProduct(L), inverse, determinant, k, flag);
    return flag != 1;
}

// D W D' by elements.
Matrix Sandwich(const Matrix& D, const Matrix& W) {
    const int r = D.Rows();
    const int c = D.Cols();
    Matrix DW(r, c);
    for (int a = 1; a <= r; ++a) {
        for (int b = 1; b <= c; ++b) {
            double sum = 0;
            for (int e = 1; e <= c; ++e) {
                sum += D(a, e) * W(e, b);
            }
            DW(a, b) = sum;
        }
    }
    Matrix result(r, r);
    for (int a = 1; a <= r; ++a) {
        for (int b = 1; b <= r; ++b) {
            double sum = 0;
            for (int e = 1; e <= c; ++e) {
                sum += DW(a, e) * D(b, e);
            }
            result(a, b) = sum;
        }
    }
    return result;
}

Vector TValues(const Vector& coefficients, const Matrix& variance, double T) {
    Vector t(coefficients.Size());
    for (int r = 1; r <= coefficients.Size(); ++r) {
        t(r) = CheckedDivide(CheckedSqrt(T) * coefficients(r), CheckedSqrt(variance(r, r)));
    }
    return t;
}

} // namespace

StructuralSystem::StructuralSystem(const Pattern& Apat) : Apat_(Apat) {
    const int k = Apat.Size();
    TextMatrix Bname;
    Matrix Bnum;
    BuildPattern(Apat, parameterCount_, Bname, Bnum);
    TextMatrix Moment;
    Int16 equations;
    Int16 zeros;
    BuildMomentMatrix(Moment, Bname, equations, zeros, k);
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= i; ++j) {
            if (Moment(i, j) != "0") {
                lhs_.push_back(Moment(i, j));
                equations_.emplace_back(i, j);
            } else {
                zeros_.emplace_back(i, j);
            }
        }
    }
    compiled_ = std::make_unique<CompiledSystem>(parameterCount_, lhs_);
}

bool StructuralSystem::RoundedMoments(const Matrix& L, Matrix& rounded) const {
    if (!InverseVarianceOfU(L, rounded)) {
        return false;
    }
    // Single precision in the units of the data: element (i, j) is rounded with its power of
    // ten of units taken out, so that a change of units does not move where the rounding falls
    // and the derivatives through these solves follow the units exactly.
    const std::vector<int> units = UnitPowers(L);
    for (int i = 1; i <= rounded.Rows(); ++i) {
        for (int j = 1; j <= rounded.Cols(); ++j) {
            const double unit = PowerOfTen(-units[static_cast<std::size_t>(i - 1)] -
                                           units[static_cast<std::size_t>(j - 1)]);
            rounded(i, j) = ToSingle(rounded(i, j) / unit) * unit;
        }
    }
    return true;
}

bool StructuralSystem::RightHandSides(const Matrix& L, std::vector<double>& rhs) const {
    Matrix rounded;
    if (!RoundedMoments(L, rounded)) {
        return false;
    }
    rhs.clear();
    for (const auto& [i, j] : equations_) {
        rhs.push_back(rounded(i, j));
    }
    return true;
}

bool StructuralSystem::Coefficients(const std::vector<double>& b, Vector& CoefA, Vector& CoefC,
                                    Matrix* B) const {
    const Matrix built = BuildB(Apat_, b);
    if (B != nullptr) {
        *B = built;
    }
    return StructuralCoefficients(Apat_, built, CoefA, CoefC);
}

void StructuralSystem::SolveAtL(const Matrix& L, Vector& CoefA, Vector& CoefC, Int16& ok, Matrix* B,
                                bool* singular) const {
    ok = 0;
    std::vector<double> rhs;
    const bool inverted = RightHandSides(L, rhs);
    if (singular != nullptr) {
        *singular = !inverted;
    }
    if (!inverted) {
        return;
    }
    std::vector<std::string> SolverLhs = lhs_;
    std::vector<std::string> SolverRhs;
    for (const double value : rhs) {
        SolverRhs.push_back(Trim(NumberToText(value)));
    }
    if (SolveSystem(SolverDisplay::Silent, parameterCount_, SolverLhs, SolverRhs) != 1) {
        return;
    }
    std::vector<double> b;
    for (const std::string& value : SolverRhs) {
        b.push_back(Val(value));
    }
    ok = Coefficients(b, CoefA, CoefC, B) ? 1 : 0;
}

bool StructuralSystem::SolutionAtLFast(const Matrix& L, std::vector<double>& b) const {
    std::vector<double> rhs;
    return RightHandSides(L, rhs) && compiled_->Solve(rhs, b);
}

void StructuralSystem::SolveAtLFast(const Matrix& L, Vector& CoefA, Vector& CoefC, Int16& ok,
                                    Matrix* B) const {
    std::vector<double> b;
    ok = SolutionAtLFast(L, b) && Coefficients(b, CoefA, CoefC, B) ? 1 : 0;
}

Vector StructuralSystem::MomentZeros(const Matrix& L, Int16& ok) const {
    Matrix inverse;
    ok = InverseVarianceOfU(L, inverse) ? 1 : 0;
    Vector m(StarCount());
    if (ok == 1) {
        int r = 0;
        for (const auto& [i, j] : zeros_) {
            m(++r) = inverse(i, j);
        }
    }
    return m;
}

void ReadVarianceOfL(const Workspace& workspace, int k, Matrix& W, double& T, Int16& ok) {
    const ParameterSet parameters = ReadParameterSet(workspace, T, "BWALDT.TMP");
    const int n = static_cast<int>(parameters.values.size());
    const int M = FreeElementCount(k);
    // Without a FIML estimate the file ends with coefficients, not with the elements of L.
    ok = n >= M ? 1 : 0;
    for (int q = n - M; ok == 1 && q < n; ++q) {
        ok = UpperCase(parameters.rows[static_cast<std::size_t>(q)]).starts_with("L(") ? 1 : 0;
    }
    if (ok == 0) {
        return;
    }
    W.Resize(M, M);
    for (int r = 1; r <= M; ++r) {
        for (int c = 1; c <= M; ++c) {
            W(r, c) = parameters.variance(n - M + r, n - M + c);
        }
    }
}

StructuralVarianceResult ComputeStructuralVariance(const SolveAt& solve, Matrix L, const Matrix& W,
                                                   double T, StructuralVariance& result,
                                                   const std::function<void(int)>& progress) {
    const int k = L.Rows();
    const int M = FreeElementCount(k);
    Int16 ok;
    solve(L, result.CoefA, result.CoefC, ok, nullptr);
    if (ok == 0) {
        return StructuralVarianceResult::SolveFailed;
    }
    Matrix DA(result.CoefA.Size(), M);
    Matrix DC(result.CoefC.Size(), M);
    const std::vector<int> units = UnitPowers(L);
    int e = 0;
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= i; ++j) {
            ++e;
            if (progress) {
                progress(CInt(100.0 * e / M));
            }
            const double v = L(i, j);
            double h = FirstStep * PowerOfTen(units[static_cast<std::size_t>(i - 1)]);
            int retries = 0;
            bool singular = false;
            Vector plusA;
            Vector plusC;
            Vector minusA;
            Vector minusC;
            // Both sides of an element use the same step: a failing solve on either side makes
            // the step smaller and starts the element over.
            for (;;) {
                L(i, j) = v + h;
                solve(L, plusA, plusC, ok, &singular);
                if (ok == 1) {
                    L(i, j) = v - h;
                    solve(L, minusA, minusC, ok, &singular);
                }
                if (ok == 1) {
                    break;
                }
                h /= 10;
                if (++retries > MostStepReductions) {
                    return singular ? StructuralVarianceResult::Singular
                                    : StructuralVarianceResult::SolveFailed;
                }
            }
            L(i, j) = v;
            for (int r = 1; r <= DA.Rows(); ++r) {
                DA(r, e) = (plusA(r) - minusA(r)) * 0.5 / h;
            }
            for (int r = 1; r <= DC.Rows(); ++r) {
                DC(r, e) = (plusC(r) - minusC(r)) * 0.5 / h;
            }
        }
    }
    result.VA = Sandwich(DA, W);
    result.VC = Sandwich(DC, W);
    result.tA = TValues(result.CoefA, result.VA, T);
    result.tC = TValues(result.CoefC, result.VC, T);
    return StructuralVarianceResult::Done;
}

double TestMomentZeros(const StructuralSystem& system, Matrix L, const Matrix& W, double T,
                       Int16& ok) {
    const int k = L.Rows();
    const int zeros = system.StarCount();
    const Vector m = system.MomentZeros(L, ok);
    if (ok == 0) {
        return 0;
    }
    Matrix G(zeros, FreeElementCount(k));
    const std::vector<int> units = UnitPowers(L);
    int c = 0;
    for (int i = 1; i <= k; ++i) {
        for (int j = 1; j <= i; ++j) {
            ++c;
            const double h = ZeroStep * PowerOfTen(units[static_cast<std::size_t>(i - 1)]);
            const double v = L(i, j);
            L(i, j) = v + h;
            const Vector plus = system.MomentZeros(L, ok);
            if (ok == 0) {
                return 0;
            }
            L(i, j) = v - h;
            const Vector minus = system.MomentZeros(L, ok);
            if (ok == 0) {
                return 0;
            }
            L(i, j) = v;
            for (int r = 1; r <= zeros; ++r) {
                G(r, c) = (plus(r) - minus(r)) / (2 * h);
            }
        }
    }
    Matrix Qinverse;
    double determinant = 0;
    Int16 flag;
    InvertMatrix(Sandwich(G, W), Qinverse, determinant, zeros, flag);
    if (flag == 1) {
        ok = 0;
        return 0;
    }
    double quadratic = 0;
    for (int r = 1; r <= zeros; ++r) {
        for (int s = 1; s <= zeros; ++s) {
            quadratic += m(r) * Qinverse(r, s) * m(s);
        }
    }
    ok = 1;
    return T * quadratic;
}

} // namespace lorvane
