#include "framework/system/Process.h"

#include "framework/files/PathMap.h"
#include "framework/text/CodePage.h"
#include "tests/support/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/time.h>
#include <unistd.h>

#include <csignal>

using framework::lastProcessEnd;
using framework::lastProcessFailure;
using framework::runProcess;
using framework::widePath;

namespace {

namespace fs = std::filesystem;

/// Writes a shell script that runs `commands`; the path of the program.
std::wstring program(const fs::path& path, const std::string& commands) {
    writeBytes(path, "#!/bin/sh\n" + commands + "\n");
    fs::permissions(path, fs::perms::owner_all);
    return widePath(path);
}

TEST(Process, EndIsRemembered) {
    const TemporaryFolder folder;
    const struct {
        const char* commands;
        std::int64_t exitCode;
        int signal;
    } rows[] = {
        {"exit 0", 0, 0},
        {"exit 3", 3, 0},
        {"exit 255", 255, 0},
        {"kill -9 $$", 0, SIGKILL},
        {"kill -TERM $$", 0, SIGTERM},
        {"exit 137", 137, 0}, // not a signal
    };
    for (const auto& row : rows) {
        const std::wstring path = program(folder / "child", row.commands);
        ASSERT_EQ(runProcess({path, L"x", L""}), 1) << row.commands;
        ASSERT_TRUE(lastProcessEnd());
        EXPECT_EQ(lastProcessEnd()->program, path);
        EXPECT_EQ(lastProcessEnd()->exitCode, row.exitCode) << row.commands;
        EXPECT_EQ(lastProcessEnd()->signal, row.signal) << row.commands;
        EXPECT_EQ(lastProcessFailure(), L"");
    }
}

TEST(Process, ProgramAndArgumentStayWhole) {
    const TemporaryFolder folder;
    fs::create_directories(folder / "64bit Solver 댐");
    const fs::path seen = folder / "seen";
    program(folder / "64bit Solver 댐" / "Fatigue Solver.exe",
            "printf '%s|' \"$#\" \"$1\" > '" + seen.string() + "'");
    const std::wstring path = widePath(folder.path()) + L"\\64bit Solver 댐\\Fatigue Solver.exe";
    const wchar_t* const arguments[] = {
        L"/tmp/FATIGUE.76",  L"",
        L"a b  c",           L"댐 1/절점.76",
        L"\"quoted\" 'too'", L"$(exit 9) `x` * ; & | \\ %PATH%",
        L"-x\nline",
    };
    for (const wchar_t* argument : arguments) {
        const std::string expected = "1|" + framework::toUtf8(argument) + "|";
        ASSERT_EQ(runProcess({path, argument, L"another command line"}), 1);
        ASSERT_EQ(lastProcessEnd()->exitCode, 0);
        EXPECT_EQ(bytesOf(seen), expected);
    }
}

TEST(Process, FailedStartSaysWhy) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "folder");
    writeBytes(folder / "data", "#!/bin/sh\nexit 0\n");
    writeBytes(folder / "empty", "");
    writeBytes(folder / "garbage", "\x7F"
                                   "ELF, as it says");
    writeBytes(folder / "orphan", "#!/no/such/interpreter\n");
    for (const char* name : {"empty", "garbage", "orphan"})
        fs::permissions(folder / name, fs::perms::owner_all);
    const std::wstring works = program(folder / "works", "exit 0");
    const struct {
        const char* name;
        const wchar_t* sentence;
    } rows[] = {
        {"missing", L"No such file or directory"}, {"data", L"Permission denied"},
        {"folder", L"Permission denied"},          {"empty", L"Exec format error"},
        {"garbage", L"Exec format error"},         {"orphan", L"No such file or directory"},
        {"data/below", L"Not a directory"},
    };
    for (const auto& row : rows) {
        ASSERT_EQ(runProcess({works, L"", L""}), 1);
        const std::wstring path = widePath(folder / row.name);
        EXPECT_EQ(runProcess({path, L"x", L""}), 0);
        EXPECT_FALSE(lastProcessEnd()) << row.name;
        EXPECT_EQ(lastProcessFailure(), L"cannot start " + path + L": " + row.sentence);
    }
    const std::wstring zero(1, L'\0');
    EXPECT_EQ(runProcess({works + zero, L"", L""}), 0);
    EXPECT_EQ(runProcess({works, zero, L""}), 0);
    EXPECT_EQ(runProcess({works, L"", L""}), 1);
    EXPECT_EQ(lastProcessFailure(), L"");
}

TEST(Process, ChildHasNoFileOfOurs) {
    const TemporaryFolder folder;
    const int leaked = ::fcntl(STDERR_FILENO, F_DUPFD, 200); // open across a start, unless somebody closes it
    ASSERT_GE(leaked, 200);
    const std::wstring path =
        program(folder / "child", "[ -e /proc/$$/fd/$1 ] && exit 1\nread line && exit 2\nexit 0");
    EXPECT_EQ(runProcess({path, std::to_wstring(leaked), L""}), 1);
    ::close(leaked);
    EXPECT_EQ(lastProcessEnd()->exitCode, 0); // 1: the descriptor was there, 2: there was something to read
}

TEST(Process, OutputGoesToTheErrorOutputInTheCallersFolder) {
    const TemporaryFolder folder;
    const std::wstring path = program(folder / "child", "pwd; echo error >&2");
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    runProcess({path, L"", L""});
    const std::string error = testing::internal::GetCapturedStderr();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(error, fs::current_path().string() + "\nerror\n");
}

TEST(Process, WaitsThroughInterruptions) {
    const TemporaryFolder folder;
    const std::wstring path = program(folder / "child", "sleep 0.1\nexit 5");
    struct sigaction action {
    }, previous{};
    action.sa_handler = [](int) {};
    ::sigaction(SIGALRM, &action, &previous); // without SA_RESTART
    const itimerval often{{0, 5000}, {0, 5000}}, never{};
    ::setitimer(ITIMER_REAL, &often, nullptr);
    EXPECT_EQ(runProcess({path, L"", L""}), 1);
    ::setitimer(ITIMER_REAL, &never, nullptr);
    ::sigaction(SIGALRM, &previous, nullptr);
    EXPECT_EQ(lastProcessEnd()->exitCode, 5);
}

TEST(Process, UnknownEndIsNoSuccess) {
    const TemporaryFolder folder;
    const std::wstring path = program(folder / "child", "exit 0");
    const auto previous = std::signal(SIGCHLD, SIG_IGN); // the system then keeps no end of a child
    EXPECT_EQ(runProcess({path, L"", L""}), 1);
    std::signal(SIGCHLD, previous);
    EXPECT_EQ(lastProcessEnd()->exitCode, -1);
}

} // namespace
