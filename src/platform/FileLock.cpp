#include "platform/FileLock.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#endif

namespace lorvane {

#ifdef _WIN32

// A file opened without sharing is the lock: a second open fails while the first lives.
FileLock::FileLock(const std::filesystem::path& file) {
    const HANDLE handle = CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                      OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle != INVALID_HANDLE_VALUE) {
        handle_ = handle;
        state_ = State::Taken;
    } else if (GetLastError() == ERROR_SHARING_VIOLATION) {
        state_ = State::HeldElsewhere;
    }
}

FileLock::~FileLock() {
    if (handle_ != nullptr) {
        CloseHandle(static_cast<HANDLE>(handle_));
    }
}

#else

// flock belongs to the open file, so that two opens exclude each other even in one process;
// the system releases it when the process ends, however it ends.
FileLock::FileLock(const std::filesystem::path& file) {
    descriptor_ = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (descriptor_ < 0) {
        return;
    }
    if (::flock(descriptor_, LOCK_EX | LOCK_NB) == 0) {
        state_ = State::Taken;
        return;
    }
    state_ = errno == EWOULDBLOCK ? State::HeldElsewhere : State::Unavailable;
    ::close(descriptor_);
    descriptor_ = -1;
}

FileLock::~FileLock() {
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

#endif

} // namespace lorvane
