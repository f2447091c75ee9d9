#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "frame/Workspace.h"

namespace lorvane::desktop {

// A work folder as the main program sees it. Lorvane keeps the data set and the results of a
// work folder in the folder itself: its LORVANE.DAT holds INPUT1.RAN, INPUT2.RAN, OUTPUT.TXT and
// the saved pictures.
Workspace WorkFolderSpace(const std::filesystem::path& workFolder);

// The main program's files of the hand-over, written before the module starts: STARTDIR names
// the work folder as the folder the user works in, so that the module keeps its data and results
// there; Global.var gets the package's options when the folder has none yet. Throws
// RuntimeError when the folder cannot be written.
void WriteStartupFiles(const std::filesystem::path& workFolder);

// The module that is using the work folder (the name in ACTIVEMODULE.TXT), or nothing when no
// module is; an unreadable file gives an empty name.
std::optional<std::string> ActiveModule(const std::filesystem::path& workFolder);

// Whether the work folder holds a data set: both data files of LORVANE.DAT.
bool HoldsDataSet(const std::filesystem::path& workFolder);

// The log of the work folder, LORVANE.DAT/OUTPUT.TXT.
std::filesystem::path LogFile(const std::filesystem::path& workFolder);

} // namespace lorvane::desktop
