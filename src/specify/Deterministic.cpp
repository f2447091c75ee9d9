#include "specify/Deterministic.h"

#include "frame/Module.h"
#include "frame/NumberText.h"

namespace lorvane {

namespace {

int SeasonalCount(const Module& module) {
    if (module.Seasonal != 1) {
        return 0;
    }
    const int seasons = module.store().PeriodsPerYear;
    return module.Intercept == 1 ? seasons - 1 : seasons;
}

bool Detrended(const Module& module) {
    return module.Trend == 1;
}

// The season of observation t: FirstPeriod at t = 1, back to 1 after PeriodsPerYear.
int SeasonOf(const DataStore& store, int t) {
    const int seasons = store.PeriodsPerYear;
    return (store.FirstPeriod - 1 + t - 1) % seasons + 1;
}

} // namespace

int ChebishevMinimum(const Module& module) {
    return Detrended(module) ? 1 : 0;
}

int ChebishevCount(const Module& module) {
    return module.ChebishevOn() == 1 ? std::max(0, module.q - ChebishevMinimum(module)) : 0;
}

std::vector<std::string> DeterministicNames(const Module& module) {
    const DataStore& store = module.store();
    std::vector<std::string> names;
    if (module.Intercept == 1) {
        names.push_back("1");
    }
    if (module.Trend == 1) {
        const std::string label = store.ObsLabelOf(1);
        names.push_back(Val(label) != 1 ? "t (" + label + "=1)" : "t");
    }
    for (int s = 1; s <= SeasonalCount(module); ++s) {
        names.push_back("Seasonal dummy" + NumberToText(s));
    }
    const int minimum = ChebishevMinimum(module);
    for (int k = minimum + 1; k <= minimum + ChebishevCount(module); ++k) {
        names.push_back((Detrended(module) ? "Detr.Cheb.Pol(" : "Cheb.Pol(") +
                        Trim(NumberToText(k)) + ")");
    }
    return names;
}

void BuildDeterministic(Module& module, int p) {
    DataStore& store = module.store();
    if (store.MissingCode == 0) {
        store.MissingCode = DefaultMissingCode;
    }
    const std::vector<std::string> names = DeterministicNames(module);
    const int m = static_cast<int>(names.size());
    const int rows = store.ObsCount;
    store.DetermNames.Assign(names);
    store.DetermData.Clear();
    if (m == 0) {
        return;
    }
    Int16 rowCount = rows;
    Int16 columnCount = m;

    const int seasonal = SeasonalCount(module);
    const int minimum = ChebishevMinimum(module);
    const int first = module.SampleFirst;
    const int last = module.SampleLast;
    const int n = last - first + 1 - p;
    for (int t = 1; t <= rows; ++t) {
        int column = 0;
        auto put = [&](double value) {
            store.DetermData.Store(1, rowCount, columnCount, t, ++column, value);
        };
        if (module.Intercept == 1) {
            put(1.0);
        }
        if (module.Trend == 1) {
            put(t);
        }
        for (int s = 1; s <= seasonal; ++s) {
            put(SeasonOf(store, t) == s ? 1.0 : 0.0);
        }
        for (int k = minimum + 1; k <= minimum + ChebishevCount(module); ++k) {
            if (t < first + p || t > last) {
                put(store.MissingCode);
            } else if (Detrended(module)) {
                put(module.chebishev().DetrendedChebishev(t - first - p + 1, k, n, module.q));
            } else {
                put(CHEBPOL::RegularChebishev(t - first - p + 1, k, n));
            }
        }
    }
}

std::string VarModelText(const Module& module) {
    const DataStore& store = module.store();
    std::string text = "Vector time series: z(t), with components:\r\n";
    for (int i = 1; i <= store.SelectedCount(); ++i) {
        text += "z(t," + NumberToText(i) + ") = " + store.SelectedName(i) + "\r\n";
    }
    text += "\r\nVAR(p) model:\r\nz(t) = A(1)z(t-1) + ... +A(p)z(t-p) + B.d(t) + u(t),\r\n"
            "where d(t) is a vector of deterministic variables:\r\nd(t)=";
    const std::vector<std::string> names = DeterministicNames(module);
    for (std::size_t c = 0; c < names.size(); ++c) {
        text += (c == 0 ? "" : ", ") + names[c];
    }
    if (module.ChebishevOn() == 1 && !module.ChebishevText.empty()) {
        text += "\r\n" + module.ChebishevText;
    }
    return text;
}

} // namespace lorvane
