#pragma once

#include <filesystem>
#include <vector>

namespace lorvane::desktop {

// The pictures the module has saved in a work folder: LORVANE.DAT/IRPnnnnn.BMP, in any letter
// case, in the order of their numbers. Other files are no pictures of the module.
std::vector<std::filesystem::path> SavedPictures(const std::filesystem::path& workFolder);

} // namespace lorvane::desktop
