#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace lorvane {

// Folder texts of the two kinds of platform the module knows: with drive letters and
// backslashes ("C:\LORVANE"), or POSIX ("/opt/lorvane"), where a drive is the empty text.
enum class PathStyle { Windows, Posix };

#ifdef _WIN32
inline constexpr PathStyle NativePathStyle = PathStyle::Windows;
#else
inline constexpr PathStyle NativePathStyle = PathStyle::Posix;
#endif

// Trims blanks and removes all leading and trailing double quotes; with quoteAgain = 1 the
// result is wrapped in one pair of quotes, so that a path with blanks survives a command line.
std::string StripQuotes(std::string_view text, int quoteAgain);

// "c:" for a text that starts with a drive letter and a colon; empty otherwise.
std::string DriveOf(std::string_view path);

struct StartFolderChoice {
    std::string Folder;
    std::string Drive;
    int TestRun = 0;
};

// The start folder from the executable's folder and the first line of Lorvane.SYS, if there is
// one: a line that begins with a backslash is a path on the executable's drive; otherwise its
// drive letter is replaced by the executable's. On POSIX a line that begins with "/" is a full
// path, and a line in drive-letter form keeps its path from the first backslash on. A folder
// other than the executable's (compared in upper case) makes the run a test run.
StartFolderChoice ChooseStartFolder(std::string_view executableFolder,
                                    std::optional<std::string> sysLine,
                                    PathStyle style = NativePathStyle);

// True when a STARTDIR line names a folder of the platform: a drive letter on Windows, an
// absolute path on POSIX.
bool NamesAFolder(std::string_view line, PathStyle style = NativePathStyle);

// The folder with one trailing separator.
std::string WithTrailingSeparator(std::string folder, PathStyle style = NativePathStyle);

} // namespace lorvane
