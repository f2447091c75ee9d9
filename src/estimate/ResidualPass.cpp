#include "estimate/ResidualPass.h"

#include "estimate/EstimationView.h"
#include "estimate/RegressionFiles.h"
#include "frame/Module.h"

namespace lorvane {

void ResidualPass(EstimationView& view, double T, const Vector& ybar, const std::string& method,
                  Estimates& estimates, Matrix* cross) {
    RegressionReader reader(view.module, ybar.Size(), estimates.b.Size());
    const RegressionLayout& layout = reader.Layout();
    const int k = layout.k;
    const int K = layout.Total();
    const int n = static_cast<int>(T);
    const Vector& b = estimates.b;
    estimates.TSS.Resize(k);
    estimates.RSS.Resize(k);
    estimates.Sigma.Resize(k, k);
    if (cross != nullptr) {
        cross->Resize(K, K);
    }

    TextOutput residuals(view.module.DataFile("U.TMP"), TextOutput::Mode::Output);
    residuals.WriteRecord(CommaRecord().Whole(k));
    for (int i = 1; i <= k; ++i) {
        residuals.WriteRecord(CommaRecord().Text(method + " residuals of " + layout.Variable(i)));
    }

    Vector y(k);
    Vector x(K);
    for (int t = 1; t <= n; ++t) {
        reader.Next(y, x);
        int q = 0;
        for (int i = 1; i <= k; ++i) {
            const double deviation = y(i) - ybar(i);
            estimates.TSS(i) += deviation * deviation;
            for (int c = 1; c <= layout.Count(i); ++c) {
                ++q;
                y(i) -= x(q) * b(q);
            }
            estimates.RSS(i) += y(i) * y(i);
            residuals.WriteRecord(CommaRecord().Number(y(i)));
        }
        for (int i = 1; i <= k; ++i) {
            for (int j = 1; j <= k; ++j) {
                estimates.Sigma(i, j) += y(i) * y(j) / T;
            }
        }
        if (cross != nullptr) {
            for (int a = 1; a <= K; ++a) {
                AddMoments(cross->Row(a, a, K - a + 1), x(a), x.Part(a, K - a + 1), T);
            }
        }
        view.Pause();
    }
    residuals.Close();
    if (cross != nullptr) {
        for (int a = 1; a <= K; ++a) {
            for (int c = 1; c < a; ++c) {
                (*cross)(a, c) = (*cross)(c, a);
            }
        }
    }
}

} // namespace lorvane
