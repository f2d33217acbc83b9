#include "framework/system/Process.h"

#include "tests/support/ChildProgram.h"

#include <gtest/gtest.h>
#include <windows.h>

using framework::lastProcessEnd;
using framework::lastProcessFailure;
using framework::runProcess;
using framework::widePath;

namespace {

namespace fs = std::filesystem;

TEST(Process, EndBySignalIsRemembered) {
    const TemporaryFolder folder;
    const std::wstring path = installChild(folder / "child.exe", "crash");
    ASSERT_EQ(runProcess(startOf(path, L"x")), 1);
    EXPECT_EQ(lastProcessEnd()->exitCode, 0xC0000005); // a fault is an exit code here
    EXPECT_EQ(lastProcessEnd()->signal, 0);
}

TEST(Process, FailedStartSaysWhyInTheSystemsWords) {
    const TemporaryFolder folder;
    writeBytes(folder / "data", "x");
    for (const char* name : {"none/below.exe", "data/below.exe"}) {
        const std::wstring path = widePath(folder / name);
        EXPECT_EQ(runProcess(startOf(path, L"x")), 0);
        EXPECT_EQ(lastProcessFailure(), L"cannot start " + path + L": No such file or directory");
    }
}

TEST(Process, ArgumentIsNoCommandLine) {
    GTEST_SKIP() << "programs are started by a command line here";
}

TEST(Process, ChildHasNoFileOfOurs) {
    const TemporaryFolder folder;
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    const HANDLE leaked =
        ::CreateFileW((folder / "ours").c_str(), GENERIC_WRITE, 0, &inheritable, CREATE_NEW, 0, nullptr);
    ASSERT_NE(leaked, INVALID_HANDLE_VALUE);
    // A number that no handle of the child's own has.
    HANDLE high = nullptr;
    std::vector<HANDLE> others;
    for (int i = 0; i < 2000; ++i) {
        ASSERT_TRUE(::DuplicateHandle(::GetCurrentProcess(), leaked, ::GetCurrentProcess(), &high, 0, TRUE,
                                      DUPLICATE_SAME_ACCESS));
        others.push_back(high);
    }
    const std::wstring path = installChild(folder / "child.exe", "handle");
    EXPECT_EQ(runProcess(startOf(path, std::to_wstring(reinterpret_cast<std::intptr_t>(high)))), 1);
    EXPECT_NE(lastProcessEnd()->exitCode, 1);
    for (const HANDLE handle : others)
        ::CloseHandle(handle);
    ::CloseHandle(leaked);
}

TEST(Process, ChildWorksUnseenInTheCallersFolder) {
    const TemporaryFolder folder;
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    const std::wstring path = installChild(folder / "child.exe", "unseen start");
    EXPECT_EQ(runProcess(startOf(path, L"")), 1);
    fs::current_path(before);
    EXPECT_EQ(bytesOf(folder / "start"), "104 129 0"); // size, the two flags, hidden
}

TEST(Process, WaitsThroughInterruptions) {
    const TemporaryFolder folder;
    const std::wstring path = installChild(folder / "child.exe", "sleep 300\nexit 5");
    const auto start = std::chrono::steady_clock::now();
    DWORD handles = 0, after = 0;
    ASSERT_TRUE(::GetProcessHandleCount(::GetCurrentProcess(), &handles));
    EXPECT_EQ(runProcess(startOf(path, L"")), 1);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(300));
    EXPECT_EQ(lastProcessEnd()->exitCode, 5);
    ASSERT_TRUE(::GetProcessHandleCount(::GetCurrentProcess(), &after));
    EXPECT_EQ(after, handles) << "the handles of the child are closed";
}

TEST(Process, UnknownEndIsNoSuccess) {
    GTEST_SKIP() << "the system always tells how a child ended here";
}

} // namespace
