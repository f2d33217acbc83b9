#include "base/FileLock.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace {

int descriptor(std::intptr_t handle) {
    return static_cast<int>(handle);
}

} // namespace

int FileLock::create(const std::filesystem::path& path) {
    close();
    handle_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    return isOpen() ? 0 : errno;
}

int FileLock::open(const std::filesystem::path& path, bool followsLinks) {
    close();
    handle_ = ::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK | (followsLinks ? 0 : O_NOFOLLOW));
    return isOpen() ? 0 : errno;
}

void FileLock::close() {
    if (isOpen()) ::close(descriptor(handle_));
    handle_ = kClosed;
}

FileLock::State FileLock::tryLock() {
#ifdef F_OFD_SETLK
    // One byte far behind the data, where no reader, writer or database looks.
    struct flock range {};
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    range.l_start = off_t{1} << (sizeof(off_t) * 8 - 3);
    range.l_len = 1;
    if (::fcntl(descriptor(handle_), F_OFD_SETLK, &range) == 0) return State::Taken;
    if (errno == EAGAIN || errno == EACCES) return State::HeldElsewhere;
#endif
    return State::Unknown;
}

bool FileLock::isFileAt(const std::filesystem::path& path) const {
    struct stat opened {};
    struct stat named {};
    return ::fstat(descriptor(handle_), &opened) == 0 && ::lstat(path.c_str(), &named) == 0 &&
           S_ISREG(opened.st_mode) && opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

int flushToDisk(const std::filesystem::path& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return errno;
    const int failed = ::fsync(fd) != 0 ? errno : 0;
    ::close(fd);
    return failed;
}

int renameWithoutReplacing(const std::filesystem::path& from, const std::filesystem::path& to) {
#ifdef RENAME_NOREPLACE
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
    if (errno != EINVAL && errno != ENOSYS) return errno;
#endif
    if (::link(from.c_str(), to.c_str()) != 0) return errno;
    ::unlink(from.c_str());
    return 0;
}

unsigned long long processNumber() {
    return static_cast<unsigned long long>(::getpid());
}
