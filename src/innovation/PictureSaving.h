#pragma once

#include <string>

namespace lorvane {

class Module;
class Surface;

// Saves the picture as the next free numbered bitmap under LORVANE.DAT and notes it in the
// log, after an empty line: "Insert picture file LORVANE.DAT/NAME". Gives the file's name as
// the user sees it. The bitmap is written under a temporary name and takes its own name only
// when whole, so that no file of that name is ever a piece of a picture; the log line follows
// the whole picture. A picture that cannot be written leaves no file and no line behind and is
// run-time error 75.
std::string SavePicture(Module& module, const Surface& surface);

} // namespace lorvane
