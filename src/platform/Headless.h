#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/Clock.h"
#include "platform/Dialogs.h"
#include "platform/EventPump.h"
#include "platform/Processes.h"
#include "platform/Random.h"
#include "platform/Screens.h"

namespace lorvane {

// A box came up and the script had no answer queued for it.
class NoQueuedAnswer : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Boxes answered from queues that a script fills. Each box is echoed as one line
// "[box] TITLE | TEXT -> ANSWER" (line breaks of the text shown as \n).
class ScriptedDialogs : public Dialogs {
public:
    explicit ScriptedDialogs(std::ostream* echo = nullptr) : echo_(echo) {}

    void QueueAnswer(std::string button) { answers_.push_back(std::move(button)); }
    void QueueInput(std::optional<std::string> text) { inputs_.push_back(std::move(text)); }
    bool HasPendingAnswers() const { return !answers_.empty() || !inputs_.empty(); }
    // Shows the next box, before it is answered, to watch (once): a screenshot of the box.
    void WatchNextBox(std::function<void(const BoxRequest&)> watch) { watch_ = std::move(watch); }

    std::string showMessage(const MessageBoxRequest& request) override;
    std::optional<std::string> showInput(const InputBoxRequest& request) override;

    // Every box shown so far, as its echo line, and the last message box as it was laid out.
    const std::vector<std::string>& Shown() const { return shown_; }
    const MessageBoxRequest& LastMessage() const { return lastMessage_; }

private:
    void Echo(std::string line);
    void Watch(const BoxRequest& request);

    std::ostream* echo_;
    std::deque<std::string> answers_;
    std::deque<std::optional<std::string>> inputs_;
    std::vector<std::string> shown_;
    MessageBoxRequest lastMessage_;
    std::function<void(const BoxRequest&)> watch_;
};

class HeadlessEventPump : public EventPump {
public:
    void yield() override { ++yields_; }
    long long Yields() const { return yields_; }

private:
    long long yields_ = 0;
};

// The computer's clock in local time.
class SystemClock : public Clock {
public:
    double secondsSinceMidnight() const override;
    CivilDate today() const override;
};

// The classic 24-bit linear congruential generator; the same sequence for the same seed on
// every platform.
class ClassicRandom : public Random {
public:
    ClassicRandom();
    float next() override;
    void seed(std::uint32_t value) override;
    void seedFromClock(double secondsSinceMidnight) override;

private:
    std::uint32_t state_;
    bool fixed_ = false;
};

// Records the programs it is asked to start instead of starting them.
class HeadlessProcesses : public Processes {
public:
    explicit HeadlessProcesses(std::ostream* echo = nullptr) : echo_(echo) {}
    bool start(const std::string& program, const std::string& arguments,
               WindowStyle style) override;
    bool open(const std::string& fileOrAddress) override;
    bool previousInstanceRunning(const std::string& moduleName) override;

    const std::vector<std::string>& Requests() const { return requests_; }

private:
    std::ostream* echo_;
    std::vector<std::string> requests_;
};

// A screen of exactly the design size, never minimised.
class HeadlessScreens : public Screens {
public:
    double screenWidth() const override { return 9600; }
    double screenHeight() const override { return 7200; }
    bool frameMinimised() const override { return false; }
    bool frameMaximised() const override { return false; }
};

} // namespace lorvane
