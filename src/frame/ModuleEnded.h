#pragma once

#include <exception>

namespace lorvane {

// Thrown once the module has ended (its files are put right and the main program started):
// it unwinds the handler that ended it, and the front end ends the process.
class ModuleEnded : public std::exception {
public:
    const char* what() const noexcept override { return "the module has ended"; }
};

} // namespace lorvane
