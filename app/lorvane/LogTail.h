#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace lorvane::desktop {

// Reads a log that grows while it is shown, from where the last reading stopped. Only whole
// lines are taken, so that a line the module is still writing waits for its end; line ends come
// back as line feeds.
class LogTail {
public:
    explicit LogTail(std::filesystem::path file) : file_(std::move(file)) {}

    struct News {
        std::string Text;
        // The file is shorter than what was read before (it was replaced or removed): Text is
        // the whole file again, and what was shown of it before is void.
        bool Restarted = false;
    };

    // The lines appended since the last call; the first call gives the whole file. A missing
    // file reads as an empty one.
    News ReadNew();

    const std::filesystem::path& File() const { return file_; }

private:
    std::filesystem::path file_;
    std::uintmax_t offset_ = 0;
};

} // namespace lorvane::desktop
