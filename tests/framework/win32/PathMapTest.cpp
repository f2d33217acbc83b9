#include "framework/files/PathMap.h"

#include <gtest/gtest.h>

using framework::nativePath;
using framework::widePath;

namespace {

TEST(PathMap, PathsOfTheSystemBecomePathsOfThePlatform) {
    framework::setDriveFolder(L'D', "C:\\elsewhere"); // without effect
    for (const wchar_t* path : {L"", L"model.wkm", L"a\\b/c d\\댐.wkm", L"C:\\temp\\x", L"d:", L"D:\\models",
                                L"C:x", L"\\\\server\\share"}) {
        EXPECT_EQ(nativePath(path).native(), path);
        EXPECT_EQ(widePath(path), path);
    }
}

} // namespace
