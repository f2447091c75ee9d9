// OLS, one SUR round and the FIML variance of L for a VAR(8) in six variables over T = 1000
// observations, with zeros that leave 26 of the 36 variable pairs in the lag matrices.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <filesystem>
#include <memory>
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
#include "platform/Headless.h"

namespace {

using namespace lorvane;

constexpr int Variables = 6;
constexpr int Order = 8;
constexpr int Observations = 1000;

// A stable VAR(1) in six variables driven by a fixed congruential sequence: each variable
// keeps half of itself and a fifth of its neighbour.
std::string SimulatedData() {
    std::uint64_t state = 7;
    auto shock = [&state] {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<double>(state >> 11) / 9007199254740992.0 - 0.5;
    };
    std::string csv = "v1,v2,v3,v4,v5,v6\n";
    std::vector<double> y(Variables, 0.0);
    for (int t = 0; t < Observations + Order + 50; ++t) {
        std::vector<double> next(Variables);
        for (int i = 0; i < Variables; ++i) {
            next[i] = 0.01 + 0.5 * y[i] + 0.2 * y[(i + 1) % Variables] + shock();
        }
        y = next;
        if (t < 50) {
            continue; // burn-in
        }
        for (int i = 0; i < Variables; ++i) {
            csv += (i == 0 ? "" : ",") + ShortestText(y[i]);
        }
        csv += "\n";
    }
    return csv;
}

// A module on the headless platform in a temporary folder, at the estimation screen of the
// simulated VAR, with OLS done once so that L and the residuals exist.
class Estimation {
public:
    Estimation()
        : module_(Platform{dialogs_, events_, clock_, random_, processes_, screens_, nullptr}) {
        folder_ = std::filesystem::temp_directory_path() /
                  ("lorvane-bench-" + std::to_string(clock_.secondsSinceMidnight()));
        std::filesystem::create_directories(folder_);
        module_.StartFolder = module_.WorkFolder = module_.DataFolder = folder_;
        WriteDataFiles(ParseCsv(SimulatedData(), {}), folder_);
        module_.store().LoadSelected(module_.DataFile("INPUT1.RAN"), module_.DataFile("INPUT2.RAN"),
                                     {1, 2, 3, 4, 5, 6}, events_);
        module_.SampleFirst = 1;
        module_.SampleLast = Observations + Order;
        module_.p = Order;
        module_.Intercept = 1;
        // Variable j enters equation i unless it lies more than one place above the diagonal.
        TextOutput zeros(module_.DataFile("VARZERO.TMP"), TextOutput::Mode::Output);
        for (int i = 1; i <= Variables; ++i) {
            for (int j = 1; j <= Variables; ++j) {
                zeros.PrintLine(j > i + 1 ? "0" : "1");
            }
        }
        zeros.Close();
        module_.Run([this] { module_.GoToScreen("VARSUR"); });
        module_.Click("VARSUR", "Command3");
        if (Results().Caption.find("OLS estimation results:") == std::string::npos) {
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

private:
    ScriptedDialogs dialogs_;
    HeadlessEventPump events_;
    SystemClock clock_;
    ClassicRandom random_;
    HeadlessProcesses processes_;
    HeadlessScreens screens_;
    Module module_;
    std::filesystem::path folder_;
};

Estimation& Fixture() {
    static Estimation estimation;
    return estimation;
}

void BM_OlsEstimation(benchmark::State& state) {
    Estimation& fixture = Fixture();
    EstimationView view(fixture.module(), fixture.Status(), fixture.Results());
    for (auto _ : state) {
        Estimates estimates;
        const Int16 flag = EstimateOLS(view, fixture.K(), Observations, estimates);
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
    Estimation& fixture = Fixture();
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

// The variance of L from the scores: 2 x 21 decimal inversions of Sigma per observation.
void BM_FimlVariance(benchmark::State& state) {
    Estimation& fixture = Fixture();
    EstimationView view(fixture.module(), fixture.Status(), fixture.Results());
    const Matrix L = ReadLFile(fixture.module());
    const Matrix u = ReadResiduals(fixture.module(), Observations);
    for (auto _ : state) {
        Matrix VL;
        if (ComputeVarianceOfL(view, L, u, Observations, VL) != VarianceOfL::Done) {
            state.SkipWithError("the variance of L failed");
        }
        benchmark::DoNotOptimize(VL);
    }
}

BENCHMARK(BM_OlsEstimation)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_SurRound)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_FimlVariance)->Unit(benchmark::kMillisecond)->MinTime(2.0);

} // namespace
