#include "data/DataFilePair.h"

#include <array>
#include <fstream>
#include <system_error>

#include "frame/RuntimeError.h"

namespace lorvane {

namespace {

constexpr std::array<const char*, 2> Names = {"INPUT1.RAN", "INPUT2.RAN"};
constexpr const char* Forward = "INPUT.NEW";
constexpr const char* Backward = "INPUT.OLD";

std::filesystem::path KeptName(const std::filesystem::path& file) {
    return file.string() + ".old";
}

bool Exists(const std::filesystem::path& file) {
    std::error_code error;
    return std::filesystem::exists(file, error);
}

// A journal is made whole under another name and then renamed into place, so that it is either
// there with its content or not there.
void WriteJournal(const std::filesystem::path& folder, const char* name, const char* content) {
    const std::filesystem::path written = WrittenName(folder / name);
    {
        std::ofstream out(written, std::ios::binary | std::ios::trunc);
        out << content;
        out.close();
        if (!out) {
            Raise(PathFileAccessError);
        }
    }
    std::error_code error;
    std::filesystem::rename(written, folder / name, error);
    if (error) {
        Raise(PathFileAccessError);
    }
}

void RemoveLeftovers(const std::filesystem::path& folder) {
    std::error_code error;
    for (const char* name : Names) {
        std::filesystem::remove(WrittenName(folder / name), error);
    }
    std::filesystem::remove(KeptName(folder / Names[0]), error);
}

// Takes a failed replacement back. The first file is the only one that can have been replaced.
void TakeBack(const std::filesystem::path& folder, bool hadFirst) {
    const std::filesystem::path first = folder / Names[0];
    std::error_code error;
    if (Exists(KeptName(first))) {
        std::filesystem::rename(KeptName(first), first, error);
    } else if (!hadFirst) {
        std::filesystem::remove(first, error);
    }
    if (!error) {
        RemoveLeftovers(folder);
        std::filesystem::remove(folder / Forward, error);
        std::filesystem::remove(folder / Backward, error);
    }
}

// Finishes a replacement whose new files were both whole.
void Finish(const std::filesystem::path& folder) {
    std::error_code error;
    for (const char* name : Names) {
        const std::filesystem::path written = WrittenName(folder / name);
        if (Exists(written)) {
            std::filesystem::rename(written, folder / name, error);
            if (error) {
                return;
            }
        }
    }
    std::filesystem::remove(KeptName(folder / Names[0]), error);
    std::filesystem::remove(folder / Forward, error);
}

} // namespace

std::filesystem::path WrittenName(const std::filesystem::path& file) {
    return file.string() + ".part";
}

void SettleDataFiles(const std::filesystem::path& dataSubfolder) {
    // The backward journal is only ever written over a forward one: it is the later word.
    if (Exists(dataSubfolder / Backward)) {
        std::ifstream journal(dataSubfolder / Backward);
        char hadFirst = '1';
        journal >> hadFirst;
        TakeBack(dataSubfolder, hadFirst != '0');
    } else if (Exists(dataSubfolder / Forward)) {
        Finish(dataSubfolder);
    } else {
        RemoveLeftovers(dataSubfolder);
    }
}

void PutDataFilesInPlace(const std::filesystem::path& dataSubfolder,
                         const std::function<void()>& betweenRenames) {
    const std::filesystem::path first = dataSubfolder / Names[0];
    const std::filesystem::path second = dataSubfolder / Names[1];
    std::error_code error;
    const bool hadFirst = Exists(first);
    if (hadFirst) {
        // A second name for the earlier bytes, or a copy where links are not to be had, to take
        // the replacement back with when the second file cannot be put in place.
        std::filesystem::create_hard_link(first, KeptName(first), error);
        if (error) {
            std::filesystem::copy_file(first, KeptName(first), error);
        }
        if (error) {
            Raise(PathFileAccessError);
        }
    }
    WriteJournal(dataSubfolder, Forward, "");
    std::filesystem::rename(WrittenName(first), first, error);
    if (!error) {
        if (betweenRenames) {
            betweenRenames();
        }
        std::filesystem::rename(WrittenName(second), second, error);
    }
    if (error) {
        // The journal turns round: from here on a crash takes the replacement back as well.
        try {
            WriteJournal(dataSubfolder, Backward, hadFirst ? "1" : "0");
        } catch (const RuntimeError&) {
            // Taken back at once below all the same.
        }
        TakeBack(dataSubfolder, hadFirst);
        Raise(PathFileAccessError);
    }
    std::filesystem::remove(KeptName(first), error);
    std::filesystem::remove(dataSubfolder / Forward, error);
}

} // namespace lorvane
