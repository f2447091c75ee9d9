#pragma once

#include <filesystem>

namespace lorvane {

// An advisory lock of the operating system on one file, held while the object lives. Two
// holders exclude each other even within one process.
class FileLock {
public:
    enum class State { Taken, HeldElsewhere, Unavailable };

    // Tries once, without waiting; the file is made when it is missing.
    explicit FileLock(const std::filesystem::path& file);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    State state() const { return state_; }

private:
    State state_ = State::Unavailable;
#ifdef _WIN32
    void* handle_ = nullptr;
#else
    int descriptor_ = -1;
#endif
};

} // namespace lorvane
