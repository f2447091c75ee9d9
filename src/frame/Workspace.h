#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace lorvane {

// The module's three folders and the paths of the files in them. Names under LORVANE.DAT are
// folded to upper case, so "Route.TMP" and "ROUTE.TMP" are one file on every platform.
struct Workspace {
    std::filesystem::path StartFolder;
    std::filesystem::path WorkFolder;
    std::filesystem::path DataFolder;

    std::filesystem::path DataSubfolder() const { return DataFolder / "LORVANE.DAT"; }
    std::filesystem::path DataFile(std::string_view name) const;
    // A file of the work or start folder: an existing entry whose name matches in any letter
    // case, else the name as given.
    std::filesystem::path WorkFile(std::string_view name) const;
    std::filesystem::path StartFile(std::string_view name) const;
};

// How a file under LORVANE.DAT is named in messages: "LORVANE.DAT/INPUT1.RAN" (with the
// platform's separator).
std::string DataFileText(std::string_view name);

// An existing entry of folder whose name equals name in any letter case, else folder / name.
std::filesystem::path FindFolded(const std::filesystem::path& folder, std::string_view name);

// Deletes the files of folder whose names match pattern ("*" and "?" wildcards), comparing in
// upper case. Errors are ignored. Returns the number of files deleted.
int DeleteMatching(const std::filesystem::path& folder, std::string_view pattern);

bool WildcardMatch(std::string_view pattern, std::string_view name);

} // namespace lorvane
