#include "numeric/MatrixProducts.h"

namespace lorvane {

Matrix CrossProduct(const Matrix& B) {
    const int n = B.Rows();
    Matrix M(n, n);
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            double sum = 0;
            for (int k = 1; k <= n; ++k) {
                sum += B(k, i) * B(k, j);
            }
            M(i, j) = sum;
        }
    }
    return M;
}

Matrix OuterProduct(const Matrix& L) {
    const int n = L.Rows();
    Matrix S(n, n);
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            double sum = 0;
            for (int k = 1; k <= n; ++k) {
                sum += L(i, k) * L(j, k);
            }
            S(i, j) = sum;
        }
    }
    return S;
}

} // namespace lorvane
