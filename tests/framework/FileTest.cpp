#include "framework/files/File.h"

#include "framework/files/Archive.h"
#include "framework/files/PathMap.h"
#include "tests/framework/RaisedBy.h"
#include "tests/support/RandomIntegers.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <limits>
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
