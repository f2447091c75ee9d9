#pragma once

#include <filesystem>
#include <sstream>
#include <string>

#include "frame/Control.h"
#include "frame/Module.h"
#include "platform/Clock.h"
#include "platform/Headless.h"
#include "platform/Screens.h"

namespace lorvane::test {

// A clock that shows a set date and time.
class FixedClock : public Clock {
public:
    double seconds = 19 * 3600 + 36 * 60 + 5;
    CivilDate date{2026, 11, 22};
    double secondsSinceMidnight() const override { return seconds; }
    CivilDate today() const override { return date; }
};

// A screen of a size that tests set, in twips.
class SizedScreens : public Screens {
public:
    double width = 9600;
    double height = 7200;
    bool minimised = false;
    double screenWidth() const override { return width; }
    double screenHeight() const override { return height; }
    bool frameMinimised() const override { return minimised; }
    bool frameMaximised() const override { return false; }
};

// A fresh temporary folder, removed with the object.
class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    const std::filesystem::path& Path() const { return path_; }

private:
    std::filesystem::path path_;
};

// A module on the headless platform with its folders in a temporary folder: start, work and
// data folder are <temp>/start, <temp>/work and <temp>/data, and LORVANE.DAT exists.
class TestModule {
public:
    TestModule();

    Module& module() { return module_; }
    ScriptedDialogs& dialogs() { return dialogs_; }
    HeadlessProcesses& processes() { return processes_; }
    FixedClock& clock() { return clock_; }
    SizedScreens& screens() { return screens_; }
    const std::filesystem::path& Root() const { return temp_.Path(); }
    std::string Echo() const { return echo_.str(); }

private:
    TempFolder temp_;
    std::ostringstream echo_;
    ScriptedDialogs dialogs_{&echo_};
    HeadlessEventPump events_;
    FixedClock clock_;
    ClassicRandom random_;
    HeadlessProcesses processes_{&echo_};
    SizedScreens screens_;
    Module module_;
};

// The control of a loaded screen; a screen that is not loaded fails the test with error 9.
Control& Ctl(Module& module, std::string_view screen, std::string_view control);

// The whole content of a file, bytes as they are.
std::string ReadFile(const std::filesystem::path& file);
void WriteFile(const std::filesystem::path& file, const std::string& content);

} // namespace lorvane::test
