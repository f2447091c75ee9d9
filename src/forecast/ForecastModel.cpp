#include "forecast/ForecastModel.h"

namespace lorvane {

int ForecastModel::Coefficients() const {
    return p * Z.sum() + n() * d();
}

Eigen::MatrixXd ForecastModel::Lag(int k) const {
    return A.middleCols((k - 1) * n(), n());
}

} // namespace lorvane
