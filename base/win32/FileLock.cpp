#include "base/FileLock.h"

#include <windows.h>

#include <system_error>

namespace {

HANDLE system(std::intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);
}

/// The errno value of the last failed call.
int lastError() {
    const auto error = static_cast<int>(::GetLastError());
    return std::system_category().default_error_condition(error).value();
}

/// Others may do with the file what they like meanwhile: the lock alone speaks.
std::intptr_t openShared(const std::filesystem::path& path, DWORD access, DWORD creation, DWORD flags) {
    constexpr DWORD kEverything = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    return reinterpret_cast<std::intptr_t>(
        ::CreateFileW(path.c_str(), access, kEverything, nullptr, creation, flags, nullptr));
}

} // namespace

int FileLock::create(const std::filesystem::path& path) {
    close();
    handle_ = openShared(path, GENERIC_READ | GENERIC_WRITE, CREATE_NEW, FILE_ATTRIBUTE_NORMAL);
    return isOpen() ? 0 : lastError();
}

int FileLock::open(const std::filesystem::path& path, bool followsLinks) {
    close();
    handle_ = openShared(path, GENERIC_READ | GENERIC_WRITE, OPEN_EXISTING,
                         followsLinks ? FILE_ATTRIBUTE_NORMAL : FILE_FLAG_OPEN_REPARSE_POINT);
    return isOpen() ? 0 : lastError();
}

void FileLock::close() {
    if (isOpen()) ::CloseHandle(system(handle_));
    handle_ = kClosed;
}

FileLock::State FileLock::tryLock() {
    // One byte far behind the data, where no reader or writer looks.
    OVERLAPPED place{};
    place.OffsetHigh = 1u << 29;
    if (::LockFileEx(system(handle_), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place))
        return State::Taken;
    const DWORD error = ::GetLastError();
    return error == ERROR_LOCK_VIOLATION || error == ERROR_IO_PENDING ? State::HeldElsewhere : State::Unknown;
}

bool FileLock::isFileAt(const std::filesystem::path& path) const {
    FileLock there;
    there.handle_ =
        openShared(path, 0, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS);
    BY_HANDLE_FILE_INFORMATION opened{};
    BY_HANDLE_FILE_INFORMATION named{};
    constexpr DWORD kNoOrdinaryFile = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    return there.isOpen() && ::GetFileInformationByHandle(system(handle_), &opened) &&
           ::GetFileInformationByHandle(system(there.handle_), &named) &&
           !(opened.dwFileAttributes & kNoOrdinaryFile) &&
           opened.dwVolumeSerialNumber == named.dwVolumeSerialNumber &&
           opened.nFileIndexHigh == named.nFileIndexHigh && opened.nFileIndexLow == named.nFileIndexLow;
}

int flushToDisk(const std::filesystem::path& path) {
    // A folder cannot be flushed here; names are kept by the file system's own journal.
    std::error_code unknown;
    if (std::filesystem::is_directory(path, unknown)) return 0;
    const std::intptr_t handle = openShared(path, GENERIC_WRITE, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL);
    if (system(handle) == INVALID_HANDLE_VALUE) return lastError();
    const int failed = ::FlushFileBuffers(system(handle)) ? 0 : lastError();
    ::CloseHandle(system(handle));
    return failed;
}

int renameWithoutReplacing(const std::filesystem::path& from, const std::filesystem::path& to) {
    return ::MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_WRITE_THROUGH) ? 0 : lastError();
}

unsigned long long processNumber() {
    return ::GetCurrentProcessId();
}
