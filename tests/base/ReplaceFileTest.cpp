#include "base/ReplaceFile.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace {

namespace fs = std::filesystem;

TEST(ReplaceFile, CommitReplacesWhole) {
    const TemporaryFolder folder;
    const fs::path target = folder / "댐 1.lmop";
    writeBytes(target, "old and longer");
    {
        ReplacedFile file(target);
        EXPECT_EQ(file.temporaryPath().parent_path(), folder.path());
        writeBytes(file.temporaryPath(), "new");
        EXPECT_EQ(bytesOf(target), "old and longer");
        ASSERT_TRUE(file.commit());
        EXPECT_FALSE(fs::exists(file.temporaryPath()));
    }
    EXPECT_EQ(bytesOf(target), "new");
}

TEST(ReplaceFile, WithoutCommitTheOldFileStays) {
    const TemporaryFolder folder;
    const fs::path target = folder / "file";
    writeBytes(target, "old");
    fs::path temporary;
    {
        ReplacedFile first(target);
        const ReplacedFile moved(std::move(first));
        temporary = moved.temporaryPath();
        writeBytes(temporary, "new");
    }
    EXPECT_EQ(bytesOf(target), "old");
    EXPECT_FALSE(fs::exists(temporary));
}

TEST(ReplaceFile, FailedCommitNamesTheTarget) {
    const TemporaryFolder folder;
    ReplacedFile unwritten(folder / "file");
    const auto missing = unwritten.commit();
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error().message,
              "cannot write " + (folder / "file").string() + ": No such file or directory");

    fs::create_directories(folder / "taken" / "inside");
    fs::path temporary;
    {
        ReplacedFile blocked(folder / "taken");
        temporary = blocked.temporaryPath();
        writeBytes(temporary, "new");
        const auto refused = blocked.commit();
        ASSERT_FALSE(refused);
        EXPECT_EQ(refused.error().message,
                  "cannot write " + (folder / "taken").string() + ": it is no ordinary file");
    }
    EXPECT_FALSE(fs::exists(temporary));
}

TEST(ReplaceFile, ALinkStaysALink) {
    const TemporaryFolder folder;
    writeBytes(folder / "real", "old");
    fs::create_symlink(folder / "real", folder / "link");
    ReplacedFile file(folder / "link");
    writeBytes(file.temporaryPath(), "new");
    ASSERT_TRUE(file.commit());
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(bytesOf(folder / "real"), "new");
}

TEST(ReplaceFile, SystemErrorText) {
    EXPECT_EQ(systemErrorText(ENOSPC), "No space left on device");
    EXPECT_NE(systemErrorText(99999), "");
}

} // namespace
