#include "framework/files/PathMap.h"

#include "framework/text/CodePage.h"

#include <algorithm>
#include <array>

namespace framework {

namespace {

constexpr std::size_t kDriveCount = 26;

/// The folder set for each drive letter; empty: the root.
std::array<std::filesystem::path, kDriveCount> g_driveFolders;

/// The letter's place in the alphabet; kDriveCount when it is none.
std::size_t driveIndex(wchar_t letter) {
    if (letter >= L'a' && letter <= L'z') return static_cast<std::size_t>(letter - L'a');
    if (letter >= L'A' && letter <= L'Z') return static_cast<std::size_t>(letter - L'A');
    return kDriveCount;
}

#ifndef _WIN32
bool startsWithDrive(const std::wstring& path) {
    if (path.size() < 2 || path[1] != L':' || driveIndex(path[0]) == kDriveCount) return false;
    return path.size() == 2 || path[2] == L'\\' || path[2] == L'/';
}
#endif

} // namespace

void setDriveFolder(wchar_t drive, const std::filesystem::path& folder) {
    if (const std::size_t index = driveIndex(drive); index < kDriveCount) g_driveFolders[index] = folder;
}

#ifdef _WIN32
std::filesystem::path nativePath(const std::wstring& path) {
    return path;
}
std::wstring widePath(const std::filesystem::path& path) {
    return path.wstring();
}
#else
std::filesystem::path nativePath(const std::wstring& path) {
    const bool drive = startsWithDrive(path);
    std::string text = toUtf8(drive ? std::wstring_view(path).substr(2) : std::wstring_view(path));
    std::replace(text.begin(), text.end(), '\\', '/');
    if (!drive) return text;
    const std::filesystem::path& folder = g_driveFolders[driveIndex(path[0])];
    text.erase(0, text.find_first_not_of('/'));
    return (folder.empty() ? std::filesystem::path("/") : folder) / text;
}

std::wstring widePath(const std::filesystem::path& path) {
    return fromUtf8(path.native());
}
#endif

} // namespace framework
