#include "estimate/RegressionFiles.h"

#include <numeric>

#include "frame/Module.h"
#include "frame/NumberText.h"
#include "numeric/Pattern.h"
#include "platform/EventPump.h"
#include "specify/Deterministic.h"

namespace lorvane {

std::string LagName(int lag, const std::string& variable) {
    return "LAG" + Trim(NumberToText(lag)) + "[" + Trim(variable) + "]";
}

void BuildRegressionFiles(Module& module, Int16& k, Int16& K, Int16& Zeros, double& T) {
    const DataStore& store = module.store();
    const int first = module.SampleFirst;
    const int last = module.SampleLast;
    const int p = module.p;
    T = last - first + 1 - p;

    k = store.SelectedCount();
    std::vector<std::string> names;
    for (int i = 1; i <= k; ++i) {
        names.push_back(store.SelectedName(i));
    }

    BuildDeterministic(module, p);
    const int m = store.DetermCount();

    // The zero pattern: Z(i, j) = 1 lets variable j enter equation i at every lag.
    const Pattern Z = ReadZeroOnePattern(module.DataFile("VARZERO.TMP"), k);
    auto enters = [&Z](int i, int j) { return Z(i, j) == 1; };

    TextOutput ys(module.DataFile("YSURE.TMP"), TextOutput::Mode::Output);
    TextOutput xs(module.DataFile("XSURE.TMP"), TextOutput::Mode::Output);
    ys.WriteRecord(CommaRecord().Whole(k));
    for (const std::string& name : names) {
        ys.WriteRecord(CommaRecord().Text(name));
    }

    Zeros = 0;
    for (int i = 1; i <= k; ++i) {
        Int16 count = m;
        for (int j = 1; j <= k; ++j) {
            if (enters(i, j)) {
                count += p;
            } else {
                ++Zeros;
            }
        }
        xs.WriteRecord(CommaRecord().Whole(count));
    }

    K = 0;
    for (int i = 1; i <= k; ++i) {
        for (int lag = 1; lag <= p; ++lag) {
            for (int j = 1; j <= k; ++j) {
                if (enters(i, j)) {
                    xs.WriteRecord(
                        CommaRecord().Text(LagName(lag, names[static_cast<std::size_t>(j - 1)])));
                    ++K;
                }
            }
        }
        for (int d = 1; d <= m; ++d) {
            xs.WriteRecord(CommaRecord().Text(store.DetermName(d)));
            ++K;
        }
    }

    for (int t = first + p; t <= last; ++t) {
        for (int i = 1; i <= k; ++i) {
            ys.WriteRecord(CommaRecord().Number(store.SelectedValue(t, i)));
        }
        for (int i = 1; i <= k; ++i) {
            for (int lag = 1; lag <= p; ++lag) {
                for (int j = 1; j <= k; ++j) {
                    if (enters(i, j)) {
                        xs.WriteRecord(CommaRecord().Number(store.SelectedValue(t - lag, j)));
                    }
                }
            }
            for (int d = 1; d <= m; ++d) {
                xs.WriteRecord(CommaRecord().Number(store.DetermValue(t, d)));
            }
        }
        module.platform().events.yield();
    }
    ys.Close();
    xs.Close();
}

int RegressionLayout::Total() const {
    return std::accumulate(counts.begin(), counts.end(), 0);
}

int RegressionLayout::Offset(int i) const {
    return std::accumulate(counts.begin(), counts.begin() + (i - 1), 0);
}

RegressionReader::RegressionReader(const Workspace& workspace, int k, int K)
    : ys_(workspace.DataFile("YSURE.TMP")), xs_(workspace.DataFile("XSURE.TMP")) {
    layout_.k = ys_.ReadWhole();
    if (layout_.k != k) {
        Raise(InternalError);
    }
    for (int i = 1; i <= k; ++i) {
        layout_.variables.push_back(ys_.ReadField());
    }
    long long total = 0;
    for (int i = 1; i <= k; ++i) {
        const int count = xs_.ReadWhole();
        if (count < 0 || count > K) {
            Raise(InternalError);
        }
        layout_.counts.push_back(count);
        total += count;
    }
    if (total != K) {
        Raise(InternalError);
    }
    for (const int count : layout_.counts) {
        std::vector<std::string>& names = layout_.regressors.emplace_back();
        for (int c = 1; c <= count; ++c) {
            names.push_back(xs_.ReadField());
        }
    }
}

void RegressionReader::Next(Vector& y, Vector& x) {
    for (int i = 1; i <= layout_.k; ++i) {
        y(i) = ys_.ReadNumber();
    }
    const int total = layout_.Total();
    for (int q = 1; q <= total; ++q) {
        x(q) = xs_.ReadNumber();
    }
}

} // namespace lorvane
