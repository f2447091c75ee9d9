#include <gtest/gtest.h>

#ifdef __linux__
#include <csignal>
#include <fstream>
#include <functional>

#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include "frame/DateText.h"
#include "frame/Module.h"
#include "frame/OutputLog.h"
#include "frame/RuntimeError.h"
#include "platform/FileSizeLimit.h"
#include "support/TestModule.h"

using namespace lorvane;
using lorvane::test::ReadFile;
using lorvane::test::TestModule;
using lorvane::test::WriteFile;

namespace {

const std::string Rule = "----------------------------------------------";
const std::string Header = "Lorvane International\r\n"
                           "Session date: Sunday November 22, 2026\r\n"
                           "Session time: 19:36:05\r\n" +
                           Rule + "\r\n";

} // namespace

TEST(OpenLogSession, HeaderWithoutLeadingRuleForAMissingOrEmptyLog) {
    TestModule test;
    const auto log = test.module().DataFile("OUTPUT.TXT");
    OpenLogSession(test.module(), test.clock());
    EXPECT_EQ(ReadFile(log), Header);

    TestModule empty;
    WriteFile(empty.module().DataFile("OUTPUT.TXT"), "");
    OpenLogSession(empty.module(), empty.clock());
    EXPECT_EQ(ReadFile(empty.module().DataFile("OUTPUT.TXT")), Header);
}

TEST(OpenLogSession, NonEmptyLogGetsEmptyLineAndRuleFirst) {
    TestModule test;
    const auto log = test.module().DataFile("OUTPUT.TXT");
    WriteFile(log, "earlier results\r\n");
    OpenLogSession(test.module(), test.clock());
    EXPECT_EQ(ReadFile(log), "earlier results\r\n\r\n" + Rule + "\r\n" + Header);

    // A log holding only an empty line counts as non-empty.
    TestModule blank;
    WriteFile(blank.module().DataFile("OUTPUT.TXT"), "\r\n");
    OpenLogSession(blank.module(), blank.clock());
    EXPECT_EQ(ReadFile(blank.module().DataFile("OUTPUT.TXT")), "\r\n\r\n" + Rule + "\r\n" + Header);
}

TEST(OpenLogSession, BuildDateInTheTitleOnlyWhenValid) {
    TestModule test;
    const auto log = test.module().DataFile("OUTPUT.TXT");
    WriteFile(test.module().StartFolder / "COMPDATE.TXT", "1999,3,5\r\n");
    OpenLogSession(test.module(), test.clock());
    EXPECT_EQ(ReadFile(log).substr(0, 47), "Lorvane International [March 5, 1999]\r\nSession ");

    WriteFile(test.module().StartFolder / "COMPDATE.TXT", "1999\r\n13\r\n5\r\n");
    EXPECT_EQ(CompileDateText(test.module()), "");
    WriteFile(test.module().StartFolder / "COMPDATE.TXT", "1999,3\r\n");
    EXPECT_EQ(CompileDateText(test.module()), "");
    std::filesystem::remove(test.module().StartFolder / "COMPDATE.TXT");
    EXPECT_EQ(CompileDateText(test.module()), "");
}

#ifdef __linux__
// Only whether the log is empty matters: a log of hundreds of megabytes costs no memory.
TEST(OpenLogSession, ReadsNoMoreThanTheFirstLinesOfALongLog) {
    TestModule test;
    const auto log = test.module().DataFile("OUTPUT.TXT");
    std::string start;
    for (int line = 1; line <= 20; ++line) {
        start += "line " + std::to_string(line) + "\r\n";
    }
    WriteFile(log, start);
    // The rest of the log is a hole of 256 MB: no disk space, but every byte reads back.
    constexpr std::uintmax_t Size = std::uintmax_t{256} << 20;
    std::filesystem::resize_file(log, Size);
    const auto peak = [] {
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        return usage.ru_maxrss; // kilobytes
    };
    const long before = peak();
    OpenLogSession(test.module(), test.clock());
    EXPECT_LT(peak() - before, 32 * 1024);
    EXPECT_EQ(std::filesystem::file_size(log), Size + 2 + Rule.size() + 2 + Header.size());
    std::filesystem::resize_file(log, 0);
}
#endif

TEST(OpenLogSection, TheHeaderThenThePendingReportOnce) {
    TestModule test;
    Module& module = test.module();
    const auto log = module.DataFile("OUTPUT.TXT");
    module.ResultText = "Selected variables:\r\n\r\na\r\nb\r\n";
    OpenLogSection(module);
    EXPECT_EQ(ReadFile(log), Header + "Selected variables:\r\n\r\na\r\nb\r\n\r\n");
    EXPECT_TRUE(module.ResultText.empty());
    // A later section has its header and no repetition of the report.
    AppendToLog(module, "estimation");
    OpenLogSection(module);
    EXPECT_EQ(ReadFile(log), Header +
                                 "Selected variables:\r\n\r\na\r\nb\r\n\r\nestimation\r\n\r\n" +
                                 Rule + "\r\n" + Header);
}

TEST(OpenLogSession, SilentWhenTheLogCannotBeWritten) {
    TestModule test;
    std::filesystem::create_directory(test.module().DataFile("OUTPUT.TXT"));
    EXPECT_NO_THROW(OpenLogSession(test.module(), test.clock()));
    test.module().DataFolder = test.Root() / "gone";
    EXPECT_NO_THROW(OpenLogSession(test.module(), test.clock()));
    EXPECT_FALSE(std::filesystem::exists(test.Root() / "gone"));
}

TEST(AppendToLog, AppendsWholeLinesAndNeverRewrites) {
    TestModule test;
    const auto log = test.module().DataFile("OUTPUT.TXT");
    WriteFile(log, "kept\r\n");
    AppendToLog(test.module(), "first\r\nsecond");
    AppendToLog(test.module(), "");
    EXPECT_EQ(ReadFile(log), "kept\r\nfirst\r\nsecond\r\n\r\n");
}

#ifdef __linux__
namespace {

// Runs a piece of the test in a child process, whose limits and mounts die with it; the child's
// exit code: 0 when it held, 1 when not, 77 when the child could not set up its conditions.
int InChild(const std::function<int()>& body) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(body());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

// A report that fails part way leaves the log as it was, and the failure is error 75.
int AppendFailsWhole(Module& module, const std::filesystem::path& log) {
    std::string report;
    for (int line = 1; line <= 400; ++line) {
        report += "Equation " + std::to_string(line) + ": coefficients and their t-values\r\n";
    }
    const std::string before = ReadFile(log);
    try {
        AppendToLog(module, report);
        return 1;
    } catch (const RuntimeError& error) {
        return error.Number() == PathFileAccessError && ReadFile(log) == before ? 0 : 1;
    }
}

// Writes beyond a limit on the size of files fail, as on a full disk, where the program has
// asked for that at its start.
bool LimitFileSize(rlim_t bytes) {
    FailWritesBeyondTheFileSizeLimit();
    const rlimit limit{bytes, bytes};
    return setrlimit(RLIMIT_FSIZE, &limit) == 0;
}

} // namespace

TEST(AppendToLog, AWriteBeyondTheFileSizeLimitTakesItsBytesBack) {
    TestModule test;
    Module& module = test.module();
    const auto log = module.DataFile("OUTPUT.TXT");
    WriteFile(log, "kept\r\n");
    EXPECT_EQ(InChild([&] { return LimitFileSize(4096) ? AppendFailsWhole(module, log) : 77; }), 0);
    // The session header too is whole or nothing, and silent.
    EXPECT_EQ(InChild([&] {
                  if (!LimitFileSize(40)) {
                      return 77;
                  }
                  OpenLogSession(module, test.clock());
                  return ReadFile(log) == "kept\r\n" ? 0 : 1;
              }),
              0);
    EXPECT_EQ(ReadFile(log), "kept\r\n");
    AppendToLog(module, "later");
    EXPECT_EQ(ReadFile(log), "kept\r\nlater\r\n");
}

// A full disk: a small file system of its own, where the child may mount one.
TEST(AppendToLog, AFullDiskLeavesNoTornLine) {
    TestModule test;
    const auto disk = test.Root() / "disk";
    std::filesystem::create_directories(disk);
    const int code = InChild([&] {
        if (unshare(CLONE_NEWNS) != 0 ||
            mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=64k") != 0) {
            return 77;
        }
        Module& module = test.module();
        module.DataFolder = disk;
        std::filesystem::create_directories(module.DataSubfolder());
        const auto log = module.DataFile("OUTPUT.TXT");
        WriteFile(log, "kept\r\n");
        // Fill the disk to its last byte.
        std::ofstream filler(disk / "filler", std::ios::binary);
        const std::string block(512, 'x');
        while (filler.write(block.data(), static_cast<std::streamsize>(block.size())) &&
               filler.flush()) {
        }
        return AppendFailsWhole(module, log);
    });
    if (code == 77) {
        GTEST_SKIP() << "no small file system can be mounted here";
    }
    EXPECT_EQ(code, 0);
}
#endif

TEST(DateText, WeekdayMonthDayYear) {
    EXPECT_EQ(DateText(2026, 11, 22), "Sunday November 22, 2026");
    EXPECT_EQ(DateText(1999, 3, 5), "Friday March 5, 1999");
    EXPECT_EQ(DateText(2000, 2, 29), "Tuesday February 29, 2000");
    EXPECT_EQ(DateText(1900, 1, 1), "Monday January 1, 1900");
    // A date that cannot be formed keeps month, day and year.
    EXPECT_EQ(DateText(2001, 2, 29), "February 29, 2001");
    EXPECT_EQ(ClockTimeText(0), "00:00:00");
    EXPECT_EQ(ClockTimeText(86399.9), "23:59:59");
}
