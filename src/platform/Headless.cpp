#include "platform/Headless.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <utility>

namespace lorvane {

namespace {

std::string OneLine(std::string text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
            ++i;
        }
        if (text[i] == '\r' || text[i] == '\n') {
            out += "\\n";
        } else {
            out.push_back(text[i]);
        }
    }
    return out;
}

std::tm LocalNow() {
    const std::time_t now = std::time(nullptr);
    return *std::localtime(&now);
}

std::string Joined(const std::vector<std::string>& words) {
    std::string out;
    for (const auto& word : words) {
        out += (out.empty() ? "" : ", ") + word;
    }
    return out;
}

} // namespace

void ScriptedDialogs::Echo(std::string line) {
    if (echo_ != nullptr) {
        *echo_ << line << '\n' << std::flush;
    }
    shown_.push_back(std::move(line));
}

void ScriptedDialogs::Watch(const BoxRequest& request) {
    if (watch_) {
        const auto watch = std::exchange(watch_, nullptr);
        watch(request);
    }
}

std::string ScriptedDialogs::showMessage(const MessageBoxRequest& request) {
    lastMessage_ = request;
    Watch(request);
    const std::string box = "[box] " + OneLine(request.title) + " | " + OneLine(request.text);
    if (answers_.empty()) {
        Echo(box + " -> ?");
        throw NoQueuedAnswer("no answer queued for the message box \"" + OneLine(request.title) +
                             "\"");
    }
    std::string answer = answers_.front();
    answers_.pop_front();
    if (std::find(request.buttons.begin(), request.buttons.end(), answer) ==
        request.buttons.end()) {
        Echo(box + " -> " + answer + "?");
        throw NoQueuedAnswer("the queued answer " + answer + " is not a button of the box \"" +
                             OneLine(request.title) + "\" (" + Joined(request.buttons) + ")");
    }
    Echo(box + " -> " + answer);
    return answer;
}

std::optional<std::string> ScriptedDialogs::showInput(const InputBoxRequest& request) {
    Watch(request);
    const std::string box = "[input] " + OneLine(request.title) + " | " + OneLine(request.prompt);
    if (inputs_.empty()) {
        Echo(box + " -> ?");
        throw NoQueuedAnswer("no input queued for the input box \"" + OneLine(request.title) +
                             "\"");
    }
    std::optional<std::string> answer = inputs_.front();
    inputs_.pop_front();
    Echo(box + " -> " + (answer ? "\"" + *answer + "\"" : std::string("Cancel")));
    return answer;
}

double SystemClock::secondsSinceMidnight() const {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    const std::tm local = LocalNow();
    const double fraction =
        static_cast<double>(
            std::chrono::duration_cast<std::chrono::milliseconds>(sinceEpoch).count() % 1000) /
        1000.0;
    return local.tm_hour * 3600.0 + local.tm_min * 60.0 + local.tm_sec + fraction;
}

CivilDate SystemClock::today() const {
    const std::tm local = LocalNow();
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday};
}

ClassicRandom::ClassicRandom() : state_(0x50000) {}

float ClassicRandom::next() {
    state_ = (state_ * 1140671485u + 12820163u) & 0xFFFFFFu;
    return static_cast<float>(state_) / 16777216.0f;
}

void ClassicRandom::seed(std::uint32_t value) {
    state_ = value & 0xFFFFFFu;
    fixed_ = true;
}

void ClassicRandom::seedFromClock(double secondsSinceMidnight) {
    if (!fixed_) {
        // Milliseconds, so that two runs within one second start differently.
        state_ = static_cast<std::uint32_t>(secondsSinceMidnight * 1000) & 0xFFFFFFu;
    }
}

bool HeadlessProcesses::start(const std::string& program, const std::string& arguments,
                              WindowStyle style) {
    std::string request = "[start] " + program + (arguments.empty() ? "" : " " + arguments);
    if (style == WindowStyle::Maximised) {
        request += " (maximised)";
    }
    if (echo_ != nullptr) {
        *echo_ << request << '\n' << std::flush;
    }
    requests_.push_back(std::move(request));
    return true;
}

bool HeadlessProcesses::open(const std::string& fileOrAddress) {
    std::string request = "[open] " + fileOrAddress;
    if (echo_ != nullptr) {
        *echo_ << request << '\n' << std::flush;
    }
    requests_.push_back(std::move(request));
    return true;
}

bool HeadlessProcesses::previousInstanceRunning(const std::string&) {
    return false;
}

} // namespace lorvane
