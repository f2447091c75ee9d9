#include <gtest/gtest.h>

#include <csignal>
#include <sstream>

#include <sys/wait.h>
#include <unistd.h>

#include "data/CsvImport.h"
#include "data/DataFilePair.h"
#include "frame/Startup.h"
#include "platform/FileLock.h"
#include "support/TestModule.h"

using namespace lorvane;
using lorvane::test::ReadFile;
using lorvane::test::TempFolder;
using lorvane::test::WriteFile;

namespace {

// A data folder that holds an earlier pair, and the names of the new pair being written.
class Pair {
public:
    Pair() {
        std::filesystem::create_directories(Folder());
        WriteFile(Folder() / "INPUT1.RAN", "old 1");
        WriteFile(Folder() / "INPUT2.RAN", "old 2");
        WriteFile(Folder() / "OUTPUT.TXT", "log\r\n");
    }
    void WriteNew() {
        WriteFile(WrittenName(Folder() / "INPUT1.RAN"), "new 1");
        WriteFile(WrittenName(Folder() / "INPUT2.RAN"), "new 2");
    }
    std::string Held() const {
        return ReadFile(Folder() / "INPUT1.RAN") + " + " + ReadFile(Folder() / "INPUT2.RAN");
    }
    // Nothing but the data files and the log stays once the pair is settled.
    long Entries() const {
        return std::distance(std::filesystem::directory_iterator(Folder()),
                             std::filesystem::directory_iterator());
    }
    std::filesystem::path Folder() const { return temp.Path() / "LORVANE.DAT"; }

    TempFolder temp;
};

// The replacement killed in a child process between the two renames, the way a crash or kill -9
// ends it: no destructor, no handler runs.
int KilledBetweenRenames(const Pair& pair) {
    const pid_t child = fork();
    if (child == 0) {
        PutDataFilesInPlace(pair.Folder(), [] { std::raise(SIGKILL); });
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) ? WTERMSIG(status) : -1;
}

} // namespace

TEST(DataFilePair, AReplacementKilledBetweenItsRenamesIsFinishedByTheNextStart) {
    Pair pair;
    pair.WriteNew();
    ASSERT_EQ(KilledBetweenRenames(pair), SIGKILL);
    // The crash left the new first file beside the old second one.
    ASSERT_EQ(pair.Held(), "new 1 + old 2");
    SettleDataFiles(pair.Folder());
    EXPECT_EQ(pair.Held(), "new 1 + new 2");
    EXPECT_EQ(pair.Entries(), 3);
    // Settled once, the folder stays as it is.
    SettleDataFiles(pair.Folder());
    EXPECT_EQ(pair.Held(), "new 1 + new 2");
}

TEST(DataFilePair, NewFilesWithoutTheirJournalWereNeverWholeAndGo) {
    // Killed while writing: the new files are there, the journal that says they are whole is not.
    Pair pair;
    pair.WriteNew();
    WriteFile(pair.Folder() / "INPUT1.RAN.old", "old 1");
    SettleDataFiles(pair.Folder());
    EXPECT_EQ(pair.Held(), "old 1 + old 2");
    EXPECT_EQ(pair.Entries(), 3);
}

TEST(DataFilePair, AReplacementTurnedBackIsTakenBackByTheNextStart) {
    // Killed while taking back a failed replacement: the first file was already the new one.
    Pair pair;
    pair.WriteNew();
    std::filesystem::rename(pair.Folder() / "INPUT1.RAN", pair.Folder() / "INPUT1.RAN.old");
    std::filesystem::rename(WrittenName(pair.Folder() / "INPUT1.RAN"),
                            pair.Folder() / "INPUT1.RAN");
    WriteFile(pair.Folder() / "INPUT.NEW", "");
    WriteFile(pair.Folder() / "INPUT.OLD", "1");
    SettleDataFiles(pair.Folder());
    EXPECT_EQ(pair.Held(), "old 1 + old 2");
    EXPECT_EQ(pair.Entries(), 3);
}

// The import of a folder that a module holds is refused, whatever its mark says.
TEST(DataFilePair, TheImportKeepsOutOfAHeldFolder) {
    TempFolder temp;
    const std::filesystem::path work = temp.Path() / "work";
    const std::filesystem::path csv = temp.Path() / "data.csv";
    WriteFile(csv, "a,b\n1,2\n3,4\n");
    std::ostringstream out;
    std::ostringstream err;
    ASSERT_EQ(RunImport({csv.string(), work.string()}, out, err), 0);
    const std::string input1 = ReadFile(work / "LORVANE.DAT" / "INPUT1.RAN");

    WriteFile(csv, "x,y,z\n5,6,7\n");
    {
        const FileLock module(work / WorkFolderLockName);
        ASSERT_EQ(module.state(), FileLock::State::Taken);
        EXPECT_EQ(RunImport({csv.string(), work.string()}, out, err), 3);
        EXPECT_NE(err.str().find("a module is running on " + work.string()), std::string::npos);
        EXPECT_EQ(ReadFile(work / "LORVANE.DAT" / "INPUT1.RAN"), input1);
    }
    EXPECT_EQ(RunImport({csv.string(), work.string()}, out, err), 0);
    EXPECT_NE(ReadFile(work / "LORVANE.DAT" / "INPUT1.RAN"), input1);
}
