#pragma once

#include <string>

namespace lorvane {

class Module;
class Surface;

// Saves a picture as the bitmap file of LORVANE.DAT and notes it in the log, after an empty
// line: "Insert picture file LORVANE.DAT/NAME". The bitmap is written under a temporary name
// and takes its own name only when whole, so that no file of that name is ever a piece of a
// picture; the log line follows the whole picture. A picture that cannot be written leaves no
// file and no line behind and is run-time error 75.
void SavePicture(Module& module, const Surface& picture, const std::string& file);

} // namespace lorvane
