#include "frame/OutputLog.h"

#include <fstream>
#include <limits>
#include <string>
#include <system_error>
#include <vector>

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

// Appends lines to the log whole, or not at all. A write that fails part way (a full disk, a
// limit on the size of files) has left a torn piece of these lines at the end of the log: the
// log is cut back to the length it had before, which takes back our own bytes and never
// touches what was there. The failure is run-time error 75.
void AppendWhole(const std::filesystem::path& log, const std::vector<std::string_view>& lines) {
    std::string bytes;
    for (const std::string_view line : lines) {
        bytes.append(line).append("\r\n");
    }
    std::ofstream out(log, std::ios::binary | std::ios::app);
    std::error_code error;
    const std::uintmax_t before = std::filesystem::file_size(log, error);
    if (!out || error) {
        Raise(PathFileAccessError);
    }
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) {
        std::filesystem::resize_file(log, before, error);
        Raise(PathFileAccessError);
    }
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
        const std::string date = "Session date: " + SessionDateText(clock);
        const std::string time = "Session time: " + ClockTimeText(clock.secondsSinceMidnight());
        std::vector<std::string_view> header;
        if (!empty) {
            header = {"", Rule};
        }
        header.insert(header.end(), {title, date, time, Rule});
        AppendWhole(log, header);
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
    AppendWhole(workspace.DataFile("OUTPUT.TXT"), {text});
}

} // namespace lorvane
