#include "structural/NonstructuralFiles.h"

#include <filesystem>
#include <string>

#include "frame/RuntimeError.h"
#include "frame/TextFile.h"
#include "frame/Workspace.h"

namespace lorvane {

namespace {

// Copies from over to when from exists and has a first line; an empty file counts as missing.
void CopyIfPresent(const std::filesystem::path& from, const std::filesystem::path& to) {
    if (FileExists(from) != 1) {
        return;
    }
    std::error_code error;
    std::filesystem::copy_file(from, to, std::filesystem::copy_options::overwrite_existing, error);
    if (error) {
        Raise(PathFileAccessError);
    }
}

} // namespace

void SaveNonstructuralFiles(const Workspace& workspace) {
    for (std::size_t index = 1; index < NonstructuralFileNames.size(); ++index) {
        const std::string name(NonstructuralFileNames[index]);
        CopyIfPresent(workspace.DataFile(name), workspace.DataFile("B" + name));
    }
}

void RestoreNonstructuralFiles(const Workspace& workspace) {
    for (std::size_t index = 1; index < NonstructuralFileNames.size(); ++index) {
        const std::string name(NonstructuralFileNames[index]);
        CopyIfPresent(workspace.DataFile("B" + name), workspace.DataFile(name));
    }
}

} // namespace lorvane
