#include "framework/files/Archive.h"
#include "framework/files/File.h"
#include "framework/files/PathMap.h"
#include "framework/text/CodePage.h"
#include "tests/framework/RaisedBy.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <csignal>
#include <thread>
#include <vector>

using framework::widePath;

namespace {

constexpr unsigned kCreate = CFile::modeCreate | CFile::modeReadWrite | CFile::typeBinary;

std::size_t openDescriptors() {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        count += entry.exists() || true;
    return count;
}

TEST(File, RefusedOpensNameFileAndCause) {
    const TemporaryFolder folder;
    writeBytes(folder / "file", "x");
    const std::wstring root = widePath(folder.path());
    const struct {
        std::wstring path;
        unsigned flags;
        CFileException::Cause cause;
        std::wstring sentence;
    } rows[] = {
        {root + L"/none", CFile::modeRead, CFileException::fileNotFound, L"No such file or directory"},
        {root + L"/none/file", kCreate, CFileException::fileNotFound, L"No such file or directory"},
        {root + L"/file/below", kCreate, CFileException::badPath, L"Not a directory"},
        {root, CFile::modeRead, CFileException::accessDenied, L"Is a directory"},
        {root, kCreate, CFileException::accessDenied, L"Is a directory"},
        {root + L"/" + std::wstring(300, L'n'), kCreate, CFileException::badPath, L"File name too long"},
        {root + L"/file" + std::wstring(1, L'\0') + L"x", CFile::modeRead, CFileException::badPath,
         L"Invalid argument"},
        {L"", CFile::modeRead, CFileException::fileNotFound, L"No such file or directory"},
    };
    const std::size_t before = openDescriptors();
    for (const auto& row : rows) {
        CFile file;
        CFileException error;
        EXPECT_EQ(file.Open(row.path, row.flags, &error), 0);
        EXPECT_FALSE(file.IsOpen());
        EXPECT_EQ(error.m_cause, row.cause);
        const std::wstring name = row.path.empty() ? L"a file without name" : row.path;
        EXPECT_EQ(error.GetErrorMessage(), L"cannot open " + name + L": " + row.sentence);
        EXPECT_STREQ(error.what(), framework::toUtf8(error.GetErrorMessage()).c_str());
        EXPECT_EQ(file.Open(row.path, row.flags), 0);
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST(File, ReadOnlyFolderRefusesNewFiles) {
    if (::geteuid() == 0) GTEST_SKIP() << "permissions do not bind the superuser";
    const TemporaryFolder folder;
    std::filesystem::permissions(folder.path(),
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
    CFile file;
    CFileException error;
    EXPECT_EQ(file.Open(widePath(folder / "file"), kCreate, &error), 0);
    EXPECT_EQ(error.m_cause, CFileException::accessDenied);
    std::filesystem::permissions(folder.path(), std::filesystem::perms::owner_all);
}

TEST(File, FailedWriteIsReportedOnceItIsKnownAndEverAfter) {
    const std::vector<char> much(3 << 20, 'x');
    const std::wstring message = L"cannot write /dev/full: No space left on device";
    const auto expectFull = [&](auto action) {
        const CFileException raised = raisedBy(action);
        EXPECT_EQ(raised.m_cause, CFileException::diskFull);
        EXPECT_EQ(raised.GetErrorMessage(), message);
    };
    CFile small;
    ASSERT_TRUE(small.Open(L"/dev/full", CFile::modeWrite));
    small.Write("gathered", 8);
    expectFull([&] { small.Close(); });
    EXPECT_FALSE(small.IsOpen());

    CFile large;
    ASSERT_TRUE(large.Open(L"/dev/full", CFile::modeWrite));
    expectFull([&] { large.Write(much.data(), much.size()); });
    expectFull([&] { large.Write("x", 1); });
    expectFull([&] { large.Flush(); });
    expectFull([&] { large.Seek(0, CFile::begin); });
    expectFull([&] { large.Close(); });
    EXPECT_FALSE(large.IsOpen());

    CFile dropped; // the destructor keeps silent
    ASSERT_TRUE(dropped.Open(L"/dev/full", CFile::modeWrite));
    dropped.Write("gathered", 8);
}

TEST(File, ShortWriteIsContinuedAndThenReported) {
    const TemporaryFolder folder;
    const auto path = folder / "file";
    const std::size_t room = (2 << 20) + 12345;
    const auto previous = std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit limited{room, before.rlim_max};
    CFile file;
    ASSERT_TRUE(file.Open(widePath(path), kCreate));
    const std::vector<char> much(4 << 20, 'x');
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limited), 0);
    const CFileException raised = raisedBy([&] { file.Write(much.data(), much.size()); });
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, previous);
    EXPECT_EQ(raised.m_cause, CFileException::diskFull);
    EXPECT_EQ(std::filesystem::file_size(path), room);
    file.Abort();
}

/// Interrupts this thread's system calls every two milliseconds.
class Interruptions {
  public:
    Interruptions() {
        struct sigaction action {};
        action.sa_handler = [](int) {};
        ::sigaction(SIGALRM, &action, &previous_); // without SA_RESTART
        const itimerval often{{0, 2000}, {0, 2000}};
        ::setitimer(ITIMER_REAL, &often, nullptr);
    }
    ~Interruptions() {
        const itimerval never{};
        ::setitimer(ITIMER_REAL, &never, nullptr);
        ::sigaction(SIGALRM, &previous_, nullptr);
    }

  private:
    struct sigaction previous_ {};
};

TEST(File, InterruptedAndShortReadsAreContinued) {
    const TemporaryFolder folder;
    const auto path = folder / "pipe";
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    sigset_t alarm{};
    sigemptyset(&alarm);
    sigaddset(&alarm, SIGALRM);
    ::pthread_sigmask(SIG_BLOCK, &alarm,
                      nullptr); // the writer keeps it blocked, so this thread gets the signals
    std::thread writer([&] {
        std::ofstream out(path, std::ios::binary);
        for (const char* piece : {"one", "two", "three"}) {
            std::this_thread::sleep_for(std::chrono::milliseconds(15));
            out << piece << std::flush;
        }
    });
    ::pthread_sigmask(SIG_UNBLOCK, &alarm, nullptr);
    std::string text(11, '\0');
    {
        const Interruptions interruptions;
        CFile file;
        EXPECT_TRUE(file.Open(widePath(path), CFile::modeRead));
        text.resize(file.Read(text.data(), text.size()));
    }
    writer.join();
    EXPECT_EQ(text, "onetwothree");
}

TEST(Archive, FullDiskReachesTheCaller) {
    const auto writeMuch = [](CArchive& archive) {
        for (int i = 0; i < 1'000'000; ++i)
            archive << i;
    };
    CFile file;
    ASSERT_TRUE(file.Open(L"/dev/full", CFile::modeWrite));
    {
        CArchive archive(&file);
        EXPECT_EQ(raisedBy([&] { writeMuch(archive); }).m_cause, CFileException::diskFull);
        EXPECT_EQ(raisedBy([&] { writeMuch(archive); }).m_cause, CFileException::diskFull); // and again
        EXPECT_EQ(raisedBy([&] { archive.Close(); }).m_cause, CFileException::diskFull);
    } // the destructor keeps silent
    file.Abort();
    ASSERT_TRUE(file.Open(L"/dev/full", CFile::modeWrite));
    CArchive little(&file);
    little << 1;
    EXPECT_EQ(raisedBy([&] { little.Close(); }).GetErrorMessage(),
              L"cannot write /dev/full: No space left on device");
}

} // namespace
