#include "estimate/OlsEstimation.h"

#include <vector>

#include "estimate/EstimationView.h"
#include "estimate/RegressionFiles.h"
#include "estimate/ResidualPass.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "numeric/Matsubs.h"

namespace lorvane {

Int16 EstimateOLS(EstimationView& view, Int16 K, double T, Estimates& estimates) {
    view.Begin();
    view.Working();
    RegressionReader reader(view.module, view.module.store().SelectedCount(), K);
    const RegressionLayout layout = reader.Layout();
    const int k = layout.k;
    const int n = static_cast<int>(T);

    // First pass: means and the moments of each equation, divided by T at every step.
    Vector ybar(k);
    std::vector<Vector> XY;
    std::vector<Matrix> XX;
    for (int i = 1; i <= k; ++i) {
        XY.emplace_back(layout.Count(i));
        XX.emplace_back(layout.Count(i), layout.Count(i));
    }
    Vector y(k);
    Vector x(K);
    for (int t = 1; t <= n; ++t) {
        reader.Next(y, x);
        for (int i = 1; i <= k; ++i) {
            ybar(i) += y(i) / T;
            const int offset = layout.Offset(i);
            Vector& xy = XY[static_cast<std::size_t>(i - 1)];
            Matrix& xx = XX[static_cast<std::size_t>(i - 1)];
            const int count = layout.Count(i);
            for (int r = 1; r <= count; ++r) {
                xy(r) += x(offset + r) * y(i) / T;
                AddMoments(xx.Row(r, r, count - r + 1), x(offset + r),
                           x.Part(offset + r, count - r + 1), T);
            }
        }
        view.Pause();
    }

    // The inverse moment matrices and the coefficients.
    std::vector<Matrix> inverses(static_cast<std::size_t>(k));
    estimates.b.Resize(K);
    for (int i = 1; i <= k; ++i) {
        Matrix& xx = XX[static_cast<std::size_t>(i - 1)];
        const int size = layout.Count(i);
        for (int r = 1; r <= size; ++r) {
            for (int c = 1; c < r; ++c) {
                xx(r, c) = xx(c, r);
            }
        }
        view.Show("Inverting X'X matrix for equation" + NumberToText(i) +
                  ". Working time =" + view.Seconds());
        Matrix& inverse = inverses[static_cast<std::size_t>(i - 1)];
        inverse.Resize(size, size);
        double determinant = 0;
        Int16 flag;
        InvertMatrix(xx, inverse, determinant, size, flag);
        if (flag == 1) {
            view.AppendLine("Singular matrix in procedure OLS (Equation" + NumberToText(i) + ")");
            return 1;
        }
        const int offset = layout.Offset(i);
        const Vector& xy = XY[static_cast<std::size_t>(i - 1)];
        for (int r = 1; r <= size; ++r) {
            double sum = 0;
            for (int c = 1; c <= size; ++c) {
                sum += inverse(r, c) * xy(c);
            }
            estimates.b(offset + r) = sum;
        }
    }

    // Second pass: residuals, sums of squares, Sigma and the cross moments.
    view.Working();
    Matrix cross;
    ResidualPass(view, T, ybar, "OLS", estimates, &cross);

    // V, block by block.
    view.Working();
    estimates.V.Resize(K, K);
    for (int i = 1; i <= k; ++i) {
        const Matrix& left = inverses[static_cast<std::size_t>(i - 1)];
        const int rows = layout.Count(i);
        const int rowOffset = layout.Offset(i);
        for (int j = 1; j <= k; ++j) {
            const Matrix& right = inverses[static_cast<std::size_t>(j - 1)];
            const int cols = layout.Count(j);
            const int colOffset = layout.Offset(j);
            // Inv(i) C(i, j), then times Inv(j).
            Matrix product(rows, cols);
            for (int r = 1; r <= rows; ++r) {
                for (int c = 1; c <= cols; ++c) {
                    double sum = 0;
                    for (int s = 1; s <= rows; ++s) {
                        sum += left(r, s) * cross(rowOffset + s, colOffset + c);
                    }
                    product(r, c) = sum;
                }
            }
            const double sigma = estimates.Sigma(i, j);
            for (int r = 1; r <= rows; ++r) {
                for (int c = 1; c <= cols; ++c) {
                    double sum = 0;
                    for (int s = 1; s <= cols; ++s) {
                        sum += product(r, s) * right(s, c);
                    }
                    estimates.V(rowOffset + r, colOffset + c) = sigma * sum;
                }
            }
        }
        view.Pause();
    }
    return 0;
}

} // namespace lorvane
