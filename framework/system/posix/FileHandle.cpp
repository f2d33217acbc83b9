#include "framework/system/FileHandle.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace framework {

namespace {

// Systems cut or refuse larger transfers.
constexpr std::size_t kLargestTransfer = std::size_t{1} << 30;

int openFlags(FileAccess access, FileCreation creation) {
    int flags = O_CLOEXEC;
    switch (access) {
    case FileAccess::read:
        flags |= O_RDONLY;
        break;
    case FileAccess::write:
        flags |= O_WRONLY;
        break;
    case FileAccess::readWrite:
        flags |= O_RDWR;
        break;
    }
    if (creation != FileCreation::existing) flags |= O_CREAT;
    if (creation == FileCreation::emptied) flags |= O_TRUNC;
    return flags;
}

int descriptor(std::intptr_t handle) {
    return static_cast<int>(handle);
}

/// The system would take the part before a zero character for the whole name.
bool holdsZero(const std::filesystem::path& path) {
    return path.native().find('\0') != std::string::npos;
}

} // namespace

int FileHandle::open(const std::filesystem::path& path, FileAccess access, FileCreation creation) {
    if (holdsZero(path)) return EINVAL;
    int opened = -1;
    do {
        opened = ::open(path.c_str(), openFlags(access, creation), 0666);
    } while (opened < 0 && errno == EINTR);
    if (opened < 0) return errno;
    handle_ = opened;
    struct stat status {};
    int error = ::fstat(opened, &status) != 0 ? errno : 0;
    if (!error && S_ISDIR(status.st_mode)) error = EISDIR;
    if (error) close();
    return error;
}

int FileHandle::read(void* buffer, std::size_t count, std::size_t& done) {
    done = 0;
    while (done < count) {
        const ssize_t got = ::read(descriptor(handle_), static_cast<char*>(buffer) + done,
                                   std::min(count - done, kLargestTransfer));
        if (got == 0) return 0;
        if (got > 0)
            done += static_cast<std::size_t>(got);
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

int FileHandle::write(const void* buffer, std::size_t count, std::size_t& done) {
    done = 0;
    while (done < count) {
        const ssize_t put = ::write(descriptor(handle_), static_cast<const char*>(buffer) + done,
                                    std::min(count - done, kLargestTransfer));
        // A device that takes nothing and gives no error would keep us here for ever.
        if (put == 0) return EIO;
        if (put > 0)
            done += static_cast<std::size_t>(put);
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

int FileHandle::seek(std::uint64_t position) {
    return ::lseek(descriptor(handle_), static_cast<off_t>(position), SEEK_SET) < 0 ? errno : 0;
}

int FileHandle::length(std::uint64_t& bytes) const {
    struct stat status {};
    if (::fstat(descriptor(handle_), &status) != 0) return errno;
    bytes = static_cast<std::uint64_t>(status.st_size);
    return 0;
}

int FileHandle::close() {
    if (!isOpen()) return 0;
    const int closing = descriptor(handle_);
    handle_ = kClosed;
    // After EINTR the descriptor is gone on Linux; closing it again could hit another file.
    return ::close(closing) != 0 && errno != EINTR ? errno : 0;
}

bool fileExists(const std::filesystem::path& path) {
    struct stat status {};
    return !holdsZero(path) && ::stat(path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
}

int removeFile(const std::filesystem::path& path) {
    if (holdsZero(path)) return EINVAL;
    return ::unlink(path.c_str()) != 0 ? errno : 0;
}

int renameFile(const std::filesystem::path& from, const std::filesystem::path& to) {
    if (holdsZero(from) || holdsZero(to)) return EINVAL;
#ifdef RENAME_NOREPLACE
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
    if (errno != EINVAL && errno != ENOSYS) return errno;
#endif
    struct stat status {};
    if (::lstat(to.c_str(), &status) == 0) return EEXIST;
    return ::rename(from.c_str(), to.c_str()) != 0 ? errno : 0;
}

} // namespace framework
