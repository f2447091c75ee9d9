#include "frame/Startup.h"

#include <algorithm>
#include <system_error>

#include "data/DataFilePair.h"
#include "dialogs/GuidedTour.h"
#include "frame/DrivePaths.h"
#include "frame/Module.h"
#include "frame/ModuleEnded.h"
#include "frame/NumberText.h"
#include "frame/TextFile.h"
#include "platform/Clock.h"
#include "platform/FileLock.h"
#include "platform/Processes.h"
#include "platform/Random.h"
#include "platform/Screens.h"

#ifndef LORVANE_WEB_BASE
#define LORVANE_WEB_BASE "https://lorvane.example/"
#endif

namespace lorvane {

namespace {

std::string NativeText(const std::filesystem::path& path) {
    return path.string();
}

// The first line of a file, or nothing when it cannot be read.
std::optional<std::string> FirstLine(const std::filesystem::path& file) {
    try {
        TextInput input(file);
        return input.ReadLine();
    } catch (const RuntimeError&) {
        return std::nullopt;
    }
}

void WriteStartDir(Module& module, const std::filesystem::path& folder) {
    try {
        {
            TextOutput out(module.WorkFile("STARTDIR"), TextOutput::Mode::Output);
            out.WriteRecord(CommaRecord().Text(NativeText(folder)));
            out.Close();
        }
        std::error_code error;
        std::filesystem::copy_file(module.WorkFile("STARTDIR"), module.WorkFolder / "STARTDIR.TMP",
                                   std::filesystem::copy_options::overwrite_existing, error);
    } catch (const RuntimeError&) {
        // A work folder that cannot be written shows up at the first real file.
    }
}

// The root of the first writable drive; on POSIX the user's home folder stands for it.
std::filesystem::path FirstFixedDriveRoot() {
#ifdef _WIN32
    for (char letter = 'c'; letter <= 'z'; ++letter) {
        const std::filesystem::path root = std::string(1, letter) + ":\\";
        std::error_code error;
        if (std::filesystem::is_directory(root, error)) {
            return root;
        }
    }
    return "c:\\";
#else
    const char* home = std::getenv("HOME");
    return home != nullptr && *home != '\0' ? std::filesystem::path(home)
                                            : std::filesystem::path("/");
#endif
}

// The data folder when STARTDIR does not name a usable one: the work folder when it was given,
// else the root of the first fixed drive.
std::filesystem::path DefaultDataFolder(const Module& module) {
    return module.WorkFolderGiven == 1 ? module.WorkFolder : FirstFixedDriveRoot();
}

bool CanEnter(const std::filesystem::path& folder) {
    std::error_code error;
    return std::filesystem::is_directory(folder, error);
}

void SecondInstanceGuard(Module& module) {
    const std::filesystem::path active = module.WorkFile("ACTIVEMODULE.TXT");
    // The module holds the work folder's lock from here to its end, before it writes anything,
    // so ACTIVEMODULE.TXT, written at the end of the start, always has a holder beside it while
    // the module runs.
    const FileLock::State lock =
        module.platform().processes.holdLock(module.WorkFile(WorkFolderLockName));
    std::error_code error;
    // Decision: a mark without a module that holds the lock was left by a module that was
    // killed; it is stale, is removed, and the start goes on. A lock held by another process
    // stops the start whatever the mark says (it may not be written yet, or may have been
    // removed); where no lock can be had here, the mark alone decides.
    if (lock == FileLock::State::Taken && std::filesystem::exists(active, error)) {
        std::filesystem::remove(active, error);
    }
    if (lock == FileLock::State::HeldElsewhere || std::filesystem::exists(active, error)) {
        std::string name = module.ModuleName;
        try {
            TextInput input(active);
            const std::string marked = StripQuotes(input.ReadField(), 0);
            if (!marked.empty()) {
                name = marked;
            }
        } catch (const RuntimeError&) {
            if (lock != FileLock::State::HeldElsewhere) {
                std::filesystem::remove(active, error);
                return;
            }
        }
        module.boxes().MessageBoxShort("A previous instance of Lorvane module " + name +
                                           " is running! End it first.",
                                       0, "Error!");
        throw ModuleEnded();
    }
    if (module.WorkFolderGiven == 0 &&
        module.platform().processes.previousInstanceRunning(module.ModuleName) &&
        module.ModuleName != "LORVANE") {
        const std::string& name = module.ModuleName;
        module.boxes().MessageBoxShort(
            "A previous instance of the Lorvane sub-program " + name +
                " is still running, in minimized form!\r\n" + "If the " + name +
                " icon is visible, restore it and continue, or close it. Otherwise, " +
                "minimize LORVANE, restore " + name + " or close it, and once " + name +
                " is finished, restore LORVANE to continue. ",
            0, "A previous instance of LORVANE is still running!");
        throw ModuleEnded();
    }
}

[[noreturn]] void StandAloneGuard(Module& module) {
    module.boxes().MessageBoxShort(std::string("This program will not run stand alone! ") +
                                       "It runs only via the main program (LORVANE.EXE). " +
                                       "Please read the instructions on how to run Lorvane! " +
                                       "You can find them on web page " + "\"" + module.WebBase +
                                       "LORVANE.HTM\" " + "or in Lorvane itself. ",
                                   0, module.ModuleName + ".EXE");
#ifdef _WIN32
    const std::filesystem::path program = module.StartFolder / "LORVANE.EXE";
#else
    const std::filesystem::path program = module.StartFolder / "lorvane";
#endif
    module.platform().processes.start(NativeText(program), NativeText(module.WorkFolder),
                                      WindowStyle::Normal);
    throw ModuleEnded();
}

} // namespace

void SetParameterBlock(Module& module) {
    module.ResetLimits();
    module.SelVarTitle = "Select the variables in your VAR model";
    module.ScreenAfterSelVar = "SelObs";
    module.SelectedCaption = "Selected variables in the VAR model";
    module.SecondSelectedCaption.clear();
    module.ScreenAfterSelObs.clear();
    module.ScreenAfterInfo = "VARDetermin";
    module.ResetModel();
    module.q = 0;
    module.Restricted = 0;
}

void ResolveStartFolder(Module& module, const std::filesystem::path& executableFolder) {
    const std::optional<std::string> sysLine =
        FirstLine(FindFolded(executableFolder, "Lorvane.SYS"));
    const StartFolderChoice choice = ChooseStartFolder(NativeText(executableFolder), sysLine);
    module.StartFolder = choice.Folder;
    module.StartDrive = choice.Drive;
    module.TestRun = choice.TestRun;
}

void ResolveDataFolder(Module& module) {
    std::error_code error;
    std::filesystem::create_directories(module.WorkFolder, error);
    const std::filesystem::path startDir = module.WorkFile("STARTDIR");
    std::filesystem::path folder;
    if (FileExists(startDir) == 0) {
        folder = DefaultDataFolder(module);
        WriteStartDir(module, folder);
    } else {
        std::filesystem::copy_file(startDir, module.WorkFolder / "STARTDIR.TMP",
                                   std::filesystem::copy_options::overwrite_existing, error);
        std::string line = Trim(StripQuotes(FirstLine(startDir).value_or(""), 0));
        if (NativePathStyle == PathStyle::Windows) {
            line = UpperCase(line);
        }
        folder = NamesAFolder(line) ? std::filesystem::path(line) : DefaultDataFolder(module);
        if (!CanEnter(folder)) {
            folder = DefaultDataFolder(module);
            WriteStartDir(module, folder);
        }
    }
    module.DataFolder = WithTrailingSeparator(NativeText(folder));
    module.DataDrive = DriveOf(NativeText(folder));
    module.DataFolderCopy = module.DataFolder;
}

void ReadGlobalOptions(Module& module) {
    try {
        TextInput input(module.WorkFile("Global.var"));
        for (Int16& option : module.GlobalOption) {
            option = input.ReadWhole();
        }
    } catch (const RuntimeError&) {
        // A missing or short file leaves the options that were not read at 0.
    }
}

void ReplaceOptionsForTestRun(Module& module) {
    for (int i = 4; i <= 22; ++i) {
        module.GlobalOption[static_cast<std::size_t>(i - 1)] = 1;
    }
    module.GlobalOption[22] = 1;
    module.GlobalOption[0] = 3;
    module.GlobalOption[2] = 0;
}

int ReadFullSize(Module& module) {
    try {
        TextInput input(module.WorkFile("fullsize.txt"));
        return input.ReadWhole() == 1 ? 1 : 0;
    } catch (const RuntimeError&) {
        return 0;
    }
}

std::string ReadBaseAddress(Module& module) {
    std::string address = StripQuotes(FirstLine(module.StartFile("URLKMT.TXT")).value_or(""), 0);
    if (address.empty()) {
        address = LORVANE_WEB_BASE;
    }
    if (address.back() != '/') {
        address.push_back('/');
    }
    return address;
}

void SetFramePosition(Module& module) {
    const Screens& screens = module.platform().screens;
    if (screens.frameMinimised()) {
        return;
    }
    if (module.FullSize == 1) {
        module.FrameTop = 0;
        module.FrameLeft = 0;
        module.FrameWidth = screens.screenWidth();
        module.FrameHeight = screens.screenHeight();
        return;
    }
    try {
        TextInput input(module.WorkFile("TOPLEFT.TXT"));
        const double top = input.ReadNumber();
        const double left = input.ReadNumber();
        module.FrameTop = top;
        module.FrameLeft = left;
        return;
    } catch (const RuntimeError&) {
        // Missing or unreadable: centre the frame and keep that position.
    }
    module.FrameLeft = (screens.screenWidth() - module.FrameWidth) / 2;
    module.FrameTop = (screens.screenHeight() - module.FrameHeight) / 2;
    module.SaveFramePosition();
}

void FrameResize(Module& module) {
    if (module.FrameReady == 0) {
        return;
    }
    if (module.platform().screens.frameMinimised()) {
        module.Caption = "LORVANE";
        module.TimerInterval = 0;
        return;
    }
    module.Caption = module.FrameCaption;
    module.FrameState = module.FullSize == 1 ? WindowState::Maximised : WindowState::Normal;
    module.TimerInterval = 2000;
    if (module.FrameState == WindowState::Normal) {
        module.FrameHeight = Module::DesignHeight;
        module.FrameWidth = Module::DesignWidth;
    }
}

void ModuleEntry(Module& module, const std::string& commandLine,
                 const std::filesystem::path& executableFolder) {
    SetParameterBlock(module);
    const Screens& screens = module.platform().screens;

    module.FrameReady = 0;
    module.FrameHeight = Module::DesignHeight;
    module.FrameWidth = Module::DesignWidth;
    module.FrameClientWidth = Module::DesignWidth;
    module.FrameClientHeight = Module::DesignHeight;
    ResolveStartFolder(module, executableFolder);
    module.FrameCaption = "Lorvane International";
    std::string caption = module.FrameCaption;

    bool standAlone = false;
    module.WorkFolder = Trim(commandLine);
    const std::filesystem::path defaultWork = module.StartFolder / "TEMP";
    if (module.WorkFolder.empty()) {
        module.WorkFolder = defaultWork;
        standAlone = true;
    }
    module.WorkFolderGiven =
        UpperCase(NativeText(module.WorkFolder)) == UpperCase(NativeText(defaultWork)) ? 0 : 1;
    std::error_code error;
    std::filesystem::create_directories(module.WorkFolder, error);

    caption += " (Module " + module.ModuleName + ")";
    if (module.TestRun == 1) {
        caption += " [TEST RUN]";
        standAlone = false;
    }
    module.Caption = caption;
    if (module.TestRun != 1) {
        SecondInstanceGuard(module);
    }
    module.ModuleCaption = caption;
    module.FrameCaption = caption;

    ResolveDataFolder(module);
    if (module.TestRun != 1) {
        // An import that a crash interrupted is finished or taken back before any screen reads
        // the data files; the lock keeps imports out from here on.
        SettleDataFiles(module.DataSubfolder());
    }

    module.ScreenScale = std::max(1.0, std::min(screens.screenWidth() / Module::DesignWidth,
                                                screens.screenHeight() / Module::DesignHeight));
    module.FullSize = module.ScreenScale == 1 ? 0 : ReadFullSize(module);
    if (module.FullSize == 1) {
        module.FrameState = WindowState::Maximised;
    }

    module.FrameReady = 1;
    SetFramePosition(module);
    ReadGlobalOptions(module);
    module.WebBase = ReadBaseAddress(module);
    if (module.TestRun == 1) {
        ReplaceOptionsForTestRun(module);
    }
    if (standAlone) {
        StandAloneGuard(module);
    }
    module.platform().random.seedFromClock(module.platform().clock.secondsSinceMidnight());

    module.GoToScreen("SelVar1");
    module.TimerInterval = 2000;
    TourTest(module);
    module.WriteActiveModule();
}

} // namespace lorvane
