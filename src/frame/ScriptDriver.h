#pragma once

#include <functional>
#include <istream>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace lorvane {

class Module;
class ScriptedDialogs;

// Runs a script of user actions against the module, headless. The lines are checked first;
// then the module starts (after any answers queued by the leading lines) and the lines run in
// order. Each message box is echoed by the dialogs as "[box] TITLE | TEXT -> ANSWER".
class ScriptDriver {
public:
    enum ExitCode { Done = 0, ExpectFailed = 1, BadLine = 2, NoAnswer = 3, RunTimeError = 4 };

    // start runs the module's start-up; screenshot, when given, renders what the frame shows into
    // a PNG file (the "screenshot FILE" line).
    ScriptDriver(Module& module, ScriptedDialogs& dialogs, std::ostream& out, std::ostream& errors,
                 std::function<void()> start,
                 std::function<bool(const std::string&)> screenshot = {});

    void SetTrace(bool trace) { trace_ = trace; }
    // Runs after every line that the module performed and survived, before the next line: lets
    // a test change the work files between the screen that writes them and the one that reads
    // them.
    void SetAfterLine(std::function<void()> afterLine) { afterLine_ = std::move(afterLine); }
    // Runs the script and gives its exit code. Whatever the code, ACTIVEMODULE.TXT is removed
    // when this run's start wrote it.
    int Run(std::istream& script);

    struct Line {
        int number = 0;
        std::string text;
        std::vector<std::string> words;
        std::vector<bool> quoted;
    };

private:
    int RunLines(std::istream& script);
    int Perform(const Line& line);
    int Fail(int code, const Line& line, const std::string& message);
    void EnsureStarted();

    Module& module_;
    ScriptedDialogs& dialogs_;
    std::ostream& out_;
    std::ostream& errors_;
    std::function<void()> start_;
    std::function<bool(const std::string&)> screenshot_;
    std::function<void()> afterLine_;
    bool trace_ = false;
    bool started_ = false;
    // The start went through: the module runs and has written ACTIVEMODULE.TXT.
    bool running_ = false;
};

} // namespace lorvane
