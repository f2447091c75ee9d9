#pragma once

#include <string>

namespace lorvane {

class Module;
class Surface;

// Saves the picture as the next free numbered bitmap under LORVANE.DAT and notes it in the
// log ("Insert picture file ..."). Gives the file's name as the user sees it. A bitmap that
// cannot be written is run-time error 75.
std::string SavePicture(Module& module, const Surface& surface);

} // namespace lorvane
