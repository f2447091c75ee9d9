#include "structural/WrapTextLine.h"

#include <filesystem>
#include <string_view>
#include <system_error>

#include "frame/DrivePaths.h"
#include "frame/NumberText.h"
#include "frame/RuntimeError.h"
#include "frame/TextFile.h"
#include "frame/Workspace.h"

namespace lorvane {

void WrapTextLine(std::string& rest, std::string& head, int width) {
    rest = TrimRight(rest);
    if (rest.empty()) {
        head.clear();
        return;
    }
    const std::size_t limit = width > 0 ? static_cast<std::size_t>(width) : 0;
    if (limit >= rest.size()) {
        head = rest;
        rest.clear();
        return;
    }
    const std::size_t blank = std::string_view(rest).substr(0, limit).rfind(' ');
    if (blank == std::string_view::npos) {
        head = rest;
        rest.clear();
        return;
    }
    head = rest.substr(0, blank + 1);
    rest = Trim(std::string_view(rest).substr(blank + 1));
}

void WrapExplanationFile(const Workspace& workspace) {
    const std::filesystem::path text = workspace.DataFile("VARTEXT.TMP");
    const std::filesystem::path scratch = workspace.DataFile("VARTEXT2.TMP");
    {
        TextInput input(text);
        TextOutput output(scratch, TextOutput::Mode::Output);
        while (!input.AtEnd()) {
            std::string rest = TrimRight(StripQuotes(input.ReadLine(), 0));
            if (rest.size() <= static_cast<std::size_t>(ExplanationWidth)) {
                output.PrintLine(rest);
                continue;
            }
            std::string head;
            while (!rest.empty()) {
                WrapTextLine(rest, head, ExplanationWidth);
                if (!head.empty()) {
                    output.PrintLine(head);
                }
            }
        }
        output.Close();
    }
    std::error_code error;
    std::filesystem::copy_file(scratch, text, std::filesystem::copy_options::overwrite_existing,
                               error);
    if (error) {
        Raise(PathFileAccessError);
    }
    std::filesystem::remove(scratch, error);
}

} // namespace lorvane
