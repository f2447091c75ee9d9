#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace lorvane {

class Module;

// The file of the work folder whose advisory lock a running module holds from its start to its
// end (the file itself stays). ACTIVEMODULE.TXT counts only while some module holds this lock.
inline constexpr std::string_view WorkFolderLockName = "ACTIVEMODULE.LCK";

// The process entry of the module: sets the parameter block and loads the frame, which
// resolves the folders, passes the guards, opens the first screen and writes
// ACTIVEMODULE.TXT. A guard that stops the start throws ModuleEnded.
void ModuleEntry(Module& module, const std::string& commandLine,
                 const std::filesystem::path& executableFolder);

// The parts of the frame load, each usable on its own.
void SetParameterBlock(Module& module);
void ResolveStartFolder(Module& module, const std::filesystem::path& executableFolder);
void ResolveDataFolder(Module& module);
void ReadGlobalOptions(Module& module);
void ReplaceOptionsForTestRun(Module& module);
void SetFramePosition(Module& module);
// 1 when fullsize.txt holds 1, else 0.
int ReadFullSize(Module& module);
// The frame was resized, minimised or restored: the caption and the tick follow, and a normal
// frame keeps its design size.
void FrameResize(Module& module);
// The base address of the package's web pages, ending in "/".
std::string ReadBaseAddress(Module& module);

} // namespace lorvane
