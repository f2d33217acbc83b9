#include "framework/files/File.h"

#include "framework/files/Archive.h"
#include "framework/files/PathMap.h"
#include "framework/text/CodePage.h"
#include "tests/support/RandomIntegers.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <csignal>
#include <limits>
#include <thread>
#include <vector>

using framework::widePath;

namespace {

constexpr unsigned kCreate = CFile::modeCreate | CFile::modeReadWrite | CFile::typeBinary;

std::string randomBytes(RandomIntegers& random, std::size_t size) {
    std::string bytes(size, '\0');
    for (char& c : bytes)
        c = static_cast<char>(random.next() >> 32);
    return bytes;
}

/// Sizes on both sides of the file's buffer of 1 MiB, mostly small.
std::size_t randomSize(RandomIntegers& random) {
    constexpr std::size_t buffer = 1 << 20;
    switch (random.below(12)) {
    case 0:
        return buffer - 2 + random.below(5);
    case 1:
        return buffer / 2 + random.below(buffer);
    case 2:
        return 0;
    default:
        return random.below(300);
    }
}

/// Runs `action`, which must raise a CFileException, and answers it.
template <class Action>
CFileException raisedBy(Action action) {
    try {
        action();
    } catch (const CFileException& exception) {
        return exception;
    }
    ADD_FAILURE() << "nothing was raised";
    return CFileException();
}

// Any order of calls gives what the same calls give on an array of bytes.
TEST(File, BehavesAsAnArrayOfBytes) {
    const TemporaryFolder folder;
    RandomIntegers random;
    SCOPED_TRACE(random.seedText());
    const auto path = folder / "절점 1.bin";
    std::string model;
    std::uint64_t position = 0;
    CFile file;
    ASSERT_TRUE(file.Open(widePath(path), kCreate));
    for (int step = 0; step < 400; ++step) {
        const std::size_t size = randomSize(random);
        switch (random.below(5)) {
        case 0:
        case 1: {
            const std::string bytes = randomBytes(random, size);
            file.Write(bytes.data(), bytes.size());
            if (!bytes.empty() && model.size() < position) model.resize(position);
            model.replace(std::min<std::size_t>(position, model.size()), bytes.size(), bytes);
            position += bytes.size();
            break;
        }
        case 2: {
            std::string bytes(size, '\0');
            bytes.resize(file.Read(bytes.data(), size));
            const std::string expected =
                position < model.size() ? model.substr(position, size) : std::string();
            ASSERT_TRUE(bytes == expected) << "step " << step << " at " << position;
            position += expected.size();
            break;
        }
        case 3: {
            const std::size_t target = random.below(model.size() + 10);
            const std::int64_t bases[] = {0, static_cast<std::int64_t>(position),
                                          static_cast<std::int64_t>(model.size())};
            const auto from = static_cast<CFile::SeekPosition>(random.below(3));
            ASSERT_EQ(file.Seek(static_cast<std::int64_t>(target) - bases[from], from), target);
            position = target;
            break;
        }
        default:
            if (random.oneIn(8)) file.Flush();
            ASSERT_EQ(file.GetLength(), model.size());
        }
        ASSERT_EQ(file.GetPosition(), position) << "step " << step;
    }
    file.Close();
    EXPECT_TRUE(bytesOf(path) == model);
}

TEST(File, ModesDecideWhatAnExistingFileKeeps) {
    const TemporaryFolder folder;
    const struct {
        unsigned flags;
        const char* expected; ///< after "new" was written into "old content"
    } rows[] = {
        {kCreate, "new"},
        {kCreate | CFile::modeNoTruncate, "new content"},
        {CFile::modeWrite, "new content"},
        {CFile::modeReadWrite, "new content"},
        {CFile::modeWrite | CFile::modeCreate, "new"},
    };
    for (const auto& row : rows) {
        const auto path = folder / "file";
        writeBytes(path, "old content");
        CFile file;
        ASSERT_TRUE(file.Open(widePath(path), row.flags));
        file.Write("new", 3);
        file.Close();
        EXPECT_EQ(bytesOf(path), row.expected) << row.flags;
    }
}

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

TEST(File, FullDiskIsReportedOnceItIsKnownAndEverAfter) {
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

TEST(File, WritingToAFileOpenedForReadingFails) {
    const TemporaryFolder folder;
    writeBytes(folder / "file", "kept");
    CFile file;
    ASSERT_TRUE(file.Open(widePath(folder / "file"), CFile::modeRead));
    file.Write("lost", 4);
    EXPECT_EQ(raisedBy([&] { file.Close(); }).m_operation, CFileException::write);
    EXPECT_EQ(bytesOf(folder / "file"), "kept");
}

TEST(File, SeeksBeyondFourGigabytesAndNowhereElse) {
    const TemporaryFolder folder;
    CFile file;
    ASSERT_TRUE(file.Open(widePath(folder / "sparse"), kCreate));
    constexpr std::int64_t far = 5'000'000'001;
    EXPECT_EQ(file.Seek(far, CFile::begin), static_cast<std::uint64_t>(far));
    file.Write("end", 3);
    EXPECT_EQ(file.GetLength(), static_cast<std::uint64_t>(far) + 3);
    EXPECT_EQ(file.Seek(-2, CFile::end), static_cast<std::uint64_t>(far) + 1);
    char byte = 0;
    EXPECT_EQ(file.Read(&byte, 1), 1u);
    EXPECT_EQ(byte, 'n');
    for (const auto from : {CFile::begin, CFile::current, CFile::end}) {
        EXPECT_EQ(raisedBy([&] { file.Seek(std::numeric_limits<std::int64_t>::min(), from); }).m_cause,
                  CFileException::badPath);
    }
    raisedBy([&] { file.Seek(std::numeric_limits<std::int64_t>::max(), CFile::current); });
    EXPECT_EQ(file.GetPosition(), static_cast<std::uint64_t>(far) + 2);
}

TEST(File, AbortDropsWhatWasGathered) {
    const TemporaryFolder folder;
    const auto path = folder / "file";
    CFile file;
    ASSERT_TRUE(file.Open(widePath(path), kCreate));
    file.Write("a", 1);
    file.Flush();
    file.Write("b", 1);
    file.Abort();
    EXPECT_EQ(bytesOf(path), "a");
    ASSERT_TRUE(file.Open(widePath(path), CFile::modeRead));
    CFileException error;
    EXPECT_EQ(file.Open(widePath(path), CFile::modeRead, &error), 0); // one file at a time
    EXPECT_EQ(error.m_cause, CFileException::sharingViolation);
    EXPECT_TRUE(file.IsOpen());
}

TEST(File, ClosedFileRaisesInsteadOfCrashing) {
    CFile file;
    char byte = 0;
    file.Close();
    raisedBy([&] { file.Read(&byte, 1); });
    raisedBy([&] { file.Write(&byte, 1); });
    raisedBy([&] { file.Flush(); });
    raisedBy([&] { file.Seek(0, CFile::begin); });
    raisedBy([&] { static_cast<void>(file.GetLength()); });
}

TEST(File, RemoveAndRename) {
    const TemporaryFolder folder;
    const std::wstring root = widePath(folder.path()) + L"\\";
    writeBytes(folder / "a", "A");
    writeBytes(folder / "b", "B");
    std::filesystem::create_directory(folder / "empty");
    EXPECT_EQ(raisedBy([&] { CFile::Rename(root + L"a", root + L"b"); }).m_cause,
              CFileException::accessDenied);
    EXPECT_EQ(bytesOf(folder / "a") + bytesOf(folder / "b"), "AB");
    CFile::Rename(root + L"a", root + L"댐 c");
    EXPECT_EQ(bytesOf(folder / "댐 c"), "A");
    EXPECT_EQ(raisedBy([&] { CFile::Rename(root + L"a", root + L"d"); }).GetErrorMessage(),
              L"cannot rename " + root + L"a: No such file or directory");
    CFile::Remove(root + L"b");
    EXPECT_FALSE(std::filesystem::exists(folder / "b"));
    EXPECT_EQ(raisedBy([&] { CFile::Remove(root + L"b"); }).m_cause, CFileException::fileNotFound);
    raisedBy([&] { CFile::Remove(root + L"empty"); });
    EXPECT_TRUE(std::filesystem::exists(folder / "empty"));
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

TEST(Archive, WritesLittleEndianValues) {
    const TemporaryFolder folder;
    CFile file;
    ASSERT_TRUE(file.Open(widePath(folder / "archive"), kCreate));
    CArchive archive(&file);
    archive << 1 << -2 << std::int32_t{0x12345678} << 1.0 << -0.15625;
    archive.Write("text", 4);
    archive.Close();
    EXPECT_TRUE(file.IsOpen());
    file.Close();
    using std::string_literals::operator""s;
    EXPECT_EQ(bytesOf(folder / "archive"), "\1\0\0\0"
                                           "\xFE\xFF\xFF\xFF"
                                           "\x78\x56\x34\x12"
                                           "\0\0\0\0\0\0\xF0\x3F"
                                           "\0\0\0\0\0\0\xC4\xBF"
                                           "text"s);
}

TEST(Archive, BufferEndIsInvisible) {
    const TemporaryFolder folder;
    for (const std::size_t before : {4087u, 4088u, 4089u, 4092u, 4093u, 4096u, 4097u, 8192u}) {
        for (const std::size_t block : {0u, 1u, 8u, 4095u, 4096u, 4097u, 20000u}) {
            CFile file;
            ASSERT_TRUE(file.Open(widePath(folder / "archive"), kCreate));
            CArchive archive(&file);
            std::string expected;
            for (std::size_t i = 0; i < before; ++i)
                expected += static_cast<char>(i % 251);
            archive.Write(expected.data(), before);
            archive << 1.0 << 7;
            expected.append("\0\0\0\0\0\0\xF0\x3F\7\0\0\0", 12);
            const std::string more(block, 'b');
            archive.Write(more.data(), block);
            archive << 8;
            expected += more;
            expected.append("\x8\0\0\0", 4);
            archive.Flush();
            EXPECT_EQ(file.GetLength(), expected.size());
            archive.Close();
            file.Close();
            ASSERT_TRUE(bytesOf(folder / "archive") == expected) << before << " " << block;
        }
    }
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

TEST(Archive, ClosedOrAbortedTakesNothingMore) {
    const TemporaryFolder folder;
    CFile file;
    ASSERT_TRUE(file.Open(widePath(folder / "archive"), kCreate));
    CArchive closed(&file), aborted(&file);
    closed << 1;
    closed.Close();
    aborted << 2;
    aborted.Abort();
    for (CArchive* archive : {&closed, &aborted}) {
        raisedBy([&] {
            for (int i = 0; i < 5000; ++i)
                *archive << i;
        });
        raisedBy([&] { archive->Flush(); });
        archive->Close();
    }
    file.Close();
    EXPECT_EQ(bytesOf(folder / "archive").size(), 4u);
}

} // namespace
