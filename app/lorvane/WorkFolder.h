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

// Whether the module's frame fills a screen with this much room (in pixels): where the room is
// half as large again as the frame's design size (640 x 480) both ways, the design size looks
// small and the module runs in full size.
bool FillsScreen(int width, int height);

// fullsize.txt, which tells the module whether to fill the screen: 1 or 0. Throws RuntimeError
// when the folder cannot be written.
void WriteFullSize(const std::filesystem::path& workFolder, bool full);

// The module that is using the work folder (the name in ACTIVEMODULE.TXT), or nothing when no
// module is: no process holds the folder's lock, whatever the mark says. A folder held without a
// readable mark (a module starting, or a mark removed) gives an empty name.
std::optional<std::string> ActiveModule(const std::filesystem::path& workFolder);

// Whether the work folder holds a data set: both data files of LORVANE.DAT.
bool HoldsDataSet(const std::filesystem::path& workFolder);

// The log of the work folder, LORVANE.DAT/OUTPUT.TXT.
std::filesystem::path LogFile(const std::filesystem::path& workFolder);

} // namespace lorvane::desktop
