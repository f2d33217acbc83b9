#include "framework/system/FileHandle.h"

#include "framework/system/win32/Errors.h"

#include <windows.h>

#include <algorithm>

namespace framework {

namespace {

// Systems cut or refuse larger transfers.
constexpr std::size_t kLargestTransfer = std::size_t{1} << 30;

HANDLE system(std::intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);
}

int lastError() {
    return static_cast<int>(::GetLastError());
}

/// The system would take the part before a zero character for the whole name.
bool holdsZero(const std::filesystem::path& path) {
    return path.native().find(L'\0') != std::wstring::npos;
}

/// Paths beyond the old limit need a prefix, which takes absolute paths in the system's own spelling only.
std::wstring openablePath(const std::filesystem::path& path) {
    constexpr std::size_t kLongestPlainPath = 240;
    if (path.native().starts_with(L"\\\\?\\") || path.native().starts_with(L"\\\\.\\")) return path;
    std::error_code error;
    const std::wstring absolute = std::filesystem::absolute(path, error).make_preferred().native();
    if (error || absolute.size() < kLongestPlainPath) return path;
    return absolute.starts_with(L"\\\\") ? L"\\\\?\\UNC" + absolute.substr(1) : L"\\\\?\\" + absolute;
}

DWORD accessFlags(FileAccess access) {
    switch (access) {
    case FileAccess::read:
        return GENERIC_READ;
    case FileAccess::write:
        return GENERIC_WRITE;
    default:
        return GENERIC_READ | GENERIC_WRITE;
    }
}

DWORD creationFlags(FileCreation creation) {
    switch (creation) {
    case FileCreation::emptied:
        return CREATE_ALWAYS;
    case FileCreation::keptContents:
        return OPEN_ALWAYS;
    default:
        return OPEN_EXISTING;
    }
}

bool isFolder(const std::wstring& path) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

} // namespace

int FileHandle::open(const std::filesystem::path& path, FileAccess access, FileCreation creation) {
    if (holdsZero(path)) return ERROR_INVALID_NAME;
    const std::wstring name = openablePath(path);
    const HANDLE opened = ::CreateFileW(name.c_str(), accessFlags(access), FILE_SHARE_READ | FILE_SHARE_WRITE,
                                        nullptr, creationFlags(creation), FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE) {
        const int error = lastError();
        return isFolder(name) ? kErrorIsFolder : error;
    }
    handle_ = reinterpret_cast<std::intptr_t>(opened);
    return 0;
}

int FileHandle::read(void* buffer, std::size_t count, std::size_t& done) {
    done = 0;
    while (done < count) {
        DWORD got = 0;
        if (!::ReadFile(system(handle_), static_cast<char*>(buffer) + done,
                        static_cast<DWORD>(std::min(count - done, kLargestTransfer)), &got, nullptr)) {
            const int error = lastError();
            return error == ERROR_HANDLE_EOF || error == ERROR_BROKEN_PIPE ? 0 : error;
        }
        if (got == 0) return 0;
        done += got;
    }
    return 0;
}

int FileHandle::write(const void* buffer, std::size_t count, std::size_t& done) {
    done = 0;
    while (done < count) {
        DWORD put = 0;
        if (!::WriteFile(system(handle_), static_cast<const char*>(buffer) + done,
                         static_cast<DWORD>(std::min(count - done, kLargestTransfer)), &put, nullptr))
            return lastError();
        // A device that takes nothing and gives no error would keep us here for ever.
        if (put == 0) return ERROR_WRITE_FAULT;
        done += put;
    }
    return 0;
}

int FileHandle::seek(std::uint64_t position) {
    LARGE_INTEGER target{};
    target.QuadPart = static_cast<LONGLONG>(position);
    return ::SetFilePointerEx(system(handle_), target, nullptr, FILE_BEGIN) ? 0 : lastError();
}

int FileHandle::length(std::uint64_t& bytes) const {
    LARGE_INTEGER size{};
    if (!::GetFileSizeEx(system(handle_), &size)) return lastError();
    bytes = static_cast<std::uint64_t>(size.QuadPart);
    return 0;
}

int FileHandle::close() {
    if (!isOpen()) return 0;
    const HANDLE closing = system(handle_);
    handle_ = kClosed;
    return ::CloseHandle(closing) ? 0 : lastError();
}

bool fileExists(const std::filesystem::path& path) {
    if (holdsZero(path)) return false;
    const DWORD attributes = ::GetFileAttributesW(openablePath(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

int removeFile(const std::filesystem::path& path) {
    if (holdsZero(path)) return ERROR_INVALID_NAME;
    return ::DeleteFileW(openablePath(path).c_str()) ? 0 : lastError();
}

int renameFile(const std::filesystem::path& from, const std::filesystem::path& to) {
    if (holdsZero(from) || holdsZero(to)) return ERROR_INVALID_NAME;
    return ::MoveFileExW(openablePath(from).c_str(), openablePath(to).c_str(), 0) ? 0 : lastError();
}

} // namespace framework
