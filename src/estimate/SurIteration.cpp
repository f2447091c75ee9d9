#include "estimate/SurIteration.h"

#include "estimate/EstimationView.h"
#include "estimate/RegressionFiles.h"
#include "estimate/ResidualPass.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "numeric/Matsubs.h"

namespace lorvane {

Int16 EstimateSUR(EstimationView& view, const Matrix& L, double T, Int16 K, Int16 call,
                  Estimates& estimates) {
    view.Begin();
    view.Working();
    // The files of the regression and of L are read before anything is sized by them.
    RegressionReader reader(view.module, view.module.store().SelectedCount(), K);
    const RegressionLayout layout = reader.Layout();
    if (L.Rows() != layout.k) {
        Raise(InternalError);
    }
    const int k = L.Rows();
    Matrix Li(k, k);
    double determinant = 0;
    Int16 flag;
    InvertMatrix(L, Li, determinant, k, flag);
    if (flag == 1) {
        view.AppendLine("Matrix L is singular");
        return 1;
    }

    // With ys = Li y and xs(., q) = x(e, c) Li(., e) for regressor c of equation e, the moments
    // sum over i of xs(i, q) xs(i, r) and xs(i, q) ys(i) reduce to W(e, f) x(e, c) x(f, d) and
    // x(e, c) (W y)(e), where W = Li' Li is the inverse of LL'. That saves a factor k per
    // observation.
    Matrix W(k, k);
    for (int e = 1; e <= k; ++e) {
        for (int f = e; f <= k; ++f) {
            double sum = 0;
            for (int i = 1; i <= k; ++i) {
                sum += Li(i, e) * Li(i, f);
            }
            W(e, f) = W(f, e) = sum;
        }
    }

    const int n = static_cast<int>(T);
    std::vector<int> equationOf(static_cast<std::size_t>(K) + 1);
    for (int e = 1; e <= k; ++e) {
        for (int c = 1; c <= layout.Count(e); ++c) {
            equationOf[static_cast<std::size_t>(layout.Offset(e) + c)] = e;
        }
    }

    Vector ybar(k);
    Vector XY(K);
    Matrix XX(K, K);
    Vector y(k);
    Vector x(K);
    Vector Wy(k);
    for (int t = 1; t <= n; ++t) {
        reader.Next(y, x);
        for (int e = 1; e <= k; ++e) {
            ybar(e) += y(e) / T;
            double sum = 0;
            for (int j = 1; j <= k; ++j) {
                sum += W(e, j) * y(j);
            }
            Wy(e) = sum;
        }
        for (int q = 1; q <= K; ++q) {
            const int e = equationOf[static_cast<std::size_t>(q)];
            const double xq = x(q);
            XY(q) += xq * Wy(e) / T;
            for (int r = q; r <= K; ++r) {
                XX(q, r) += W(e, equationOf[static_cast<std::size_t>(r)]) * xq * x(r) / T;
            }
        }
        view.Pause();
    }
    for (int q = 1; q <= K; ++q) {
        for (int r = 1; r < q; ++r) {
            XX(q, r) = XX(r, q);
        }
    }

    view.Show(view.Prefix() + ".Inverting matrix. Time =" + view.Seconds());
    estimates.V.Resize(K, K);
    // The system's inversion is the longest step of a round; the screen stays alive through it.
    InvertMatrix(XX, estimates.V, determinant, K, flag, nullptr, [&view] { view.Pause(); });
    view.Show(view.Prefix() + ". Inversion done. Time =" + view.Seconds());
    if (flag == 1) {
        view.AppendLine("Singular X'X matrix in procedure SUR at call" + NumberToText(call));
        return 1;
    }
    for (int q = 1; q <= K; ++q) {
        if (!(estimates.V(q, q) > 0)) {
            view.AppendLine("Nonpositive define variance matrix in procedure SUR at call" +
                            NumberToText(call));
            return 1;
        }
    }

    estimates.b.Resize(K);
    for (int q = 1; q <= K; ++q) {
        double sum = 0;
        for (int r = 1; r <= K; ++r) {
            sum += estimates.V(q, r) * XY(r);
        }
        estimates.b(q) = sum;
    }

    view.Working();
    ResidualPass(view, T, ybar, "SUR", estimates, nullptr);
    return 0;
}

} // namespace lorvane
