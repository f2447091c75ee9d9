#include "frame/ScriptDriver.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <map>
#include <sstream>

#include "frame/Module.h"
#include "frame/NumberText.h"
#include "platform/Headless.h"
#include "platform/Random.h"

namespace lorvane {

namespace {

using Line = ScriptDriver::Line;

// Words separated by blanks; a word in double quotes may hold blanks.
bool SplitWords(const std::string& text, Line& line, std::string& problem) {
    std::size_t i = 0;
    while (true) {
        while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) {
            ++i;
        }
        if (i >= text.size()) {
            return true;
        }
        if (text[i] == '"') {
            const std::size_t close = text.find('"', i + 1);
            if (close == std::string::npos) {
                problem = "a quoted text has no closing quote";
                return false;
            }
            line.words.push_back(text.substr(i + 1, close - i - 1));
            line.quoted.push_back(true);
            i = close + 1;
        } else {
            const std::size_t end = text.find_first_of(" \t", i);
            line.words.push_back(
                text.substr(i, end == std::string::npos ? std::string::npos : end - i));
            line.quoted.push_back(false);
            i = end == std::string::npos ? text.size() : end;
        }
    }
}

bool IsWhole(const std::string& word, long long& value) {
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    return error == std::errc() && end == word.data() + word.size();
}

// A finite number; value holds it. (std::stod is no check: it refuses some numbers that
// from_chars reads, such as 1e-310, with an exception.)
bool ReadNumber(const std::string& word, double& value) {
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    return error == std::errc() && end == word.data() + word.size() && !word.empty() &&
           std::isfinite(value);
}

// A file name of the data folder: no folder part, not "." or "..".
bool IsPlainName(const std::string& word) {
    return word.find_first_of("/\\") == std::string::npos && word != "." && word != "..";
}

bool IsNumber(const std::string& word) {
    double value = 0;
    return ReadNumber(word, value);
}

// The words from index `from` on, joined by single blanks.
std::string Rest(const Line& line, std::size_t from) {
    std::string rest;
    for (std::size_t i = from; i < line.words.size(); ++i) {
        rest += (i == from ? "" : " ") + line.words[i];
    }
    return rest;
}

bool SplitTarget(const std::string& word, std::string& screen, std::string& control) {
    const std::size_t point = word.find('.');
    if (point == std::string::npos || point == 0 || point + 1 == word.size()) {
        return false;
    }
    screen = word.substr(0, point);
    control = word.substr(point + 1);
    return true;
}

// An item's text without the marks that screens put in front of or behind it.
std::string Unmarked(std::string item) {
    if (item.rfind("* ", 0) == 0) {
        item.erase(0, 2);
    }
    if (item.rfind("(*)", 0) == 0) {
        item.erase(0, 3);
    }
    if (item.size() >= 3 && item.compare(item.size() - 3, 3, "(*)") == 0) {
        item.erase(item.size() - 3);
    }
    return Trim(item);
}

const std::vector<std::string> Buttons = {"OK", "Cancel", "Abort", "Retry", "Ignore", "Yes", "No"};

// The check of a line's form; empty when the line is good.
std::string CheckForm(const Line& line) {
    const std::string& verb = line.words[0];
    const std::size_t n = line.words.size();
    std::string screen;
    std::string control;
    const bool targeted = n >= 2 && SplitTarget(line.words[1], screen, control);
    long long whole = 0;
    if (verb == "click" || verb == "dblclick-picture" || verb == "dump") {
        return n == 2 && targeted ? "" : verb + " takes SCREEN.CONTROL";
    }
    if (verb == "dblclick") {
        return n == 3 && targeted ? "" : "dblclick takes SCREEN.CONTROL ITEM";
    }
    if (verb == "highlight") {
        return n >= 3 && targeted ? "" : "highlight takes SCREEN.CONTROL ITEM...";
    }
    if (verb == "check") {
        return n == 3 && targeted && (line.words[2] == "0" || line.words[2] == "1")
                   ? ""
                   : "check takes SCREEN.CONTROL 0 or 1";
    }
    if (verb == "type") {
        return n >= 2 && targeted ? "" : "type takes SCREEN.CONTROL TEXT";
    }
    if (verb == "mouse") {
        return n == 4 && targeted && IsNumber(line.words[2]) && IsNumber(line.words[3])
                   ? ""
                   : "mouse takes SCREEN.CONTROL X Y";
    }
    if (verb == "answer") {
        return n == 2 && std::find(Buttons.begin(), Buttons.end(), line.words[1]) != Buttons.end()
                   ? ""
                   : "answer takes one of OK, Cancel, Abort, Retry, Ignore, Yes, No";
    }
    if (verb == "input") {
        return "";
    }
    if (verb == "input-cancel") {
        return n == 1 ? "" : "input-cancel takes nothing";
    }
    if (verb == "seed") {
        return n == 2 && IsWhole(line.words[1], whole) && whole >= 0 ? ""
                                                                     : "seed takes a whole number";
    }
    if (verb == "expect-screen") {
        return n == 2 ? "" : "expect-screen takes NAME";
    }
    if (verb == "screenshot" || verb == "screenshot-box") {
        return n == 2 ? "" : verb + " takes FILE";
    }
    if (verb == "dump-report") {
        return n == 1 ? "" : "dump-report takes nothing";
    }
    if (verb == "remove") {
        return n == 2 && IsPlainName(line.words[1])
                   ? ""
                   : "remove takes the NAME of a file in the data folder";
    }
    if (verb == "expect-file") {
        return n == 3 && IsPlainName(line.words[1]) &&
                       (line.words[2] == "0" || line.words[2] == "1")
                   ? ""
                   : "expect-file takes the NAME of a file in the data folder and 0 or 1";
    }
    if (verb == "expect") {
        if (n < 3 || !targeted) {
            return "expect takes SCREEN.CONTROL PROPERTY VALUE";
        }
        const std::string& property = line.words[2];
        if (property == "item") {
            return n >= 5 && IsWhole(line.words[3], whole) ? "" : "expect ... item takes N VALUE";
        }
        if (property == "caption" || property == "contains") {
            return "";
        }
        if (property == "visible" || property == "enabled") {
            return n == 4 && (line.words[3] == "0" || line.words[3] == "1")
                       ? ""
                       : property + " takes 0 or 1";
        }
        if (property == "count") {
            return n == 4 && IsWhole(line.words[3], whole) ? "" : "count takes a whole number";
        }
        return "unknown property " + property +
               " (caption, visible, enabled, count, item, contains)";
    }
    return "unknown verb " + verb;
}

std::string ForOutput(std::string text) {
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
    return text;
}

} // namespace

ScriptDriver::ScriptDriver(Module& module, ScriptedDialogs& dialogs, std::ostream& out,
                           std::ostream& errors, std::function<void()> start, ScriptCamera camera)
    : module_(module), dialogs_(dialogs), out_(out), errors_(errors), start_(std::move(start)),
      camera_(std::move(camera)) {}

int ScriptDriver::Fail(int code, const Line& line, const std::string& message) {
    errors_ << "line " << line.number << ": " << message << '\n';
    return code;
}

void ScriptDriver::EnsureStarted() {
    if (!started_) {
        started_ = true;
        module_.Run(start_);
        // A start that a guard ended wrote no ACTIVEMODULE.TXT: one there belongs to another run.
        running_ = !module_.Ended();
    }
}

int ScriptDriver::Run(std::istream& script) {
    const int code = RunLines(script);
    // A box that never came is no longer waited for.
    dialogs_.WatchNextBox({});
    // Decision: however the script ends, the work folder stays usable for the next start.
    if (running_) {
        module_.RemoveActiveModule();
    }
    return code;
}

int ScriptDriver::RunLines(std::istream& script) {
    std::vector<Line> lines;
    std::string text;
    for (int number = 1; std::getline(script, text); ++number) {
        if (!text.empty() && text.back() == '\r') {
            text.pop_back();
        }
        // A byte order mark that an editor put before a UTF-8 script is no part of its first line.
        if (number == 1 && text.starts_with("\xEF\xBB\xBF")) {
            text.erase(0, 3);
        }
        // Blanks and tabs both separate words: a line of white space is empty.
        const std::size_t first = text.find_first_not_of(" \t");
        const std::string trimmed =
            first == std::string::npos
                ? std::string()
                : text.substr(first, text.find_last_not_of(" \t") - first + 1);
        if (trimmed.empty() || trimmed.front() == '#') {
            continue;
        }
        Line line{number, trimmed, {}, {}};
        std::string problem;
        if (!SplitWords(trimmed, line, problem) || !(problem = CheckForm(line)).empty()) {
            return Fail(BadLine, line, problem + ": " + trimmed);
        }
        lines.push_back(std::move(line));
    }
    const bool follows =
        camera_.follow && std::any_of(lines.begin(), lines.end(), [](const Line& line) {
            return line.words[0].starts_with("screenshot");
        });

    for (std::size_t i = 0; i < lines.size(); ++i) {
        const Line& line = lines[i];
        if (module_.Ended()) {
            return Fail(ExpectFailed, line,
                        "the module has ended; this line and the rest were not run");
        }
        int code = Done;
        try {
            const std::string& verb = line.words[0];
            if (verb != "answer" && verb != "input" && verb != "input-cancel" && verb != "seed") {
                EnsureStarted();
            }
            if (trace_) {
                out_ << "> " << line.number << ": " << line.text << "    [" << module_.CurrentScreen
                     << (module_.PinnedScreen2.empty() ? "" : " + " + module_.PinnedScreen2)
                     << "]\n";
            }
            if (module_.Ended() && !module_.Failure()) {
                return Fail(ExpectFailed, line,
                            "the module has ended; this line and the rest were not run");
            }
            if (!module_.Ended()) {
                code = Perform(line);
            }
        } catch (const NoQueuedAnswer& missing) {
            return Fail(NoAnswer, line, missing.what());
        }
        if (module_.Failure()) {
            out_ << ForOutput(module_.Failure()->MessageText()) << '\n';
            errors_ << "line " << line.number << ": the module ended with run-time error "
                    << module_.Failure()->Number() << '\n';
            return RunTimeError;
        }
        if (code != Done) {
            return code;
        }
        if (!boxShotProblem_.empty()) {
            return Fail(ExpectFailed, *boxShot_, boxShotProblem_);
        }
        if (follows && !module_.Ended()) {
            camera_.follow();
        }
        if (afterLine_ && !module_.Ended()) {
            afterLine_();
        }
    }
    if (boxShot_) {
        return Fail(ExpectFailed, *boxShot_, "no box was shown after this line");
    }
    try {
        EnsureStarted();
    } catch (const NoQueuedAnswer& missing) {
        errors_ << "start: " << missing.what() << '\n';
        return NoAnswer;
    }
    if (module_.Failure()) {
        out_ << ForOutput(module_.Failure()->MessageText()) << '\n';
        return RunTimeError;
    }
    if (dialogs_.HasPendingAnswers()) {
        errors_ << "note: answers were queued that no box asked for\n";
    }
    return Done;
}

int ScriptDriver::Perform(const Line& line) {
    const std::string& verb = line.words[0];
    if (verb == "answer") {
        dialogs_.QueueAnswer(line.words[1]);
        return Done;
    }
    if (verb == "input") {
        dialogs_.QueueInput(Rest(line, 1));
        return Done;
    }
    if (verb == "input-cancel") {
        dialogs_.QueueInput(std::nullopt);
        return Done;
    }
    if (verb == "seed") {
        module_.platform().random.seed(static_cast<std::uint32_t>(std::stoul(line.words[1])));
        return Done;
    }
    if (verb == "expect-screen") {
        if (UpperCase(module_.CurrentScreen) != UpperCase(line.words[1])) {
            return Fail(ExpectFailed, line,
                        "the screen is " + module_.CurrentScreen + ", not " + line.words[1]);
        }
        return Done;
    }
    if (verb == "dump-report") {
        out_ << ForOutput(module_.ResultText);
        return Done;
    }
    if (verb == "expect-file") {
        const bool wanted = line.words[2] == "1";
        if (std::filesystem::exists(module_.DataFile(line.words[1])) != wanted) {
            return Fail(ExpectFailed, line,
                        DataFileText(line.words[1]) + (wanted ? " is missing" : " is there"));
        }
        return Done;
    }
    if (verb == "remove") {
        std::error_code ignored;
        std::filesystem::remove(module_.DataFile(line.words[1]), ignored);
        return Done;
    }
    if (verb == "screenshot") {
        if (!camera_.shoot || !camera_.shoot(line.words[1], nullptr)) {
            return Fail(ExpectFailed, line, "no screenshot could be written to " + line.words[1]);
        }
        return Done;
    }
    if (verb == "screenshot-box") {
        if (!camera_.shoot) {
            return Fail(ExpectFailed, line, "no screenshot could be written to " + line.words[1]);
        }
        if (boxShot_) {
            return Fail(ExpectFailed, line,
                        "the box of line " + std::to_string(boxShot_->number) +
                            " has not been shown yet");
        }
        // The box is taken when it comes, over the frame as it is then, before its answer.
        boxShot_ = line;
        dialogs_.WatchNextBox([this](const BoxRequest& box) {
            if (camera_.shoot(boxShot_->words[1], &box)) {
                boxShot_.reset();
            } else {
                boxShotProblem_ = "no screenshot could be written to " + boxShot_->words[1];
            }
        });
        return Done;
    }

    std::string screenName;
    std::string controlName;
    SplitTarget(line.words[1], screenName, controlName);
    Screen* screen = module_.LoadedScreen(screenName);
    if (screen == nullptr) {
        return Fail(ExpectFailed, line, "the screen " + screenName + " is not open");
    }
    Control* control = screen->Find(controlName);
    if (control == nullptr) {
        return Fail(BadLine, line, "the screen " + screenName + " has no control " + controlName);
    }

    if (verb == "dump") {
        if (control->Kind == ControlKind::ListBox) {
            for (const std::string& item : control->Items) {
                out_ << ForOutput(item) << '\n';
            }
        } else {
            out_ << ForOutput(control->Caption) << '\n';
        }
        return Done;
    }
    if (verb == "expect") {
        const std::string& property = line.words[2];
        const std::string expected = Rest(line, property == "item" ? 4 : 3);
        std::string actual;
        bool ok = false;
        if (property == "caption") {
            actual = control->Caption;
            ok = actual == expected;
        } else if (property == "contains") {
            actual = control->Caption;
            ok = actual.find(expected) != std::string::npos;
        } else if (property == "visible") {
            actual = screen->IsShown(*control) ? "1" : "0";
            ok = actual == expected;
        } else if (property == "enabled") {
            actual = control->Enabled ? "1" : "0";
            ok = actual == expected;
        } else if (property == "count") {
            actual = std::to_string(control->ListCount());
            ok = actual == expected;
        } else {
            const long long index = std::stoll(line.words[3]);
            if (index < 0 || index >= control->ListCount()) {
                return Fail(ExpectFailed, line,
                            "the list has " + std::to_string(control->ListCount()) +
                                " items, no item " + line.words[3]);
            }
            actual = control->Items[static_cast<std::size_t>(index)];
            ok = actual == expected;
        }
        if (!ok) {
            return Fail(ExpectFailed, line,
                        line.words[1] + " " + property + " is \"" + ForOutput(actual) +
                            "\", expected \"" + expected + "\"");
        }
        return Done;
    }

    // The remaining verbs are user actions: the control must be there to be used.
    if (!screen->Visible || !screen->IsShown(*control) || !control->Enabled) {
        return Fail(ExpectFailed, line,
                    line.words[1] + " cannot be used: it is " +
                        (!control->Enabled ? "disabled" : "not visible"));
    }
    auto findItem = [&](std::size_t word, int& index) {
        long long number = 0;
        if (!line.quoted[word] && IsWhole(line.words[word], number)) {
            // Checked before it is narrowed: 4294967296 is no item 0.
            index = number >= 0 && number < control->ListCount() ? static_cast<int>(number) : -1;
            return index >= 0;
        }
        for (int i = 0; i < control->ListCount(); ++i) {
            if (Unmarked(control->Items[static_cast<std::size_t>(i)]) ==
                Unmarked(line.words[word])) {
                index = i;
                return true;
            }
        }
        return false;
    };

    if (verb == "click") {
        module_.Click(screenName, controlName);
    } else if (verb == "dblclick") {
        int index = -1;
        if (!findItem(2, index)) {
            return Fail(ExpectFailed, line,
                        "the list " + line.words[1] + " has no item " + line.words[2]);
        }
        control->ListIndex = index;
        module_.DoubleClick(screenName, controlName, index);
    } else if (verb == "highlight") {
        std::vector<int> indices;
        for (std::size_t w = 2; w < line.words.size(); ++w) {
            int index = -1;
            if (!findItem(w, index)) {
                return Fail(ExpectFailed, line,
                            "the list " + line.words[1] + " has no item " + line.words[w]);
            }
            indices.push_back(index);
        }
        for (int i = 0; i < control->ListCount(); ++i) {
            control->SetHighlighted(i,
                                    std::find(indices.begin(), indices.end(), i) != indices.end());
        }
        control->ListIndex = indices.back();
        // As on the desktop, a change of the highlighted items is a click on the list.
        module_.Click(screenName, controlName);
    } else if (verb == "check") {
        control->Value = line.words[2] == "1" ? 1 : 0;
        module_.Click(screenName, controlName);
    } else if (verb == "type") {
        if (!control->SetText(Rest(line, 2))) {
            return Fail(ExpectFailed, line, "the text is longer than the box holds");
        }
        module_.Change(screenName, controlName);
    } else if (verb == "mouse") {
        double x = 0;
        double y = 0;
        ReadNumber(line.words[2], x);
        ReadNumber(line.words[3], y);
        module_.MouseMove(screenName, controlName, x, y);
    } else if (verb == "dblclick-picture") {
        module_.PictureDoubleClick(screenName, controlName);
    }
    return Done;
}

} // namespace lorvane
