#include "WorkFolder.h"

#include <system_error>

#include "frame/DrivePaths.h"
#include "frame/RuntimeError.h"
#include "frame/Startup.h"
#include "frame/TextFile.h"
#include "platform/FileLock.h"

namespace lorvane::desktop {

namespace {

// The package's options in Global.var. None of them changes the VAR module; these are the values
// the module assumes itself when it runs without the main program.
constexpr int OptionCount = 23;

int DefaultOption(int number) {
    switch (number) {
    case 1:
        return 3;
    case 2:
    case 3:
        return 0;
    default:
        return 1;
    }
}

bool IsFile(const std::filesystem::path& file) {
    std::error_code error;
    return std::filesystem::is_regular_file(file, error);
}

} // namespace

Workspace WorkFolderSpace(const std::filesystem::path& workFolder) {
    return Workspace{{}, workFolder, workFolder};
}

void WriteStartupFiles(const std::filesystem::path& workFolder) {
    const Workspace space = WorkFolderSpace(workFolder);
    std::error_code error;
    std::filesystem::create_directories(workFolder, error);

    TextOutput startDir(space.WorkFile("STARTDIR"), TextOutput::Mode::Output);
    startDir.WriteRecord(CommaRecord().Text(std::filesystem::absolute(workFolder, error).string()));
    startDir.Close();

    const std::filesystem::path options = space.WorkFile("Global.var");
    if (!IsFile(options)) {
        CommaRecord record;
        for (int number = 1; number <= OptionCount; ++number) {
            record.Whole(DefaultOption(number));
        }
        TextOutput out(options, TextOutput::Mode::Output);
        out.WriteRecord(record);
        out.Close();
    }
}

bool FillsScreen(int width, int height) {
    // Decision: full size from one and a half times the design size on.
    constexpr int DesignWidth = 640;
    constexpr int DesignHeight = 480;
    return 2 * width >= 3 * DesignWidth && 2 * height >= 3 * DesignHeight;
}

void WriteFullSize(const std::filesystem::path& workFolder, bool full) {
    TextOutput out(WorkFolderSpace(workFolder).WorkFile("fullsize.txt"), TextOutput::Mode::Output);
    out.WriteRecord(CommaRecord().Whole(full ? 1 : 0));
    out.Close();
}

std::optional<std::string> ActiveModule(const std::filesystem::path& workFolder) {
    const Workspace space = WorkFolderSpace(workFolder);
    const std::filesystem::path file = space.WorkFile("ACTIVEMODULE.TXT");
    // The lock decides: a module holds it from before its mark is written to its end. A mark
    // without a holder was left by a module that was killed, and the next start removes it;
    // where no lock can be had, the mark alone counts.
    const FileLock::State lock = FileLock(space.WorkFile(WorkFolderLockName)).state();
    if (lock == FileLock::State::Taken || (lock == FileLock::State::Unavailable && !IsFile(file))) {
        return std::nullopt;
    }
    try {
        TextInput input(file);
        return StripQuotes(input.ReadField(), 0);
    } catch (const RuntimeError&) {
        return std::string();
    }
}

bool HoldsDataSet(const std::filesystem::path& workFolder) {
    const Workspace space = WorkFolderSpace(workFolder);
    return IsFile(space.DataFile("INPUT1.RAN")) && IsFile(space.DataFile("INPUT2.RAN"));
}

std::filesystem::path LogFile(const std::filesystem::path& workFolder) {
    return WorkFolderSpace(workFolder).DataFile("OUTPUT.TXT");
}

} // namespace lorvane::desktop
