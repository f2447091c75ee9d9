#include "SavedPictures.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <system_error>
#include <utility>

#include "WorkFolder.h"
#include "frame/NumberText.h"

namespace lorvane::desktop {

namespace {

// The number of a picture's name ("IRP00012.BMP" -> 12), or -1 for any other name.
int PictureNumber(const std::string& name) {
    const std::string upper = UpperCase(name);
    constexpr std::size_t digits = 5;
    if (upper.size() != 3 + digits + 4 || upper.compare(0, 3, "IRP") != 0 ||
        upper.compare(3 + digits, 4, ".BMP") != 0) {
        return -1;
    }
    int number = 0;
    for (std::size_t i = 3; i < 3 + digits; ++i) {
        if (std::isdigit(static_cast<unsigned char>(upper[i])) == 0) {
            return -1;
        }
        number = number * 10 + (upper[i] - '0');
    }
    return number;
}

} // namespace

std::vector<std::filesystem::path> SavedPictures(const std::filesystem::path& workFolder) {
    std::vector<std::pair<int, std::filesystem::path>> found;
    std::error_code error;
    for (std::filesystem::directory_iterator it(WorkFolderSpace(workFolder).DataSubfolder(), error),
         end;
         !error && it != end; it.increment(error)) {
        const int number = PictureNumber(it->path().filename().string());
        if (number >= 0 && it->is_regular_file(error)) {
            found.emplace_back(number, it->path());
        }
    }
    std::sort(found.begin(), found.end());
    std::vector<std::filesystem::path> pictures;
    pictures.reserve(found.size());
    for (auto& [number, path] : found) {
        pictures.push_back(std::move(path));
    }
    return pictures;
}

} // namespace lorvane::desktop
