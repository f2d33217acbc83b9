#include "framework/system/Process.h"

#include "framework/text/CodePage.h"
#include "tests/support/ChildProgram.h"

#include <gtest/gtest.h>

using framework::lastProcessEnd;
using framework::lastProcessFailure;
using framework::runProcess;
using framework::widePath;

namespace {

namespace fs = std::filesystem;

TEST(Process, ExitCodeIsRemembered) {
    const TemporaryFolder folder;
    for (const int code : {0, 3, 137 /* not a signal */, 255}) {
        const std::wstring path = installChild(folder / "child.exe", "exit " + std::to_string(code));
        ASSERT_EQ(runProcess(startOf(path, L"x")), 1) << code;
        ASSERT_TRUE(lastProcessEnd());
        EXPECT_EQ(lastProcessEnd()->program, path);
        EXPECT_EQ(lastProcessEnd()->exitCode, code);
        EXPECT_EQ(lastProcessEnd()->signal, 0);
        EXPECT_EQ(lastProcessFailure(), L"");
    }
}

TEST(Process, ProgramAndArgumentStayWhole) {
    const TemporaryFolder folder;
    const fs::path place = folder / "내 프로그램 1" / "64bit Solver";
    fs::create_directories(place);
    const fs::path seen = folder / "본 것";
    installChild(place / pathOf("Fatigue 풀이.exe"), "seen " + seen.string());
    const std::wstring path = widePath(folder / "내 프로그램 1") + L"\\64bit Solver\\Fatigue 풀이.exe";
    const wchar_t* const arguments[] = {
        L"/tmp/FATIGUE.76",
        L"",
        L"a b  c",
        L"C:\\모델 1\\댐 1\\FATIGUE.76",
        L"$(exit 9) `x` * ; & | \\ %PATH%",
        L"-x",
    };
    for (const wchar_t* argument : arguments) {
        const std::string expected = "1|" + framework::toUtf8(argument) + "|";
        ASSERT_EQ(runProcess(startOf(path, argument)), 1);
        ASSERT_EQ(lastProcessEnd()->exitCode, 0);
        EXPECT_EQ(bytesOf(seen), expected);
    }
}

TEST(Process, FailedStartSaysWhy) {
    const TemporaryFolder folder;
    for (const char* name : {"empty", "garbage"}) {
        writeBytes(folder / name, *name == 'e' ? ""
                                               : "\x7F"
                                                 "ELF, as it says");
        fs::permissions(folder / name, fs::perms::owner_all);
    }
    const std::wstring works = installChild(folder / "works.exe", "exit 0");
    const struct {
        const char* name;
        const wchar_t* sentence;
    } rows[] = {
        {"missing", L"No such file or directory"},
        {"empty", L"Exec format error"},
        {"garbage", L"Exec format error"},
    };
    for (const auto& row : rows) {
        ASSERT_EQ(runProcess(startOf(works, L"")), 1);
        const std::wstring path = widePath(folder / row.name);
        EXPECT_EQ(runProcess(startOf(path, L"x")), 0);
        EXPECT_FALSE(lastProcessEnd()) << row.name;
        EXPECT_EQ(lastProcessFailure(), L"cannot start " + path + L": " + row.sentence);
    }
    const std::wstring zero(1, L'\0');
    EXPECT_EQ(runProcess(startOf(works + zero, L"")), 0);
    EXPECT_EQ(runProcess(startOf(works, zero)), 0);
    EXPECT_EQ(runProcess(startOf(works, L"")), 1);
    EXPECT_EQ(lastProcessFailure(), L"");
}

} // namespace
