#pragma once

#include <string_view>

#include "frame/Workspace.h"

namespace lorvane {

class Clock;
class Module;

// Writes the session header to LORVANE.DAT/OUTPUT.TXT: without a leading empty line and rule
// when the log is empty, with them otherwise. Silent on file errors. Of the log it reads no more
// than the first few lines, whatever its length.
void OpenLogSession(const Workspace& workspace, const Clock& clock);

// Opens a section of the log: the session header, then the pending report (ResultText) when
// there is one. A report once printed is no longer pending, so that no later section repeats it.
void OpenLogSection(Module& module);

// Appends text and a line end to the log; the log is opened, written and closed at once. The
// append is whole or nothing: a write that fails part way takes its own bytes back, and a file
// error is run-time error 75.
void AppendToLog(const Workspace& workspace, std::string_view text);

} // namespace lorvane
