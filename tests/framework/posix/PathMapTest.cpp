#include "framework/files/PathMap.h"

#include <gtest/gtest.h>

using framework::nativePath;
using framework::widePath;

namespace {

TEST(PathMap, PathsOfTheSystemBecomePathsOfThePlatform) {
    const struct {
        const wchar_t* path;
        const char* expected;
    } rows[] = {
        {L"", ""},
        {L"model.wkm", "model.wkm"},
        {L"a\\b/c d\\댐.wkm", "a/b/c d/댐.wkm"},
        {L"C:\\temp\\x", "/temp/x"},
        {L"c:/temp", "/temp"},
        {L"C:", "/"},
        {L"C:\\", "/"},
        {L"C:\\\\x", "/x"},
        {L"D:\\models\\x", "/srv/models/x"},
        {L"d:", "/srv/"},
        {L"C:x", "C:x"}, // no drive letter: a name of this platform
        {L"1:\\x", "1:/x"},
        {L"가:\\x", "가:/x"},
        {L"/home/c:\\x", "/home/c:/x"},
        {L"\\\\server\\share", "//server/share"},
    };
    framework::setDriveFolder(L'D', "/srv");
    framework::setDriveFolder(L'?', "/nowhere");
    for (const auto& row : rows)
        EXPECT_EQ(nativePath(row.path).native(), row.expected) << row.expected;
    framework::setDriveFolder(L'd', {});
    EXPECT_EQ(nativePath(L"D:\\models"), "/models");
    EXPECT_EQ(widePath("/a/절점"), L"/a/절점");
}

} // namespace
