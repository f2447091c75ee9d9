#include "checks/CheckModel.h"

#include <map>
#include <string>

#include "estimate/FimlVariance.h"
#include "estimate/RegressionFiles.h"
#include "frame/TextFile.h"
#include "frame/Workspace.h"

namespace lorvane {

namespace {

// The coefficients of VARB.TMP: its count, then the values.
std::vector<double> ReadCoefficients(const Workspace& workspace) {
    TextInput input(workspace.DataFile("VARB.TMP"));
    const int K = input.ReadCount(1);
    input.ExpectFields(K);
    std::vector<double> b(static_cast<std::size_t>(K));
    for (double& value : b) {
        value = input.ReadNumber();
    }
    return b;
}

} // namespace

CheckModel ReadCheckModel(const Workspace& workspace, int k, int p, int T) {
    CheckModel model;
    model.k = k;
    model.p = p;
    model.FreeLags = p * ReadZeroOnePattern(workspace.DataFile("VARZERO.TMP"), k).Ones();
    const std::vector<double> b = ReadCoefficients(workspace);
    const int K = static_cast<int>(b.size());

    RegressionReader reader(workspace, k, K);
    const RegressionLayout& layout = reader.Layout();

    // The lag matrices from the coefficients by the regressors' names; the columns of the
    // system's regressors, each name once.
    model.A = Eigen::MatrixXd::Zero(k, k * p);
    std::map<std::string, int> lagPlace;
    for (int lag = 1; lag <= p; ++lag) {
        for (int j = 1; j <= k; ++j) {
            lagPlace[LagName(lag, layout.Variable(j))] = (lag - 1) * k + (j - 1);
        }
    }
    std::map<std::string, int> column;
    std::vector<int> columnOf; // for each coefficient of the system, its regressor's column
    for (int i = 1; i <= k; ++i) {
        for (int c = 1; c <= layout.Count(i); ++c) {
            const std::string& name = layout.Regressor(i, c);
            const auto [place, added] = column.try_emplace(name, static_cast<int>(column.size()));
            columnOf.push_back(place->second);
            if (const auto lag = lagPlace.find(name); lag != lagPlace.end()) {
                model.A(i - 1, lag->second) = b[static_cast<std::size_t>(layout.Offset(i) + c - 1)];
            }
        }
    }

    model.X.resize(T, static_cast<Eigen::Index>(column.size()));
    Vector y(k);
    Vector x(K);
    for (int t = 0; t < T; ++t) {
        reader.Next(y, x);
        for (int q = 1; q <= K; ++q) {
            model.X(t, columnOf[static_cast<std::size_t>(q - 1)]) = x(q);
        }
    }

    const Matrix u = ReadResiduals(workspace, T, k);
    model.U.resize(T, k);
    for (int t = 1; t <= T; ++t) {
        for (int i = 1; i <= k; ++i) {
            model.U(t - 1, i - 1) = u(t, i);
        }
    }
    return model;
}

} // namespace lorvane
