// The damaged-file campaign: the demo road walked by the script driver, with one work file
// damaged each time a screen has written it, so that the next screen that reads it finds the
// damage. Whatever the damage, the module must end in order (the road done, or the general
// run-time error), in bounded time and memory, with the log it had written before intact.

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <chrono>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "data/CsvImport.h"
#include "frame/ScriptDriver.h"
#include "frame/Startup.h"
#include "innovation/PlotFixture.h"
#include "support/E1Road.h"

namespace lorvane {
namespace {

using test::ReadFile;
using test::WriteFile;

// The demo road without its checks: a damaged file may lead the road elsewhere, and what the
// campaign asks is only that the module ends in order.
const std::string& DemoRoad() {
    static const std::string road = [] {
        std::ifstream file(std::filesystem::path(LORVANE_SOURCE_DIR) / "examples" / "demo.var");
        std::string lines;
        std::string line;
        while (std::getline(file, line)) {
            if (!line.starts_with("expect") && !line.starts_with("dump")) {
                lines += line + "\n";
            }
        }
        return lines;
    }();
    return road;
}

// The damages. A count is each of the first two fields that hold a whole number (k, T and n,
// H and n, K(1) and K(2) ...).
std::string WithCounts(const std::string& content, const std::string& count) {
    std::string damaged;
    int replaced = 0;
    std::size_t start = 0;
    while (start <= content.size()) {
        std::size_t end = content.find_first_of(",\r\n", start);
        end = end == std::string::npos ? content.size() : end;
        const std::string field = content.substr(start, end - start);
        const bool whole =
            !field.empty() && field.find_first_not_of("-0123456789") == std::string::npos;
        damaged += whole && replaced < 2 ? (++replaced, count) : field;
        if (end < content.size()) {
            damaged += content[end];
        }
        start = end + 1;
    }
    return damaged;
}

struct Damage {
    const char* name;
    std::string (*apply)(const std::string&);
};

const Damage Damages[] = {
    {"truncated", [](const std::string& s) { return s.substr(0, s.size() / 2); }},
    {"emptied", [](const std::string&) { return std::string(); }},
    // Other digits in the same places, and a stray quote now and then.
    {"garbled",
     [](const std::string& s) {
         std::string g = s;
         for (std::size_t i = 0; i < g.size(); ++i) {
             if (g[i] >= '0' && g[i] <= '9') {
                 g[i] = static_cast<char>('0' + (g[i] - '0' + 7) % 10);
             } else if (i % 97 == 13) {
                 g[i] = '"';
             }
         }
         return g;
     }},
    {"count 32767", [](const std::string& s) { return WithCounts(s, "32767"); }},
    {"count 0", [](const std::string& s) { return WithCounts(s, "0"); }},
    {"count -2", [](const std::string& s) { return WithCounts(s, "-2"); }},
};

// The work files that the demo road writes and reads again.
const char* const WorkFiles[] = {"VARZERO.TMP", "YSURE.TMP",  "XSURE.TMP",
                                 "U.TMP",       "WALDT.TMP",  "VARL.TMP",
                                 "VARLPAT.TMP", "VARIR2.TMP", "VARDECOMP.TMP"};

struct Walk {
    int code = -1;
    double seconds = 0;
    bool damaged = false;
    std::string logBeforeDamage;
    std::string log;
    std::string errors;
};

// Walks the demo road; with a damage, the file is damaged after every line that left it
// changed.
Walk WalkDemo(const char* file = nullptr, const Damage* damage = nullptr) {
    test::PlotModule test;
    Module& module = test.module();
    const std::filesystem::path work = test.Root() / "work";
    WriteDataFiles(ParseCsv(test::E1Csv(), {}), work);
    std::ostringstream out;
    std::ostringstream errors;
    ScriptDriver driver(module, test.dialogs(), out, errors,
                        [&] { ModuleEntry(module, work.string(), test.Root() / "start"); });
    const std::filesystem::path log = module.DataFile("OUTPUT.TXT");
    Walk walk;
    std::string left;
    if (damage != nullptr) {
        driver.SetAfterLine([&] {
            const std::filesystem::path path = module.DataFile(file);
            std::error_code error;
            if (!std::filesystem::exists(path, error)) {
                return;
            }
            const std::string content = ReadFile(path);
            if (walk.damaged && content == left) {
                return;
            }
            if (!walk.damaged) {
                walk.damaged = true;
                walk.logBeforeDamage = std::filesystem::exists(log, error) ? ReadFile(log) : "";
            }
            left = damage->apply(content);
            WriteFile(path, left);
        });
    }
    std::istringstream road(DemoRoad());
    const auto start = std::chrono::steady_clock::now();
    walk.code = driver.Run(road);
    walk.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::error_code error;
    walk.log = std::filesystem::exists(log, error) ? ReadFile(log) : "";
    walk.errors = errors.str();
    return walk;
}

long PeakMegabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

TEST(DamagedWorkFiles, EveryDamageOfTheDemoRoadEndsInOrder) {
    const Walk clean = WalkDemo();
    ASSERT_EQ(clean.code, ScriptDriver::Done) << clean.errors;
    // Time for one walk, generous for the sanitizers.
    const double bound = 10 * clean.seconds + 10;

    for (const char* file : WorkFiles) {
        for (const Damage& damage : Damages) {
            const Walk walk = WalkDemo(file, &damage);
            SCOPED_TRACE(std::string(file) + " " + damage.name);
            EXPECT_TRUE(walk.damaged) << "the road never wrote the file";
            // A damage that is a model of its own (a Granger zero where the estimate had a one)
            // takes the road elsewhere: the driver stops at the first control of the demo road
            // that the new road does not offer.
            const bool elsewhere = walk.code == ScriptDriver::ExpectFailed &&
                                   walk.errors.find("cannot be used") != std::string::npos;
            EXPECT_TRUE(walk.code == ScriptDriver::Done ||
                        walk.code == ScriptDriver::RunTimeError || elsewhere)
                << "exit code " << walk.code << ": " << walk.errors;
            EXPECT_LT(walk.seconds, bound);
            // The log is only ever appended to: what it held is still there, as the undamaged
            // road wrote it.
            EXPECT_TRUE(walk.log.starts_with(walk.logBeforeDamage));
            EXPECT_TRUE(clean.log.starts_with(walk.logBeforeDamage));
        }
    }
    // The reviewer's 8.6 GB would show here; the road itself needs a few hundred megabytes.
    EXPECT_LT(PeakMegabytes(), 1500);
}

} // namespace
} // namespace lorvane
