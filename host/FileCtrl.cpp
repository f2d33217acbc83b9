#include "host/FileCtrl.h"

#include "framework/files/PathMap.h"
#include "framework/system/FileHandle.h"

namespace {

/// Where the last component starts.
std::size_t nameStart(const std::wstring& path) {
    const std::size_t separator = path.find_last_of(L"\\/");
    return separator == std::wstring::npos ? 0 : separator + 1;
}

/// Where the extension's dot is, or the end. A dot that only dots precede ("..", ".profile") starts no
/// extension.
std::size_t extensionStart(const std::wstring& path) {
    const std::size_t name = path.find_first_not_of(L'.', nameStart(path));
    const std::size_t dot = path.rfind(L'.');
    return name == std::wstring::npos || dot == std::wstring::npos || dot < name ? path.size() : dot;
}

} // namespace

bool CFileCtrl::FileExists(const std::wstring& path) {
    return framework::fileExists(framework::nativePath(path));
}

std::wstring CFileCtrl::GetFilePath(const std::wstring& path) {
    return path.substr(0, nameStart(path));
}

std::wstring CFileCtrl::GetFileName(const std::wstring& path) {
    const std::size_t start = nameStart(path);
    return path.substr(start, extensionStart(path) - start);
}

std::wstring CFileCtrl::GetFilePathName(const std::wstring& path) {
    return path.substr(0, extensionStart(path));
}

std::wstring CFileCtrl::SetFilePathNameExt(const std::wstring& pathName, const std::wstring& extension) {
    return pathName + L"." + extension;
}
