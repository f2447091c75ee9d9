#include "frame/OutputLog.h"

#include <string>
#include <system_error>

#include "frame/DateText.h"
#include "frame/RuntimeError.h"
#include "frame/TextFile.h"
#include "platform/Clock.h"

namespace lorvane {

namespace {

constexpr std::string_view Rule = "----------------------------------------------";

} // namespace

void OpenLogSession(const Workspace& workspace, const Clock& clock) {
    std::error_code error;
    if (!std::filesystem::is_directory(workspace.DataFolder, error)) {
        return;
    }
    const std::filesystem::path log = workspace.DataFile("OUTPUT.TXT");
    try {
        TextOutput(log, TextOutput::Mode::Append).Close();
        const bool empty = ReadLines(log, 10).empty();
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

void AppendToLog(const Workspace& workspace, std::string_view text) {
    TextOutput out(workspace.DataFile("OUTPUT.TXT"), TextOutput::Mode::Append);
    out.PrintLine(text);
    out.Close();
}

} // namespace lorvane
