#pragma once

#include <deque>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "frame/Module.h"
#include "frame/ScreenTable.h"
#include "frame/TextFile.h"
#include "platform/Headless.h"
#include "platform/RecordingSurface.h"
#include "support/TestModule.h"

namespace lorvane::test {

// One response as VARIR2.TMP holds it.
struct ResponseBlock {
    std::string title;
    double M = 0;
    std::vector<double> psi;
    std::vector<double> se;
};

// The responses of a made-up VAR of two variables x and y over horizons 0..H: the response of
// x dies out from 2, that of y swings around zero; the standard errors grow with the horizon.
inline std::vector<ResponseBlock> TwoVariableResponses(int H = 10) {
    std::vector<ResponseBlock> blocks;
    const char* names[] = {"x", "y"};
    const double largest[] = {2.0, 0.5};
    for (int i = 0; i < 2; ++i) {
        for (int j = 0; j < 2; ++j) {
            ResponseBlock block;
            block.title =
                std::string("Response of ") + names[i] + " to a unit shock in " + names[j];
            block.M = largest[i];
            for (int h = 0; h <= H; ++h) {
                double value = largest[i];
                for (int step = 0; step < h; ++step) {
                    value *= i == 0 ? 0.7 - 0.2 * j : -0.6;
                }
                block.psi.push_back(j == 0 ? value : value / 2);
                block.se.push_back(largest[i] * (0.05 + 0.01 * h));
            }
            blocks.push_back(std::move(block));
        }
    }
    return blocks;
}

inline void WriteResponses(const Workspace& workspace, const std::vector<ResponseBlock>& blocks,
                           int n = 2) {
    const int H = static_cast<int>(blocks.front().psi.size()) - 1;
    TextOutput out(workspace.DataFile("VARIR2.TMP"), TextOutput::Mode::Output);
    out.WriteRecord(CommaRecord().Whole(H).Whole(n));
    for (const ResponseBlock& block : blocks) {
        out.WriteRecord(CommaRecord().Text(block.title));
        out.WriteRecord(CommaRecord().Number(block.M));
        for (int h = 0; h <= H; ++h) {
            out.WriteRecord(CommaRecord()
                                .Number(block.psi[static_cast<std::size_t>(h)])
                                .Number(block.se[static_cast<std::size_t>(h)]));
        }
    }
    out.Close();
}

// Programs that start or fail as the test says (start when nothing is said); every request is
// recorded as "PROGRAM ARGUMENTS".
class CountedProcesses : public HeadlessProcesses {
public:
    std::deque<bool> outcomes;
    std::vector<std::string> started;
    bool start(const std::string& program, const std::string& arguments,
               WindowStyle style) override {
        started.push_back(program + " " + arguments);
        HeadlessProcesses::start(program, arguments, style);
        if (outcomes.empty()) {
            return true;
        }
        const bool outcome = outcomes.front();
        outcomes.pop_front();
        return outcome;
    }
};

// A module with the module's own screens on the headless platform, with recording surfaces and
// programs that may fail to start. Folders as in TestModule.
class PlotModule {
public:
    PlotModule()
        : module_(Platform{dialogs_, events_, clock_, random_, processes_, screens_, &surfaces_}) {
        module_.StartFolder = folder_.Path() / "start";
        module_.WorkFolder = folder_.Path() / "work";
        module_.DataFolder = folder_.Path() / "data";
        std::filesystem::create_directories(module_.StartFolder);
        std::filesystem::create_directories(module_.WorkFolder);
        std::filesystem::create_directories(module_.DataSubfolder());
        module_.TestRun = 1;
    }

    Module& module() { return module_; }
    ScriptedDialogs& dialogs() { return dialogs_; }
    CountedProcesses& processes() { return processes_; }
    const std::filesystem::path& Root() const { return folder_.Path(); }

private:
    TempFolder folder_;
    ScriptedDialogs dialogs_;
    HeadlessEventPump events_;
    FixedClock clock_;
    ClassicRandom random_;
    CountedProcesses processes_;
    SizedScreens screens_;
    RecordingSurfaceFactory surfaces_;
    Module module_;
};

} // namespace lorvane::test
