#pragma once

#include <string_view>

#include "frame/Workspace.h"

namespace lorvane {

class Clock;

// Writes the session header to LORVANE.DAT/OUTPUT.TXT: without a leading empty line and rule
// when the log is empty, with them otherwise. Silent on file errors.
void OpenLogSession(const Workspace& workspace, const Clock& clock);

// Appends text and a line end to the log; the log is opened, written and closed at once.
// A file error is run-time error 75.
void AppendToLog(const Workspace& workspace, std::string_view text);

} // namespace lorvane
