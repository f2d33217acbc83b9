#include "framework/files/FileFind.h"
#include "framework/files/PathMap.h"
#include "host/FileCtrl.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <vector>

using framework::widePath;

namespace {

std::vector<std::wstring> found(const std::wstring& pattern) {
    CFileFind find;
    std::vector<std::wstring> names;
    EXPECT_EQ(find.GetFileName(), L"");
    for (int more = find.FindFile(pattern); more;) {
        more = find.FindNextFile();
        names.push_back(find.GetFileName());
        EXPECT_EQ(find.GetFilePath(), pattern.substr(0, pattern.find_last_of(L"\\/") + 1) + names.back());
    }
    return names;
}

TEST(FileFind, FindsByPattern) {
    const TemporaryFolder folder;
    for (const char* name : {"b.out", "a.out", "a.out.txt", "x_y_fos.out", "noext", "[a].txt", "댐_1.txt"})
        writeBytes(folder / name, "12345");
    std::filesystem::create_directory(folder / "sub.out");
    const std::wstring root = widePath(folder.path());
    using Names = std::vector<std::wstring>;
    const struct {
        std::wstring pattern;
        Names expected;
    } rows[] = {
        {L"a.out", {L"a.out"}},
        {L"none", {}},
        {L"", {}},
        {L"*.out", {L"a.out", L"b.out", L"sub.out", L"x_y_fos.out"}},
        {L"?.out", {L"a.out", L"b.out"}},
        {L"*_fos.out", {L"x_y_fos.out"}},
        {L"a*", {L"a.out", L"a.out.txt"}},
        {L"*o*t", {L"a.out", L"a.out.txt", L"b.out", L"noext", L"sub.out", L"x_y_fos.out"}},
        {L"댐_?.txt", {L"댐_1.txt"}},
        {L"[a].*", {L"[a].txt"}},
        {L"**a.out**", {L"a.out", L"a.out.txt"}},
        {L"a.out?", {}},
        {L"????????????", {}},
        {L"*.*",
         {L"[a].txt", L"a.out", L"a.out.txt", L"b.out", L"noext", L"sub.out", L"x_y_fos.out", L"댐_1.txt"}},
    };
    for (const auto& row : rows) {
        for (const wchar_t* separator : {L"/", L"\\"})
            EXPECT_EQ(found(root + separator + row.pattern), row.expected)
                << testing::PrintToString(row.pattern);
    }
    EXPECT_EQ(found(root + L"/none/*"), Names{});
    EXPECT_EQ(found(root + L"/a.out/*"), Names{});
}

TEST(FileFind, TellsLengthAndKind) {
    const TemporaryFolder folder;
    writeBytes(folder / "a", "12345");
    std::filesystem::create_directory(folder / "b");
#ifdef _WIN32
    writeBytes(folder / "c", ""); // links need a privilege here
#else
    std::filesystem::create_symlink("nowhere", folder / "c");
#endif
    CFileFind find;
    ASSERT_TRUE(find.FindFile(widePath(folder / "*")));
    EXPECT_EQ(find.FindNextFile(), 1);
    EXPECT_EQ(find.GetLength(), 5u);
    EXPECT_FALSE(find.IsDirectory());
    EXPECT_EQ(find.FindNextFile(), 1);
    EXPECT_TRUE(find.IsDirectory());
    EXPECT_EQ(find.FindNextFile(), 0);
    EXPECT_EQ(find.GetFileName(), L"c"); // a link to nothing is an entry all the same
    EXPECT_EQ(find.GetLength(), 0u);
    EXPECT_EQ(find.FindNextFile(), 0);
    find.Close();
    EXPECT_EQ(find.GetFileName(), L"");
}

TEST(FileFind, ManyStarsCostLittle) {
    const TemporaryFolder folder;
    writeBytes(folder / std::string(200, 'a'), "");
    std::wstring pattern;
    for (int i = 0; i < 60; ++i)
        pattern += L"*a";
    EXPECT_TRUE(found(widePath(folder / "") + pattern + L"*b").empty());
    EXPECT_EQ(found(widePath(folder / "") + pattern).size(), 1u);
}

TEST(FileCtrl, PartsOfPaths) {
    const struct {
        const wchar_t *path, *folder, *name, *pathName;
    } rows[] = {
        {L"", L"", L"", L""},
        {L"model.wkm", L"", L"model", L"model"},
        {L"C:\\a b\\model.wkm", L"C:\\a b\\", L"model", L"C:\\a b\\model"},
        {L"/a.b/c\\댐.x.wkm", L"/a.b/c\\", L"댐.x", L"/a.b/c\\댐.x"},
        {L"/a.b/model", L"/a.b/", L"model", L"/a.b/model"},
        {L"a.b\\", L"a.b\\", L"", L"a.b\\"},
        {L"/a/name.", L"/a/", L"name", L"/a/name"},
        {L"/a/.profile", L"/a/", L".profile", L"/a/.profile"},
        {L"/a/.profile.txt", L"/a/", L".profile", L"/a/.profile"},
        {L"/a/..", L"/a/", L"..", L"/a/.."},
        {L"../b", L"../", L"b", L"../b"},
        {L"C:\\", L"C:\\", L"", L"C:\\"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(CFileCtrl::GetFilePath(row.path), row.folder) << testing::PrintToString(row.path);
        EXPECT_EQ(CFileCtrl::GetFileName(row.path), row.name) << testing::PrintToString(row.path);
        EXPECT_EQ(CFileCtrl::GetFilePathName(row.path), row.pathName) << testing::PrintToString(row.path);
    }
    EXPECT_EQ(CFileCtrl::SetFilePathNameExt(L"C:\\a.b_Analysis 1.5", L"lmop"), L"C:\\a.b_Analysis 1.5.lmop");
}

TEST(FileCtrl, FoldersAreNoFiles) {
    const TemporaryFolder folder;
    writeBytes(folder / "절점 1", "");
    const std::wstring root = widePath(folder.path());
    EXPECT_TRUE(CFileCtrl::FileExists(root + L"\\절점 1"));
    EXPECT_FALSE(CFileCtrl::FileExists(root));
    EXPECT_FALSE(CFileCtrl::FileExists(root + L"/none"));
    EXPECT_FALSE(CFileCtrl::FileExists(root + L"/절점 1/below"));
    EXPECT_FALSE(CFileCtrl::FileExists(L""));
}

} // namespace
