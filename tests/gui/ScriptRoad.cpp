#include "ScriptRoad.h"

#include <fstream>
#include <iterator>

#include <QTest>

#include "data/CsvImport.h"
#include "frame/ScreenTable.h"
#include "frame/Startup.h"

namespace lorvane::guitest {

namespace {

std::string Read(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// Line ends as LF, the session's date and time as the scripted runs mask them.
std::string Masked(const std::string& log) {
    std::istringstream in(log);
    std::string masked;
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        for (const std::string head : {"Session date: ", "Session time: "}) {
            if (line.starts_with(head)) {
                line = head + "*";
            }
        }
        masked += line + "\n";
    }
    return masked;
}

} // namespace

std::vector<std::string> Words(const std::string& line) {
    std::vector<std::string> words;
    std::size_t i = 0;
    while (i < line.size()) {
        if (line[i] == ' ') {
            ++i;
        } else if (line[i] == '"') {
            const std::size_t close = line.find('"', i + 1);
            words.push_back(line.substr(i + 1, close - i - 1));
            i = close == std::string::npos ? line.size() : close + 1;
        } else {
            const std::size_t end = std::min(line.find(' ', i), line.size());
            words.push_back(line.substr(i, end - i));
            i = end;
        }
    }
    return words;
}

std::filesystem::path SourceFolder() {
    return LORVANE_SOURCE_DIR;
}

std::string RoadLine::screen() const {
    if (words.size() < 2 || words[0] == "answer" || words[0] == "input" || words[0] == "seed") {
        return {};
    }
    return words[1].substr(0, words[1].find('.'));
}

std::string RoadLine::control() const {
    const std::size_t point = words.size() < 2 ? std::string::npos : words[1].find('.');
    return point == std::string::npos ? std::string() : words[1].substr(point + 1);
}

ScriptRoad::ScriptRoad(GuiFixture& fixture, const std::string& example)
    : fixture_(fixture), example_(example) {
    Module& module = fixture.module();
    module.UseScreenTable(CreateScreen);
    const std::filesystem::path work = root_.filePath("work").toStdString();
    const std::filesystem::path start = root_.filePath("start").toStdString();
    std::filesystem::create_directories(start);
    WriteDataFiles(ParseCsv(Read(SourceFolder() / "examples" / "e1.csv"), {}), work);
    driver_ = std::make_unique<ScriptDriver>(
        module, fixture.scripted(), out_, errors_,
        [&module, work, start] { ModuleEntry(module, work.string(), start); });

    std::ifstream script(SourceFolder() / "examples" / (example + ".var"));
    for (std::string text; std::getline(script, text);) {
        if (!text.empty() && text.back() == '\r') {
            text.pop_back();
        }
        if (!text.empty() && text[0] != '#') {
            lines_.push_back(RoadLine{text, Words(text)});
        }
    }
}

bool ScriptRoad::walk(const std::function<bool(const RoadLine&, const RoadLine*)>& takeOver) {
    std::string pending;
    const auto flush = [this, &pending] {
        std::istringstream chunk(pending);
        pending.clear();
        return driver_->Run(chunk) == ScriptDriver::Done;
    };
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        const RoadLine* next = i + 1 < lines_.size() ? &lines_[i + 1] : nullptr;
        // The module starts with the first line the driver runs.
        if (takeOver && i > 0) {
            if (!flush()) {
                return false;
            }
            if (takeOver(lines_[i], next)) {
                continue;
            }
        }
        pending += lines_[i].text + "\n";
    }
    return flush();
}

void ScriptRoad::settle() {
    gui::Wallpaper& frame = fixture_.frame();
    frame.refresh();
    for (gui::ScreenView* view : frame.views()) {
        QTRY_VERIFY(!view->holdsClicks());
    }
}

std::string ScriptRoad::log() const {
    return Masked(Read(fixture_.module().DataFile("OUTPUT.TXT")));
}

std::string ScriptRoad::expectedLog() const {
    return Masked(Read(SourceFolder() / "tests" / "scripts" / ("example_" + example_ + ".log")));
}

} // namespace lorvane::guitest
