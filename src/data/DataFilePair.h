#pragma once

#include <filesystem>
#include <functional>

namespace lorvane {

// INPUT1.RAN and INPUT2.RAN are one data set: they are replaced together, across a crash too.
// The new files are written beside their final names first (NAME.part); a journal in
// LORVANE.DAT then says which way an interrupted replacement goes:
//   INPUT.NEW  both new files are whole: the replacement is finished by putting every .part
//              that is left in place;
//   INPUT.OLD  the replacement failed and is taken back: INPUT1.RAN.old, the earlier INPUT1.RAN,
//              comes back (or, where there was none, the new INPUT1.RAN goes).
// Without a journal a .part or .old left behind belongs to no replacement and is removed.

// Finishes or takes back a replacement that a crash interrupted. Errors are ignored: what cannot
// be settled now is settled at the next call. The caller holds the work folder's lock.
void SettleDataFiles(const std::filesystem::path& dataSubfolder);

// Puts the whole files INPUT1.RAN.part and INPUT2.RAN.part of dataSubfolder in place, both or
// neither; run-time error 75 when they could not be, the earlier files then kept. betweenRenames
// runs after the first file is in place and before the second is, where a test interrupts it.
void PutDataFilesInPlace(const std::filesystem::path& dataSubfolder,
                         const std::function<void()>& betweenRenames = {});

// The name a data file is written under before it is put in place.
std::filesystem::path WrittenName(const std::filesystem::path& file);

} // namespace lorvane
