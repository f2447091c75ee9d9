// OLS, one SUR round and the FIML variance of L at three sizes of model, each with the zeros
// that drop variable j from equation i when j lies more than one place above the diagonal:
//   small:  k = 3,  p = 2,  T = 73    (8 of 9 pairs kept)
//   medium: k = 6,  p = 8,  T = 1000  (26 of 36)
//   large:  k = 10, p = 12, T = 2000  (64 of 100)

#include <benchmark/benchmark.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "data/CsvImport.h"
#include "estimate/EstimationView.h"
#include "estimate/FimlVariance.h"
#include "estimate/LFiles.h"
#include "estimate/OlsEstimation.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/TextFile.h"
#include "platform/Dialogs.h"
#include "platform/Headless.h"

namespace {

using namespace lorvane;

struct Size {
    int Variables;
    int Order;
    int Observations;

    auto operator<=>(const Size&) const = default;
};

Size SizeOf(const benchmark::State& state) {
    return {static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
            static_cast<int>(state.range(2))};
}

// A stable VAR(1) driven by a fixed congruential sequence: each variable keeps half of itself
// and a fifth of its neighbour. Observations + p rows, so that the sample holds T observations.
std::string SimulatedData(const Size& size) {
    std::uint64_t state = 7;
    auto shock = [&state] {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<double>(state >> 11) / 9007199254740992.0 - 0.5;
    };
    std::string csv;
    for (int i = 1; i <= size.Variables; ++i) {
        csv += (i == 1 ? "v" : ",v") + std::to_string(i);
    }
    csv += "\n";
    std::vector<double> y(size.Variables, 0.0);
    for (int t = 0; t < size.Observations + size.Order + 50; ++t) {
        std::vector<double> next(size.Variables);
        for (int i = 0; i < size.Variables; ++i) {
            next[i] = 0.01 + 0.5 * y[i] + 0.2 * y[(i + 1) % size.Variables] + shock();
        }
        y = next;
        if (t < 50) {
            continue; // burn-in
        }
        for (int i = 0; i < size.Variables; ++i) {
            csv += (i == 0 ? "" : ",") + ShortestText(y[i]);
        }
        csv += "\n";
    }
    return csv;
}

// Presses the default button of every box, as a user who reads nothing would: the large
// model's reports overflow the results box, which says so each time.
class DefaultButton : public Dialogs {
public:
    std::string showMessage(const MessageBoxRequest& request) override {
        return request.buttons.front();
    }
    std::optional<std::string> showInput(const InputBoxRequest& request) override {
        return request.defaultText;
    }
};

// A module on the headless platform in a temporary folder, at the estimation screen of the
// simulated VAR, with OLS done once so that L and the residuals exist.
class Estimation {
public:
    explicit Estimation(const Size& size)
        : size_(size),
          module_(Platform{dialogs_, events_, clock_, random_, processes_, screens_, nullptr}) {
        folder_ = std::filesystem::temp_directory_path() /
                  ("lorvane-bench-" + std::to_string(clock_.secondsSinceMidnight()) + "-" +
                   std::to_string(size.Variables));
        std::filesystem::create_directories(folder_);
        module_.StartFolder = module_.WorkFolder = module_.DataFolder = folder_;
        WriteDataFiles(ParseCsv(SimulatedData(size), {}), folder_);
        std::vector<int> selected;
        for (int i = 1; i <= size.Variables; ++i) {
            selected.push_back(i);
        }
        module_.store().LoadSelected(module_.DataFile("INPUT1.RAN"), module_.DataFile("INPUT2.RAN"),
                                     selected, events_);
        module_.SampleFirst = 1;
        module_.SampleLast = size.Observations + size.Order;
        module_.p = size.Order;
        module_.Intercept = 1;
        TextOutput zeros(module_.DataFile("VARZERO.TMP"), TextOutput::Mode::Output);
        for (int i = 1; i <= size.Variables; ++i) {
            for (int j = 1; j <= size.Variables; ++j) {
                zeros.PrintLine(j > i + 1 ? "0" : "1");
            }
        }
        zeros.Close();
        module_.Run([this] { module_.GoToScreen("VARSUR"); });
        module_.Click("VARSUR", "Command3");
        if (Status().Caption != " OLS estimation results") {
            throw std::runtime_error("OLS failed on the simulated data");
        }
    }
    ~Estimation() {
        std::error_code error;
        std::filesystem::remove_all(folder_, error);
    }

    Module& module() { return module_; }
    Control& Results() { return (*module_.LoadedScreen("VARSUR"))("Text1"); }
    Control& Status() { return (*module_.LoadedScreen("VARSUR"))("Label0"); }
    Int16 K() { return CInt(Val((*module_.LoadedScreen("VARSUR"))("Text3").Caption)); }
    int T() const { return size_.Observations; }

private:
    Size size_;
    DefaultButton dialogs_;
    HeadlessEventPump events_;
    SystemClock clock_;
    ClassicRandom random_;
    HeadlessProcesses processes_;
    HeadlessScreens screens_;
    Module module_;
    std::filesystem::path folder_;
};

// One module for each size, made when a benchmark first needs it.
Estimation& Fixture(const Size& size) {
    static std::map<Size, std::unique_ptr<Estimation>> estimations;
    std::unique_ptr<Estimation>& estimation = estimations[size];
    if (!estimation) {
        estimation = std::make_unique<Estimation>(size);
    }
    return *estimation;
}

void BM_OlsEstimation(benchmark::State& state) {
    Estimation& fixture = Fixture(SizeOf(state));
    EstimationView view(fixture.module(), fixture.Status(), fixture.Results());
    for (auto _ : state) {
        Estimates estimates;
        const Int16 flag = EstimateOLS(view, fixture.K(), fixture.T(), estimates);
        benchmark::DoNotOptimize(estimates.b);
        if (flag != 0) {
            state.SkipWithError("OLS found a singular matrix");
        }
        fixture.Results().Caption.clear();
    }
    state.counters["K"] = static_cast<double>(fixture.K());
}

// The whole SUR button: the GLS round with its K by K decimal inversion, the report and the
// files.
void BM_SurRound(benchmark::State& state) {
    Estimation& fixture = Fixture(SizeOf(state));
    for (auto _ : state) {
        fixture.module().Click("VARSUR", "Command4");
        state.PauseTiming();
        if (fixture.Status().Caption != " SUR estimation results:") {
            state.SkipWithError("the SUR round failed");
        }
        fixture.Results().Caption.clear();
        state.ResumeTiming();
    }
}

// The variance of L from the scores: 2 NL decimal inversions of the k by k Sigma per
// observation.
void BM_FimlVariance(benchmark::State& state) {
    Estimation& fixture = Fixture(SizeOf(state));
    EstimationView view(fixture.module(), fixture.Status(), fixture.Results());
    const Matrix L = ReadLFile(fixture.module());
    const Matrix u = ReadResiduals(fixture.module(), fixture.T(), L.Rows());
    for (auto _ : state) {
        Matrix VL;
        if (ComputeVarianceOfL(view, L, u, fixture.T(), VL) != VarianceOfL::Done) {
            state.SkipWithError("the variance of L failed");
        }
        benchmark::DoNotOptimize(VL);
    }
}

void ThreeSizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgNames({"k", "p", "T"})
        ->Args({3, 2, 73})
        ->Args({6, 8, 1000})
        ->Args({10, 12, 2000})
        ->Unit(benchmark::kMillisecond)
        ->MinTime(1.0);
}

BENCHMARK(BM_OlsEstimation)->Apply(ThreeSizes);
BENCHMARK(BM_SurRound)->Apply(ThreeSizes);
BENCHMARK(BM_FimlVariance)->Apply(ThreeSizes);

} // namespace
