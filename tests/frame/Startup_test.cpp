#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include "frame/DrivePaths.h"
#include "frame/ModuleEnded.h"
#include "frame/Startup.h"
#include "platform/FileLock.h"
#include "support/TestModule.h"
#include "support/TestScreens.h"

using namespace lorvane;
using lorvane::test::ProbeTable;
using lorvane::test::ReadFile;
using lorvane::test::TestModule;
using lorvane::test::WriteFile;

TEST(StartFolder, DriveLetterRules) {
    auto choose = [](std::string exe, std::optional<std::string> line) {
        return ChooseStartFolder(exe, std::move(line), PathStyle::Windows);
    };
    StartFolderChoice plain = choose("C:\\LORVANE\\", std::nullopt);
    EXPECT_EQ(plain.Folder, "C:\\LORVANE");
    EXPECT_EQ(plain.Drive, "C:");
    EXPECT_EQ(plain.TestRun, 0);

    // Another drive letter is replaced by the module's own before the comparison.
    StartFolderChoice same = choose("C:\\LORVANE", "\"D:\\lorvane\"");
    EXPECT_EQ(same.Folder, "C:\\LORVANE");
    EXPECT_EQ(same.TestRun, 0);

    StartFolderChoice rooted = choose("E:\\Build\\Debug", "\\LORVANE");
    EXPECT_EQ(rooted.Folder, "E:\\LORVANE");
    EXPECT_EQ(rooted.Drive, "E:");
    EXPECT_EQ(rooted.TestRun, 1);

    StartFolderChoice other = choose("C:\\LORVANE", "  \"F:\\Program Files\\Lorvane\"  ");
    EXPECT_EQ(other.Folder, "C:\\Program Files\\Lorvane");
    EXPECT_EQ(other.TestRun, 1);

    EXPECT_EQ(choose("C:\\LORVANE", "nonsense").Folder, "C:\\LORVANE");

    // A trailing separator names the same folder.
    StartFolderChoice trailing = choose("C:\\LORVANE", "\"C:\\Lorvane\\\"");
    EXPECT_EQ(trailing.Folder, "C:\\LORVANE");
    EXPECT_EQ(trailing.TestRun, 0);
    EXPECT_EQ(choose("C:\\LORVANE", "\\OTHER\\").Folder, "C:\\OTHER");
}

TEST(StartFolder, PosixMapping) {
    auto choose = [](std::string exe, std::optional<std::string> line) {
        return ChooseStartFolder(exe, std::move(line), PathStyle::Posix);
    };
    EXPECT_EQ(choose("/opt/lorvane/", std::nullopt).Folder, "/opt/lorvane");
    EXPECT_EQ(choose("/opt/lorvane", std::nullopt).Drive, "");
    StartFolderChoice full = choose("/home/me/build", "/opt/lorvane");
    EXPECT_EQ(full.Folder, "/opt/lorvane");
    EXPECT_EQ(full.TestRun, 1);
    EXPECT_EQ(choose("/opt/lorvane", "\"/opt/lorvane\"").TestRun, 0);
    EXPECT_EQ(choose("/opt/lorvane", "/opt/lorvane/").TestRun, 0);
    EXPECT_EQ(choose("/x", "C:\\Lorvane\\Sys").Folder, "/Lorvane/Sys");
}

TEST(StartFolder, QuotesAndDrives) {
    EXPECT_EQ(StripQuotes("  \"\"C:\\A B\"  ", 0), "C:\\A B");
    EXPECT_EQ(StripQuotes("C:\\A B", 1), "\"C:\\A B\"");
    EXPECT_EQ(StripQuotes("\"\"", 0), "");
    EXPECT_EQ(DriveOf("D:\\DATA"), "d:");
    EXPECT_EQ(DriveOf("\\DATA"), "");
    EXPECT_EQ(DriveOf("/home"), "");
    EXPECT_TRUE(NamesAFolder("C:\\X", PathStyle::Windows));
    EXPECT_FALSE(NamesAFolder("\\X", PathStyle::Windows));
    EXPECT_TRUE(NamesAFolder("/x", PathStyle::Posix));
    EXPECT_EQ(WithTrailingSeparator("C:\\X", PathStyle::Windows), "C:\\X\\");
    EXPECT_EQ(WithTrailingSeparator("/x/", PathStyle::Posix), "/x/");
}

namespace {

class StartupTest : public ::testing::Test {
protected:
    StartupTest() { module().UseScreenTable(ProbeTable({"SelVar1"})); }
    Module& module() { return test.module(); }
    std::filesystem::path Exe() const { return test.Root() / "start"; }
    std::filesystem::path Work() const { return test.Root() / "work"; }
    void Start(const std::string& commandLine) {
        module().Run([&] { ModuleEntry(module(), commandLine, Exe()); });
    }

    TestModule test;
};

} // namespace

TEST_F(StartupTest, GivenWorkFolderBecomesTheDataFolder) {
    WriteFile(Work() / "Global.var", "5,6\r\n7\r\n");
    Start("  " + Work().string() + "  ");
    ASSERT_FALSE(module().Ended());
    EXPECT_EQ(module().WorkFolder, Work());
    EXPECT_EQ(module().WorkFolderGiven, 1);
    EXPECT_EQ(module().TestRun, 0);
    EXPECT_EQ(module().DataFolder.string(), Work().string() + "/");
    EXPECT_EQ(module().Caption, "Lorvane International (Module VAR)");
    EXPECT_EQ(module().ModuleCaption, module().Caption);
    EXPECT_EQ(ReadFile(Work() / "STARTDIR"), "\"" + Work().string() + "\"\r\n");
    EXPECT_EQ(ReadFile(Work() / "STARTDIR.TMP"), ReadFile(Work() / "STARTDIR"));
    EXPECT_EQ(ReadFile(Work() / "ACTIVEMODULE.TXT"), "\"VAR\"\r\n");
    EXPECT_EQ(module().CurrentScreen, "SelVar1");
    EXPECT_EQ(module().TimerInterval, 2000);
    EXPECT_EQ(module().GlobalOption[0], 5);
    EXPECT_EQ(module().GlobalOption[2], 7);
    EXPECT_EQ(module().GlobalOption[3], 0);
    EXPECT_EQ(module().ScreenScale, 1);
    EXPECT_EQ(module().FullSize, 0);
    EXPECT_EQ(module().MinVars, 2);
    EXPECT_EQ(module().MaxVars, -1);
    EXPECT_EQ(module().ScreenAfterInfo, "VARDetermin");
    EXPECT_EQ(module().Intercept, 1);
    EXPECT_EQ(module().p, 1);
}

TEST_F(StartupTest, DefaultWorkFolderInAnotherCaseCountsAsDefault) {
    const std::filesystem::path folded = Exe() / "temp";
    Start(folded.string());
    EXPECT_EQ(module().WorkFolderGiven, 0);
    EXPECT_FALSE(module().Ended());
}

TEST_F(StartupTest, WithoutWorkFolderTheModuleWillNotRunAlone) {
    test.dialogs().QueueAnswer("OK");
    Start("");
    EXPECT_TRUE(module().Ended());
    EXPECT_FALSE(module().Failure());
    EXPECT_EQ(module().WorkFolder, Exe() / "TEMP");
    EXPECT_TRUE(std::filesystem::is_directory(Exe() / "TEMP"));
    ASSERT_EQ(test.dialogs().Shown().size(), 1u);
    EXPECT_EQ(
        test.dialogs().Shown()[0],
        "[box] VAR.EXE | This program will not run stand alone! It runs only via the main program "
        "(LORVANE.EXE). Please read the instructions on how to run Lorvane! You can find them on "
        "web page "
        "\"https://lorvane.example/LORVANE.HTM\" or in Lorvane itself.  -> OK");
    ASSERT_EQ(test.processes().Requests().size(), 1u);
    EXPECT_EQ(test.processes().Requests()[0],
              "[start] " + (Exe() / "lorvane").string() + " " + (Exe() / "TEMP").string());
    EXPECT_FALSE(std::filesystem::exists(Exe() / "TEMP" / "ACTIVEMODULE.TXT"));
}

TEST_F(StartupTest, StartDirNamingAGoneFolderIsWrittenAnew) {
    WriteFile(Work() / "STARTDIR", "\"" + (test.Root() / "gone").string() + "\"\r\n");
    Start(Work().string());
    EXPECT_EQ(module().DataFolder.string(), Work().string() + "/");
    EXPECT_EQ(ReadFile(Work() / "STARTDIR"), "\"" + Work().string() + "\"\r\n");
    EXPECT_EQ(ReadFile(Work() / "STARTDIR.TMP"), ReadFile(Work() / "STARTDIR"));

    // A folder that exists is kept, and STARTDIR is only copied.
    TestModule second;
    second.module().UseScreenTable(ProbeTable({"SelVar1"}));
    const std::filesystem::path elsewhere = second.Root() / "elsewhere";
    std::filesystem::create_directories(elsewhere);
    const std::string record = "\"" + elsewhere.string() + "\"\r\n";
    WriteFile(second.Root() / "work" / "STARTDIR", record);
    second.module().Run([&] {
        ModuleEntry(second.module(), (second.Root() / "work").string(), second.Root() / "start");
    });
    EXPECT_EQ(second.module().DataFolder.string(), elsewhere.string() + "/");
    EXPECT_EQ(ReadFile(second.Root() / "work" / "STARTDIR.TMP"), record);
}

TEST_F(StartupTest, ARunningModuleStopsTheStartAndItsFileStays) {
    // The running module holds the lock of the work folder.
    const FileLock running(Work() / WorkFolderLockName);
    ASSERT_EQ(running.state(), FileLock::State::Taken);
    WriteFile(Work() / "ACTIVEMODULE.TXT", "\"VAR\"\r\n");
    test.dialogs().QueueAnswer("OK");
    Start(Work().string());
    EXPECT_TRUE(module().Ended());
    EXPECT_EQ(
        test.dialogs().Shown()[0],
        "[box] Error! | A previous instance of Lorvane module VAR is running! End it first. -> OK");
    EXPECT_EQ(ReadFile(Work() / "ACTIVEMODULE.TXT"), "\"VAR\"\r\n");
    EXPECT_TRUE(test.processes().Requests().empty());
    EXPECT_EQ(module().CurrentScreen, "");

    // The lock decides, whatever the mark says: a module that holds it and has not written its
    // mark yet (or whose mark was emptied or removed) stops the start before it writes anything.
    for (const char* mark : std::initializer_list<const char*>{"", nullptr}) {
        TestModule second;
        second.module().UseScreenTable(ProbeTable({"SelVar1"}));
        const std::filesystem::path work = second.Root() / "work";
        const FileLock holder(work / WorkFolderLockName);
        if (mark != nullptr) {
            WriteFile(work / "ACTIVEMODULE.TXT", mark);
        }
        second.dialogs().QueueAnswer("OK");
        second.module().Run(
            [&] { ModuleEntry(second.module(), work.string(), second.Root() / "start"); });
        EXPECT_TRUE(second.module().Ended());
        EXPECT_EQ(second.dialogs().Shown()[0], "[box] Error! | A previous instance of Lorvane "
                                               "module VAR is running! End it first. -> OK");
        EXPECT_EQ(second.module().CurrentScreen, "");
        EXPECT_FALSE(std::filesystem::exists(work / "STARTDIR"));
        EXPECT_EQ(std::filesystem::exists(work / "ACTIVEMODULE.TXT"), mark != nullptr);
    }
}

// A module that was killed left its mark but holds no lock: the mark is stale.
TEST_F(StartupTest, AMarkWithoutALockHolderIsStaleAndTheStartGoesOn) {
    WriteFile(Work() / "ACTIVEMODULE.TXT", "\"KILLED\"\r\n");
    {
        // A module that held the lock and ended.
        const FileLock ended(Work() / WorkFolderLockName);
    }
    Start(Work().string());
    EXPECT_FALSE(module().Ended());
    EXPECT_TRUE(test.dialogs().Shown().empty());
    EXPECT_EQ(module().CurrentScreen, "SelVar1");
    EXPECT_EQ(ReadFile(Work() / "ACTIVEMODULE.TXT"), "\"VAR\"\r\n");
    // The new module holds the lock now: a start beside it sees its mark and stops.
    EXPECT_EQ(FileLock(Work() / WorkFolderLockName).state(), FileLock::State::HeldElsewhere);
    TestModule beside;
    beside.module().UseScreenTable(ProbeTable({"SelVar1"}));
    beside.dialogs().QueueAnswer("OK");
    beside.module().Run([&] { ModuleEntry(beside.module(), Work().string(), Exe()); });
    EXPECT_TRUE(beside.module().Ended());
    EXPECT_EQ(beside.dialogs().Shown().size(), 1u);
    EXPECT_EQ(ReadFile(Work() / "ACTIVEMODULE.TXT"), "\"VAR\"\r\n");
}

// Two modules started together on one folder, each in a process of its own, released at one
// moment: one runs and the other is refused, however their starts interleave.
TEST_F(StartupTest, OfTwoModulesStartedTogetherOneRuns) {
    for (int attempt = 0; attempt < 20; ++attempt) {
        const std::filesystem::path work = test.Root() / ("paired" + std::to_string(attempt));
        std::filesystem::create_directories(work);
        int go[2];
        ASSERT_EQ(pipe(go), 0);
        std::vector<pid_t> children;
        for (int child = 0; child < 2; ++child) {
            const pid_t pid = fork();
            if (pid == 0) {
                close(go[1]);
                char released = 0;
                [[maybe_unused]] const auto read = ::read(go[0], &released, 1);
                TestModule paired;
                paired.module().UseScreenTable(ProbeTable({"SelVar1"}));
                paired.dialogs().QueueAnswer("OK");
                paired.module().Run(
                    [&] { ModuleEntry(paired.module(), work.string(), paired.Root() / "start"); });
                const bool ran = !paired.module().Ended();
                // A running module holds the folder until the other has surely tried.
                usleep(200000);
                _exit(ran ? 0 : 1);
            }
            children.push_back(pid);
        }
        close(go[0]);
        close(go[1]);
        int ran = 0;
        for (const pid_t pid : children) {
            int status = 0;
            waitpid(pid, &status, 0);
            ASSERT_TRUE(WIFEXITED(status));
            ran += WEXITSTATUS(status) == 0 ? 1 : 0;
        }
        EXPECT_EQ(ran, 1) << "attempt " << attempt;
    }
}

TEST_F(StartupTest, ATestRunWritesNoActiveModuleAndStartsNothing) {
    WriteFile(Exe() / "Lorvane.SYS", "\"" + (test.Root() / "package").string() + "\"\r\n");
    WriteFile(Work() / "Global.var", "9,9,9,9\r\n");
    Start(Work().string());
    ASSERT_FALSE(module().Ended());
    EXPECT_EQ(module().TestRun, 1);
    EXPECT_EQ(module().StartFolder, test.Root() / "package");
    EXPECT_EQ(module().Caption, "Lorvane International (Module VAR) [TEST RUN]");
    EXPECT_FALSE(std::filesystem::exists(Work() / "ACTIVEMODULE.TXT"));
    EXPECT_EQ(module().GlobalOption[0], 3);
    EXPECT_EQ(module().GlobalOption[1], 9);
    EXPECT_EQ(module().GlobalOption[2], 0);
    for (int i = 4; i <= 23; ++i) {
        EXPECT_EQ(module().GlobalOption[static_cast<std::size_t>(i - 1)], 1) << i;
    }
    module().Run([&] { module().ModuleEnd(); });
    EXPECT_TRUE(test.processes().Requests().empty());
}

TEST_F(StartupTest, FullSizeAndFramePositionOnALargerScreen) {
    test.screens().width = 19200;
    test.screens().height = 14400;
    Start(Work().string());
    EXPECT_EQ(module().ScreenScale, 2);
    EXPECT_EQ(module().FullSize, 0);
    EXPECT_EQ(module().FrameLeft, 4800);
    EXPECT_EQ(module().FrameTop, 3600);
    EXPECT_EQ(ReadFile(Work() / "TOPLEFT.TXT"), "3600,4800\r\n");

    TestModule second;
    second.module().UseScreenTable(ProbeTable({"SelVar1"}));
    second.screens().width = 19200;
    second.screens().height = 14400;
    WriteFile(second.Root() / "work" / "TOPLEFT.TXT", "\"120\",\"240\"\r\n");
    WriteFile(second.Root() / "work" / "fullsize.txt", "1\r\n");
    second.module().Run([&] {
        ModuleEntry(second.module(), (second.Root() / "work").string(), second.Root() / "start");
    });
    EXPECT_EQ(second.module().FullSize, 1);
    EXPECT_EQ(second.module().FrameState, WindowState::Maximised);
    EXPECT_EQ(second.module().FrameTop, 0);
    EXPECT_EQ(second.module().FrameWidth, 19200);

    // A screen of exactly the design size never reads fullsize.txt.
    TestModule third;
    third.module().UseScreenTable(ProbeTable({"SelVar1"}));
    WriteFile(third.Root() / "work" / "fullsize.txt", "1\r\n");
    WriteFile(third.Root() / "work" / "TOPLEFT.TXT", "120,240\r\n");
    third.module().Run([&] {
        ModuleEntry(third.module(), (third.Root() / "work").string(), third.Root() / "start");
    });
    EXPECT_EQ(third.module().FullSize, 0);
    EXPECT_EQ(third.module().FrameTop, 120);
    EXPECT_EQ(third.module().FrameLeft, 240);
}

TEST_F(StartupTest, MinimisingTheFrame) {
    Start(Work().string());
    test.screens().minimised = true;
    FrameResize(module());
    EXPECT_EQ(module().Caption, "LORVANE");
    EXPECT_EQ(module().TimerInterval, 0);
    test.screens().minimised = false;
    module().FrameWidth = 5000;
    FrameResize(module());
    EXPECT_EQ(module().Caption, "Lorvane International (Module VAR)");
    EXPECT_EQ(module().TimerInterval, 2000);
    EXPECT_EQ(module().FrameWidth, 9600);
}
