#include "frame/DrivePaths.h"

#include <algorithm>

#include "frame/NumberText.h"

namespace lorvane {

namespace {

bool HasDriveLetter(std::string_view path) {
    return path.size() >= 2 && path[1] == ':' && std::isalpha(static_cast<unsigned char>(path[0]));
}

std::string DriveLetterPart(std::string_view folder) {
    return HasDriveLetter(folder) ? std::string(1, folder[0]) + ":" : std::string();
}

// The folder without its trailing separator, unless it is the separator alone.
std::string WithoutTrailingSeparator(std::string folder, char separator) {
    if (folder.size() > 1 && folder.back() == separator) {
        folder.pop_back();
    }
    return folder;
}

} // namespace

std::string StripQuotes(std::string_view text, int quoteAgain) {
    std::string stripped = Trim(text);
    const std::size_t first = stripped.find_first_not_of('"');
    const std::size_t last = stripped.find_last_not_of('"');
    stripped =
        first == std::string::npos ? std::string() : stripped.substr(first, last - first + 1);
    return quoteAgain == 1 ? "\"" + stripped + "\"" : stripped;
}

std::string DriveOf(std::string_view path) {
    const std::string trimmed = Trim(path);
    if (!HasDriveLetter(trimmed)) {
        return "";
    }
    return std::string(1, static_cast<char>(std::tolower(static_cast<unsigned char>(trimmed[0])))) +
           ":";
}

StartFolderChoice ChooseStartFolder(std::string_view executableFolder,
                                    std::optional<std::string> sysLine, PathStyle style) {
    StartFolderChoice choice;
    const char separator = style == PathStyle::Windows ? '\\' : '/';
    choice.Folder = WithoutTrailingSeparator(Trim(executableFolder), separator);
    choice.Drive = style == PathStyle::Windows ? choice.Folder.substr(0, 2) : std::string();
    if (!sysLine) {
        return choice;
    }
    const std::string line = StripQuotes(*sysLine, 0);
    std::string path;
    if (style == PathStyle::Posix && !line.empty() && line.front() == '/') {
        path = line;
    } else if (!line.empty() && line.front() == '\\') {
        path = DriveLetterPart(choice.Folder) + line;
    } else {
        const std::size_t backslash = line.find('\\');
        if (backslash == std::string::npos) {
            return choice;
        }
        path = DriveLetterPart(choice.Folder) + line.substr(backslash);
    }
    if (style == PathStyle::Posix) {
        std::replace(path.begin(), path.end(), '\\', '/');
    }
    // Decision: "C:\LORVANE\" names the same folder as "C:\LORVANE".
    path = WithoutTrailingSeparator(path, separator);
    if (UpperCase(path) != UpperCase(choice.Folder)) {
        choice.TestRun = 1;
        choice.Folder = path;
        choice.Drive = style == PathStyle::Windows ? path.substr(0, 2) : std::string();
    }
    return choice;
}

bool NamesAFolder(std::string_view line, PathStyle style) {
    return style == PathStyle::Windows ? !DriveOf(line).empty()
                                       : !line.empty() && line.front() == '/';
}

std::string WithTrailingSeparator(std::string folder, PathStyle style) {
    const char separator = style == PathStyle::Windows ? '\\' : '/';
    if (folder.empty() || folder.back() != separator) {
        folder.push_back(separator);
    }
    return folder;
}

} // namespace lorvane
