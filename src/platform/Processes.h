#pragma once

#include <string>

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
};

} // namespace lorvane
