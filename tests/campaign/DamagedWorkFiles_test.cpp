// The damaged-file campaign: the example roads walked by the script driver, with one work file
// damaged each time a screen has written it, so that the next screen that reads it finds the
// damage. Whatever the damage, the module must end in order (the road done with the undamaged
// road's numbers, or the general run-time error), in bounded time and memory, with the log it had
// written before intact. A file that belongs to another model must be the read error, 62.

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <chrono>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
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

// An example road without its checks: a damaged file may lead the road elsewhere, and what the
// campaign asks is only that the module ends in order.
const std::string& Road(const std::string& script) {
    static std::map<std::string, std::string> roads;
    std::string& road = roads[script];
    if (road.empty()) {
        std::ifstream file(std::filesystem::path(LORVANE_SOURCE_DIR) / "examples" / script);
        std::string line;
        while (std::getline(file, line)) {
            if (!line.starts_with("expect") && !line.starts_with("dump")) {
                road += line + "\n";
            }
        }
    }
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

// The first field, T in the parameter files, replaced.
std::string WithFirstField(const std::string& content, const std::string& value) {
    const std::size_t end = content.find_first_of(",\r\n");
    return end == std::string::npos ? value : value + content.substr(end);
}

std::vector<std::string> Lines(const std::string& content) {
    std::vector<std::string> lines;
    std::istringstream in(content);
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::string Joined(const std::vector<std::string>& lines) {
    std::string content;
    for (const std::string& line : lines) {
        content += line + "\n";
    }
    return content;
}

// The files of a model with one variable or one coefficient less, as a road of that model would
// have left them: whole and consistent in themselves.
std::string ResidualsOfASmallerModel(const std::string& content) {
    std::vector<std::string> lines = Lines(content);
    const int k = std::stoi(lines.at(0));
    lines[0] = std::to_string(k - 1);
    lines.erase(lines.begin() + k);
    return Joined(lines);
}

std::string ParametersOfASmallerModel(const std::string& content) {
    const std::vector<std::string> lines = Lines(content);
    const std::size_t comma = lines.at(0).find(',');
    const int n = std::stoi(lines[0].substr(comma + 1));
    std::vector<std::string> smaller = {lines[0].substr(0, comma + 1) + std::to_string(n - 1)};
    for (int q = 1; q < n; ++q) {
        smaller.push_back(lines.at(static_cast<std::size_t>(q)));
    }
    for (int q = 1; q < n; ++q) {
        smaller.push_back(lines.at(static_cast<std::size_t>(n + q)));
    }
    for (int r = 1; r < n; ++r) {
        for (int c = 1; c < n; ++c) {
            smaller.push_back(lines.at(static_cast<std::size_t>(2 * n + (r - 1) * n + c)));
        }
    }
    return Joined(smaller);
}

const Damage ModelDamages[] = {
    {"T 0", [](const std::string& s) { return WithFirstField(s, "0"); }},
    {"T -3", [](const std::string& s) { return WithFirstField(s, "-3"); }},
    {"T 32767", [](const std::string& s) { return WithFirstField(s, "32767"); }},
    {"T one less",
     [](const std::string& s) { return WithFirstField(s, std::to_string(std::stoi(s) - 1)); }},
    {"another model's residuals", ResidualsOfASmallerModel},
    {"another model's parameters", ParametersOfASmallerModel},
};

const Damage& DamageNamed(std::string_view name) {
    for (const Damage& damage : Damages) {
        if (damage.name == name) {
            return damage;
        }
    }
    for (const Damage& damage : ModelDamages) {
        if (damage.name == name) {
            return damage;
        }
    }
    throw std::invalid_argument("no damage " + std::string(name));
}

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

// Walks an example road; with a damage, the file is damaged after every line that left it
// changed, from the first line that ends on the screen `from` on when one is given (a file that
// earlier screens read as well reaches the later ones damaged).
Walk WalkRoad(const std::string& script, const char* file = nullptr, const Damage* damage = nullptr,
              const char* from = nullptr) {
    test::PlotModule test;
    Module& module = test.module();
    const std::filesystem::path work = test.Root() / "work";
    WriteDataFiles(ParseCsv(test::E1Csv(), {}), work);
    std::ostringstream out;
    std::ostringstream errors;
    ScriptDriver driver(module, test.dialogs(), out, errors,
                        [&] { ModuleEntry(module, work.string(), test.Root() / "start"); });
    // The log as it stands; its folder is known once the driver has started the module.
    auto log = [&module] {
        const std::filesystem::path file = module.DataFile("OUTPUT.TXT");
        std::error_code error;
        return std::filesystem::exists(file, error) ? ReadFile(file) : std::string();
    };
    Walk walk;
    std::string left;
    if (damage != nullptr) {
        driver.SetAfterLine([&] {
            if (!walk.damaged && from != nullptr && module.CurrentScreen != from) {
                return;
            }
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
                walk.logBeforeDamage = log();
            }
            left = damage->apply(content);
            WriteFile(path, left);
        });
    }
    std::istringstream road(Road(script));
    const auto start = std::chrono::steady_clock::now();
    walk.code = driver.Run(road);
    walk.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    walk.log = log();
    walk.errors = errors.str();
    return walk;
}

// Whatever the damage, the walk ends in order, in time, and leaves the log as it was.
void ExpectInOrder(const Walk& clean, const Walk& walk, double bound, bool sameNumbers = true) {
    EXPECT_TRUE(walk.damaged) << "the road never wrote the file";
    // A damage that is a model of its own (a Granger zero where the estimate had a one, a
    // structural model without coefficients to test) takes the road elsewhere: the driver stops at
    // the first control or screen of the road that the new road does not offer.
    const bool elsewhere = walk.code == ScriptDriver::ExpectFailed &&
                           (walk.errors.find("cannot be used") != std::string::npos ||
                            walk.errors.find("is not open") != std::string::npos);
    EXPECT_TRUE(walk.code == ScriptDriver::Done || walk.code == ScriptDriver::RunTimeError ||
                elsewhere)
        << "exit code " << walk.code << ": " << walk.errors;
    EXPECT_LT(walk.seconds, bound);
    // A road that went to its end printed what the undamaged road printed: a damage that was read
    // as numbers would show here.
    if (walk.code == ScriptDriver::Done && sameNumbers) {
        EXPECT_EQ(walk.log, clean.log);
    }
    // The log is only ever appended to: what it held is still there, as the undamaged road
    // wrote it.
    EXPECT_TRUE(walk.log.starts_with(walk.logBeforeDamage));
    EXPECT_TRUE(clean.log.starts_with(walk.logBeforeDamage));
}

// The road walked without damage, and the time a damaged walk of it may take: generous for the
// sanitizers.
struct CleanWalk {
    Walk walk;
    double bound = 0;
};

CleanWalk WalkClean(const std::string& script) {
    CleanWalk clean{WalkRoad(script)};
    clean.bound = 10 * clean.walk.seconds + 10;
    return clean;
}

long PeakMegabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

TEST(DamagedWorkFiles, EveryDamageOfTheDemoRoadEndsInOrder) {
    const CleanWalk clean = WalkClean("demo.var");
    ASSERT_EQ(clean.walk.code, ScriptDriver::Done) << clean.walk.errors;
    ASSERT_FALSE(clean.walk.log.empty());

    for (const char* file : WorkFiles) {
        for (const Damage& damage : Damages) {
            SCOPED_TRACE(std::string(file) + " " + damage.name);
            // Known gap: VARDECOMP.TMP holds the decomposition as the text of its table, shown as
            // it stands; no check of the table against the model reads it yet, so a damaged
            // table that reaches the end of the road is not compared.
            ExpectInOrder(clean.walk, WalkRoad("demo.var", file, &damage), clean.bound,
                          std::string_view(file) != "VARDECOMP.TMP");
        }
    }
    // The reviewer's 8.6 GB would show here; the road itself needs a few hundred megabytes.
    EXPECT_LT(PeakMegabytes(), 1500);
}

// The files that only the structural screens read, and the ones they read in their own way, each
// with the damages that reach checks the demo road does not: a count that is not the model's,
// one that is not positive, a file cut short, and other digits where values decide the road.
struct StructuralCase {
    const char* road;
    const char* file;
    const char* from;
    std::vector<const char*> damages;
};

const StructuralCase StructuralCases[] = {
    // The moment route: the saved L and parameter file, the structural tests.
    {"structural.var", "BVARL.TMP", nullptr, {"count 32767", "count 0"}},
    {"structural.var", "BWALDT.TMP", nullptr, {"count 32767"}},
    {"structural.var", "WALDTSV.TMP", nullptr, {"count 32767", "count 0", "truncated"}},
    // The likelihood search: the pattern and the factor in VARL.TMP once the model is solved,
    // the start values, the records of the runs, and the tests of the estimates.
    {"structural_ml.var", "SVARA.TMP", "VBernanke2", {"count 32767", "garbled"}},
    {"structural_ml.var", "VARL.TMP", "VBernanke2", {"count 32767", "count 0"}},
    {"structural_ml.var", "BERNSV.TMP", nullptr, {"count 32767", "truncated"}},
    {"structural_ml.var", "BERNSV2.TMP", nullptr, {"count 32767", "count 0", "truncated"}},
    {"structural_ml.var", "TMP.TMP", nullptr, {"count 32767", "truncated", "garbled"}},
    {"structural_ml.var", "WALDTSV.TMP", nullptr, {"count 32767"}},
};

TEST(DamagedWorkFiles, EveryDamageOfTheStructuralRoadsEndsInOrder) {
    std::map<std::string, CleanWalk> clean;
    for (const StructuralCase& test : StructuralCases) {
        auto found = clean.find(test.road);
        if (found == clean.end()) {
            found = clean.emplace(test.road, WalkClean(test.road)).first;
            ASSERT_EQ(found->second.walk.code, ScriptDriver::Done) << found->second.walk.errors;
            ASSERT_FALSE(found->second.walk.log.empty());
        }
        const CleanWalk& road = found->second;
        for (const char* name : test.damages) {
            SCOPED_TRACE(std::string(test.road) + " " + test.file + " " + name);
            ExpectInOrder(road.walk, WalkRoad(test.road, test.file, &DamageNamed(name), test.from),
                          road.bound);
        }
    }
    EXPECT_LT(PeakMegabytes(), 1500);
}

// The work files read against the model: a T that is not the model's, the files of another
// model. Each is the read error, not numbers of another model.
const StructuralCase ModelCases[] = {
    {"demo.var", "WALDT.TMP", nullptr, {"T 0", "T -3", "T 32767", "T one less"}},
    {"demo.var", "U.TMP", nullptr, {"another model's residuals"}},
    {"structural.var", "BWALDT.TMP", nullptr, {"T 0", "T -3", "T 32767"}},
    {"structural.var", "WALDTSV.TMP", nullptr, {"T 0", "T 32767", "another model's parameters"}},
    {"structural_ml.var", "WALDTSV.TMP", nullptr, {"T -3", "another model's parameters"}},
    {"structural_ml.var", "U.TMP", nullptr, {"another model's residuals"}},
};

TEST(DamagedWorkFiles, TheFilesOfAnotherModelAreTheReadError) {
    for (const StructuralCase& test : ModelCases) {
        for (const char* name : test.damages) {
            SCOPED_TRACE(std::string(test.road) + " " + test.file + " " + name);
            const Walk walk = WalkRoad(test.road, test.file, &DamageNamed(name), test.from);
            EXPECT_TRUE(walk.damaged);
            EXPECT_EQ(walk.code, ScriptDriver::RunTimeError) << walk.errors;
            EXPECT_NE(walk.errors.find("run-time error 62"), std::string::npos) << walk.errors;
            EXPECT_TRUE(walk.log.starts_with(walk.logBeforeDamage));
        }
    }
}

} // namespace
} // namespace lorvane
