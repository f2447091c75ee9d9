#include "frame/OutputLog.h"

#include <fstream>
#include <limits>
#include <string>
#include <system_error>

#include "frame/DateText.h"
#include "frame/Module.h"
#include "frame/RuntimeError.h"
#include "frame/TextFile.h"
#include "platform/Clock.h"

namespace lorvane {

namespace {

constexpr std::string_view Rule = "----------------------------------------------";

// The number of lines of a file, counted up to limit: the lines are skipped, never kept, so a
// log of any length costs no memory. A file that cannot be read has no lines.
std::size_t CountLines(const std::filesystem::path& file, std::size_t limit) {
    std::ifstream in(file, std::ios::binary);
    std::size_t count = 0;
    while (count < limit && in.peek() != std::ifstream::traits_type::eof()) {
        in.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
        ++count;
    }
    return count;
}

} // namespace

void OpenLogSession(const Workspace& workspace, const Clock& clock) {
    std::error_code error;
    if (!std::filesystem::is_directory(workspace.DataFolder, error)) {
        return;
    }
    const std::filesystem::path log = workspace.DataFile("OUTPUT.TXT");
    try {
        TextOutput(log, TextOutput::Mode::Append).Close();
        const bool empty = CountLines(log, 10) == 0;
        std::string title = "Lorvane International";
        const std::string built = CompileDateText(workspace);
        if (!built.empty()) {
            title += " [" + built + "]";
        }
        TextOutput out(log, TextOutput::Mode::Append);
        if (!empty) {
            out.PrintLine("");
            out.PrintLine(Rule);
        }
        out.PrintLine(title);
        out.PrintLine("Session date: " + SessionDateText(clock));
        out.PrintLine("Session time: " + ClockTimeText(clock.secondsSinceMidnight()));
        out.PrintLine(Rule);
        out.Close();
    } catch (const RuntimeError&) {
        // The session header is a courtesy; a log that cannot be written shows up later.
    }
}

void OpenLogSection(Module& module) {
    OpenLogSession(module, module.platform().clock);
    if (!module.ResultText.empty()) {
        AppendToLog(module, module.ResultText);
        module.ResultText.clear();
    }
}

void AppendToLog(const Workspace& workspace, std::string_view text) {
    TextOutput out(workspace.DataFile("OUTPUT.TXT"), TextOutput::Mode::Append);
    out.PrintLine(text);
    out.Close();
}

} // namespace lorvane
