#pragma once

#include <string>

namespace lorvane {

class Module;

// Opens a page, a local file or a web address, with the desktop's handler. On failure the
// user is told, in a box titled "Browser Unavailable": a local file that exists but does not
// open has no program associated with it; anything else is a problem of the browser. False
// on failure.
bool LaunchPage(Module& module, const std::string& address);

} // namespace lorvane
