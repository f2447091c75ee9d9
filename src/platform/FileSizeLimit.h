#pragma once

namespace lorvane {

// A write beyond the process's limit on the size of files fails like a write to a full disk,
// which the program handles (run-time error 75, the log kept whole), instead of ending the
// process by a signal in the middle of a line. Called once at the start of each program.
void FailWritesBeyondTheFileSizeLimit();

} // namespace lorvane
