#include "platform/Processes.h"

namespace lorvane {

FileLock::State Processes::holdLock(const std::filesystem::path& file) {
    held_.reset();
    held_ = std::make_unique<FileLock>(file);
    return held_->state();
}

} // namespace lorvane
