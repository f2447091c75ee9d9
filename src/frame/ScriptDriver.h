#pragma once

#include <functional>
#include <istream>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "platform/Dialogs.h"

namespace lorvane {

class Module;
class ScriptedDialogs;

// What a script's screenshots need of the front end.
struct ScriptCamera {
    // Brings the frame's views up to date, as they are after a user's action on the desktop (a
    // report that grew is followed to its end).
    std::function<void()> follow;
    // Renders what the frame shows, with the box over it when one is given, into a PNG file;
    // false when the file cannot be written.
    std::function<bool(const std::string& file, const BoxRequest* box)> shoot;
};

// Runs a script of user actions against the module, headless. The lines are checked first;
// then the module starts (after any answers queued by the leading lines) and the lines run in
// order. Each message box is echoed by the dialogs as "[box] TITLE | TEXT -> ANSWER".
class ScriptDriver {
public:
    enum ExitCode { Done = 0, ExpectFailed = 1, BadLine = 2, NoAnswer = 3, RunTimeError = 4 };

    // start runs the module's start-up; camera, when given, takes the screenshots of the
    // "screenshot FILE" and "screenshot-box FILE" lines. In a script that has such lines the
    // frame follows the module after every line.
    ScriptDriver(Module& module, ScriptedDialogs& dialogs, std::ostream& out, std::ostream& errors,
                 std::function<void()> start, ScriptCamera camera = {});

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
    ScriptCamera camera_;
    // The "screenshot-box" line whose box has not come yet, and a shot that could not be written.
    std::optional<Line> boxShot_;
    std::string boxShotProblem_;
    std::function<void()> afterLine_;
    bool trace_ = false;
    bool started_ = false;
    // The start went through: the module runs and has written ACTIVEMODULE.TXT.
    bool running_ = false;
};

} // namespace lorvane
