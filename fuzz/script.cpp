// The script driver on arbitrary script text, run against the module on the headless platform
// with the example data in its work folder. Whatever the text, the driver ends with one of its
// exit codes; nothing escapes it, and nothing in the module crashes.

#include <filesystem>
#include <sstream>
#include <string>

#include "FuzzSupport.h"
#include "data/CsvImport.h"
#include "frame/Module.h"
#include "frame/ScriptDriver.h"
#include "frame/Startup.h"
#include "platform/Headless.h"

using namespace lorvane;
using namespace lorvane::fuzz;

namespace {

class FixedClock : public Clock {
public:
    double secondsSinceMidnight() const override { return 12 * 3600.0; }
    CivilDate today() const override { return {2024, 3, 5}; }
};

// The data files of the example data, made once.
struct ExampleFiles {
    std::string input1;
    std::string input2;
};

const ExampleFiles& Example() {
    static const ExampleFiles files = [] {
        const std::filesystem::path folder = ScratchFolder() / "example";
        WriteDataFiles(
            ParseCsv(ReadBytes(std::filesystem::path(LORVANE_SOURCE_DIR) / "examples" / "e1.csv"),
                     {}),
            folder);
        return ExampleFiles{ReadBytes(folder / "LORVANE.DAT" / "INPUT1.RAN"),
                            ReadBytes(folder / "LORVANE.DAT" / "INPUT2.RAN")};
    }();
    return files;
}

// A work folder as the main program leaves it: the data files and nothing else.
std::filesystem::path FreshWorkFolder() {
    const std::filesystem::path work = ScratchFolder() / "work";
    std::filesystem::remove_all(work);
    std::filesystem::create_directories(work / "LORVANE.DAT");
    WriteBytes(work / "LORVANE.DAT" / "INPUT1.RAN", Example().input1);
    WriteBytes(work / "LORVANE.DAT" / "INPUT2.RAN", Example().input2);
    std::filesystem::create_directories(ScratchFolder() / "start");
    return work;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::filesystem::path work = FreshWorkFolder();
    std::ostringstream echo;
    ScriptedDialogs dialogs(&echo);
    HeadlessEventPump events;
    FixedClock clock;
    ClassicRandom random;
    HeadlessProcesses processes(&echo);
    HeadlessScreens screens;
    Module module(Platform{dialogs, events, clock, random, processes, screens, nullptr});

    std::ostringstream out;
    std::ostringstream errors;
    ScriptDriver driver(module, dialogs, out, errors,
                        [&] { ModuleEntry(module, work.string(), ScratchFolder() / "start"); });
    std::istringstream script{std::string(AsText(data, size))};
    const int code = driver.Run(script);
    if (code < ScriptDriver::Done || code > ScriptDriver::RunTimeError) {
        Broken("the driver ended with " + std::to_string(code));
    }
    return 0;
}
