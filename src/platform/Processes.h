#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/FileLock.h"

namespace lorvane {

enum class WindowStyle { Normal, Maximised };

class Processes {
public:
    virtual ~Processes() = default;
    // Starts a program with a command line; false when it could not be started.
    virtual bool start(const std::string& program, const std::string& arguments,
                       WindowStyle style) = 0;
    // Opens a file or an address with the desktop's handler; false on failure.
    virtual bool open(const std::string& fileOrAddress) = 0;
    // Takes the advisory lock that marks this executable as running, for the life of the
    // process; true when another instance holds it already.
    virtual bool previousInstanceRunning(const std::string& moduleName) = 0;
    // Takes the advisory lock of a file (made when missing) and holds it from now on, for the
    // life of the process; a later call gives up the lock it held. Says whether the lock was
    // taken, or another holder has it, or it cannot be had here.
    virtual FileLock::State holdLock(const std::filesystem::path& file);
    // Gives up the lock held, if any.
    void releaseLock() { held_.reset(); }

private:
    std::unique_ptr<FileLock> held_;
};

} // namespace lorvane
