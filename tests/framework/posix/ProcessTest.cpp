#include "framework/system/Process.h"

#include "framework/text/CodePage.h"
#include "tests/support/ChildProgram.h"

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

TEST(Process, EndBySignalIsRemembered) {
    const TemporaryFolder folder;
    for (const int signal : {SIGKILL, SIGTERM}) {
        const std::wstring path = installChild(folder / "child", "signal " + std::to_string(signal));
        ASSERT_EQ(runProcess(startOf(path, L"x")), 1);
        EXPECT_EQ(lastProcessEnd()->exitCode, 0);
        EXPECT_EQ(lastProcessEnd()->signal, signal);
    }
}

TEST(Process, FailedStartSaysWhyInTheSystemsWords) {
    const TemporaryFolder folder;
    writeBytes(folder / "data", "#!/bin/sh\nexit 0\n");
    fs::create_directory(folder / "folder");
    writeBytes(folder / "orphan", "#!/no/such/interpreter\n");
    fs::permissions(folder / "orphan", fs::perms::owner_all);
    const struct {
        const char* name;
        const wchar_t* sentence;
    } rows[] = {
        {"data", L"Permission denied"},
        {"folder", L"Permission denied"},
        {"orphan", L"No such file or directory"},
        {"data/below", L"Not a directory"},
    };
    for (const auto& row : rows) {
        const std::wstring path = widePath(folder / row.name);
        EXPECT_EQ(runProcess(startOf(path, L"x")), 0);
        EXPECT_EQ(lastProcessFailure(), L"cannot start " + path + L": " + row.sentence);
    }
}

TEST(Process, ArgumentIsNoCommandLine) {
    const TemporaryFolder folder;
    const fs::path seen = folder / "seen";
    const std::wstring path = installChild(folder / "child", "seen " + seen.string());
    for (const wchar_t* argument : {L"\"quoted\" 'too'", L"-x\nline"}) {
        ASSERT_EQ(runProcess({path, argument, L"another command line"}), 1);
        EXPECT_EQ(bytesOf(seen), "1|" + framework::toUtf8(argument) + "|");
    }
}

TEST(Process, ChildHasNoFileOfOurs) {
    const TemporaryFolder folder;
    const int leaked = ::fcntl(STDERR_FILENO, F_DUPFD, 200); // open across a start, unless somebody closes it
    ASSERT_GE(leaked, 200);
    const std::wstring path = installChild(folder / "child", "handle");
    EXPECT_EQ(runProcess(startOf(path, std::to_wstring(leaked))), 1);
    ::close(leaked);
    EXPECT_EQ(lastProcessEnd()->exitCode, 0); // 1: the descriptor was there, 2: there was something to read
}

TEST(Process, ChildWorksUnseenInTheCallersFolder) {
    const TemporaryFolder folder;
    const std::wstring path = installChild(folder / "child", "print");
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    runProcess(startOf(path, L""));
    const std::string error = testing::internal::GetCapturedStderr();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(error, fs::current_path().string() + "\nerror\n");
}

TEST(Process, WaitsThroughInterruptions) {
    const TemporaryFolder folder;
    const std::wstring path = installChild(folder / "child", "sleep 100\nexit 5");
    struct sigaction action {
    }, previous{};
    action.sa_handler = [](int) {};
    ::sigaction(SIGALRM, &action, &previous); // without SA_RESTART
    const itimerval often{{0, 5000}, {0, 5000}}, never{};
    ::setitimer(ITIMER_REAL, &often, nullptr);
    EXPECT_EQ(runProcess(startOf(path, L"")), 1);
    ::setitimer(ITIMER_REAL, &never, nullptr);
    ::sigaction(SIGALRM, &previous, nullptr);
    EXPECT_EQ(lastProcessEnd()->exitCode, 5);
}

TEST(Process, UnknownEndIsNoSuccess) {
    const TemporaryFolder folder;
    const std::wstring path = installChild(folder / "child", "exit 0");
    const auto previous = std::signal(SIGCHLD, SIG_IGN); // the system then keeps no end of a child
    EXPECT_EQ(runProcess(startOf(path, L"")), 1);
    std::signal(SIGCHLD, previous);
    EXPECT_EQ(lastProcessEnd()->exitCode, -1);
}

} // namespace
