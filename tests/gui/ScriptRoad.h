#pragma once

#include <filesystem>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include <QTemporaryDir>

#include "GuiFixture.h"
#include "frame/ScriptDriver.h"

namespace lorvane::guitest {

// The folder of the sources, where the examples are.
std::filesystem::path SourceFolder();

// The words of a script line; a word in double quotes may hold blanks.
std::vector<std::string> Words(const std::string& line);

// A line of a road script, split into words (a word in double quotes may hold blanks).
struct RoadLine {
    std::string text;
    std::vector<std::string> words;
    // SCREEN of "verb SCREEN.CONTROL ..." or of "expect-screen SCREEN"; empty for other lines.
    std::string screen() const;
    std::string control() const;
};

// One of the example roads (examples/NAME.var on e1.csv) walked with the module's own screens
// in a fixture's frame. The lines run through the headless script driver; a test takes over
// the lines it wants to perform through the views.
class ScriptRoad {
public:
    ScriptRoad(GuiFixture& fixture, const std::string& example);

    // Runs the road. Before each line, takeOver is asked with the line and the one after it
    // (nullptr at the end); when it answers true, the test has performed the line itself.
    // False when the driver failed; its messages are in problems().
    bool walk(const std::function<bool(const RoadLine&, const RoadLine*)>& takeOver = {});
    std::string problems() const { return errors_.str(); }

    // OUTPUT.TXT with the session's date and time masked, and the log the scripted run of the
    // same road expects.
    std::string log() const;
    std::string expectedLog() const;

    // The views follow the logic, and every view takes clicks again.
    void settle();

private:
    GuiFixture& fixture_;
    std::string example_;
    QTemporaryDir root_;
    std::ostringstream out_;
    std::ostringstream errors_;
    std::unique_ptr<ScriptDriver> driver_;
    std::vector<RoadLine> lines_;
};

} // namespace lorvane::guitest
