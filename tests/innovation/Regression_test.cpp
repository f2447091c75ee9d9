#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "frame/Module.h"
#include "platform/Headless.h"
#include "support/E1Road.h"
#include "support/TestModule.h"

namespace lorvane {
namespace {

using test::ReadFile;
using test::TestModule;

// One user action of the road from VARDetermin to the decomposition.
struct Step {
    const char* screen;
    const char* control;
    int check = -1; // 0 or 1: set the check box before clicking it
};

// VAR(2) with intercept, OLS, FIML, the joint tests, the nonstructural branch, responses with
// "Store output".
const std::vector<Step> Road = {
    {"VARDetermin", "Command5"}, {"VAR2", "Command2"},    {"VAR2", "Command5"},
    {"VAR3", "Command1"},        {"VARSUR", "Command3"},  {"VARSUR", "Command5"},
    {"VARSUR", "Command1"},      {"VWaldT2", "Command2"}, {"VARSTR1", "Command1"},
    {"VARIR2", "Command1"},      {"VARIR2", "Check1", 1}, {"VARIR2", "Command3"},
};

struct Outcome {
    int failure = 0;         // the number of the run-time error that ended the module
    std::string box;         // the last message box shown, when one ended the run
    std::size_t endedAt = 0; // the step at which the module ended, or Road.size()
    std::string logBefore;   // OUTPUT.TXT when the file was deleted
    std::string logAfter;    // OUTPUT.TXT at the end
};

// Walks the road and deletes the work file just before step `before`.
Outcome WalkWithout(const std::string& file, std::size_t before) {
    TestModule test;
    test::WalkToVARDetermin(test);
    Module& module = test.module();
    const std::filesystem::path log = module.DataFile("OUTPUT.TXT");
    Outcome outcome;
    outcome.endedAt = Road.size();
    for (std::size_t i = 0; i < Road.size(); ++i) {
        if (i == before) {
            EXPECT_TRUE(std::filesystem::remove(module.DataFile(file))) << file << " was not there";
            outcome.logBefore = ReadFile(log);
        }
        const Step& step = Road[i];
        try {
            if (step.check >= 0) {
                test::Ctl(module, step.screen, step.control).Value = step.check;
            }
            module.Click(step.screen, step.control);
        } catch (const NoQueuedAnswer&) {
            outcome.box = test.dialogs().Shown().back();
            outcome.endedAt = i;
            break;
        }
        if (module.Ended()) {
            outcome.failure = module.Failure() ? module.Failure()->Number() : 0;
            outcome.endedAt = i;
            break;
        }
    }
    outcome.logAfter = ReadFile(log);
    return outcome;
}

std::size_t StepOf(const char* screen, const char* control) {
    for (std::size_t i = 0; i < Road.size(); ++i) {
        if (std::string(Road[i].screen) == screen && std::string(Road[i].control) == control) {
            return i;
        }
    }
    ADD_FAILURE() << screen << "." << control << " is not on the road";
    return 0;
}

// A work file that is gone when the next screen reads it ends the module with "File not
// found" at that very step; the log keeps every line written before.
TEST(MissingWorkFiles, EndTheModuleWithFileNotFoundAndKeepTheLog) {
    struct Case {
        const char* file;
        const char* beforeScreen;
        const char* beforeControl;
    };
    const std::vector<Case> cases = {
        {"YSURE.TMP", "VARSUR", "Command3"},   {"XSURE.TMP", "VARSUR", "Command3"},
        {"U.TMP", "VARSUR", "Command5"},       {"WALDT.TMP", "VARSUR", "Command1"},
        {"VARZERO.TMP", "VARIR2", "Command1"}, {"VARL.TMP", "VARIR2", "Command1"},
        {"VARLPAT.TMP", "VARIR2", "Command1"}, {"VARDECOMP.TMP", "VARIR2", "Command3"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.file) + " deleted before " + c.beforeScreen + "." +
                     c.beforeControl);
        const std::size_t before = StepOf(c.beforeScreen, c.beforeControl);
        const Outcome outcome = WalkWithout(c.file, before);
        EXPECT_EQ(outcome.failure, FileNotFound) << outcome.box;
        EXPECT_EQ(outcome.endedAt, before);
        EXPECT_TRUE(outcome.logAfter.starts_with(outcome.logBefore));
        // From the estimation report on, there is a log to lose.
        EXPECT_EQ(outcome.logBefore.empty(), before <= StepOf("VARSUR", "Command1"));
    }
}

} // namespace
} // namespace lorvane
