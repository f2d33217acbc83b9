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
    ReplacedFile vanished(folder / "file");
    fs::rename(vanished.temporaryPath(), folder / "elsewhere");
    const auto missing = vanished.commit();
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

TEST(ReplaceFile, UnderAFreeNameNothingIsReplaced) {
    const TemporaryFolder folder;
    const char* expected[] = {"a_Static.lmop", "a_Static~2.lmop", "a_Static~3.lmop"};
    for (const char* name : expected) {
        ReplacedFile file(folder / "a_Static.lmop");
        writeBytes(file.temporaryPath(), name);
        const auto committed = file.commitUnderFreeName();
        ASSERT_TRUE(committed) << committed.error().message;
        EXPECT_EQ(*committed, folder / name);
        EXPECT_FALSE(isAbandoned(*committed)) << "it stays locked as long as the object lives";
    }
    for (const char* name : expected)
        EXPECT_EQ(bytesOf(folder / name), name);
    ReplacedFile nowhere(folder / "missing" / "a.lmop");
    EXPECT_FALSE(nowhere.commitUnderFreeName());
}

TEST(ReplaceFile, TemporaryNames) {
    const struct {
        const char* name;
        bool temporary;
    } rows[] = {
        {"a.wkm.vexa-part-12-1", true},
        {"a.vexa-part-1-1.wkm.vexa-part-12-1", true},
        {"a.wkm", false},
        {"a.wkm.vexa-part-", false},
        {"a.wkm.part-12", false},
        {"a.wkm.vexa-part-12-1.txt", false},
        {".vexa-part-12-1", false},
        {"a.wkm.vexa-part-x", false},
    };
    for (const auto& row : rows)
        EXPECT_EQ(isTemporaryName(row.name), row.temporary) << row.name;
}

TEST(ReplaceFile, SystemErrorText) {
    EXPECT_EQ(systemErrorText(ENOSPC), "No space left on device");
    EXPECT_NE(systemErrorText(99999), "");
}

} // namespace
