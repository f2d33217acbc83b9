#include "base/ReplaceFile.h"

#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <system_error>
#include <utility>

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kTemporaryMark = ".vexa-part-";

/// Where a rename must go so that a link stays a link.
fs::path behindLinks(fs::path path) {
    std::error_code error;
    if (!fs::is_symlink(path, error)) return path;
    auto resolved = fs::canonical(path, error);
    return error ? path : resolved;
}

fs::path folderOf(const fs::path& path) {
    return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

/// fsync of a file or folder by path; the error number, 0 on success.
int flushToDisk(const fs::path& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return errno;
    const int failed = ::fsync(fd) != 0 ? errno : 0;
    ::close(fd);
    return failed;
}

enum class Lock { Taken, HeldElsewhere, Unknown };

/// Locks one byte far behind the data, where no reader, writer or database looks. The lock belongs to the
/// open file: it ends when the descriptor is closed, also by the death of the process, and not before.
Lock tryLock(int fd) {
#ifdef F_OFD_SETLK
    struct flock range {};
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    range.l_start = off_t{1} << (sizeof(off_t) * 8 - 3);
    range.l_len = 1;
    if (::fcntl(fd, F_OFD_SETLK, &range) == 0) return Lock::Taken;
    if (errno == EAGAIN || errno == EACCES) return Lock::HeldElsewhere;
#else
    static_cast<void>(fd);
#endif
    return Lock::Unknown;
}

bool sameFile(int fd, const fs::path& path) {
    struct stat opened {};
    struct stat named {};
    return ::fstat(fd, &opened) == 0 && ::lstat(path.c_str(), &named) == 0 && S_ISREG(opened.st_mode) &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

/// A descriptor of an abandoned file, which is locked by it; -1 when the file is not abandoned.
int lockAbandoned(const fs::path& path) {
    const int fd = ::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (fd < 0) return -1;
    // The file may have got another name, and another file this one, before the lock was taken.
    if (tryLock(fd) == Lock::Taken && sameFile(fd, path)) return fd;
    ::close(fd);
    return -1;
}

void removeLeftovers(const fs::path& folder) {
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
        if (isTemporaryName(at->path().filename())) removeAbandoned(at->path());
}

/// Another name each time.
fs::path temporaryName(const fs::path& target) {
    static std::atomic<unsigned> count{0};
    fs::path name = target;
    name += kTemporaryMark;
    name += std::to_string(::getpid()) + "-" + std::to_string(++count);
    return name;
}

struct TemporaryFile {
    fs::path path;
    int lock = -1;
};

/// A new temporary file for `target`; only its name where it cannot be created.
TemporaryFile createTemporary(const fs::path& target) {
    constexpr int kAttempts = 1000;
    TemporaryFile file;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        file.path = temporaryName(target);
        file.lock = ::open(file.path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (file.lock < 0 && errno == EEXIST) continue; // of a process with this number on another machine
        if (file.lock < 0) return file;
        // Between creation and lock another program may have taken it for a leftover.
        if (tryLock(file.lock) != Lock::HeldElsewhere && sameFile(file.lock, file.path)) return file;
        ::close(std::exchange(file.lock, -1));
    }
    return file;
}

/// Renames unless something stands under the new name; the error number, 0 on success.
int renameWithoutReplacing(const fs::path& from, const fs::path& to) {
#ifdef RENAME_NOREPLACE
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
    if (errno != EINVAL && errno != ENOSYS) return errno;
#endif
    if (::link(from.c_str(), to.c_str()) != 0) return errno;
    ::unlink(from.c_str());
    return 0;
}

} // namespace

ReplacedFile::ReplacedFile(fs::path target)
    : target_(behindLinks(std::move(target))) {
    removeLeftovers(folderOf(target_));
    auto created = createTemporary(target_);
    temporary_ = std::move(created.path);
    lock_ = created.lock;
}

ReplacedFile::ReplacedFile(ReplacedFile&& other) noexcept
    : target_(std::move(other.target_))
    , temporary_(std::exchange(other.temporary_, {}))
    , lock_(std::exchange(other.lock_, -1)) {}

ReplacedFile::~ReplacedFile() {
    std::error_code ignored;
    if (!temporary_.empty()) fs::remove(temporary_, ignored);
    if (lock_ >= 0) ::close(lock_);
}

Result<void> ReplacedFile::flush() const {
    if (const int failed = flushToDisk(temporary_))
        return Error{"cannot write " + target_.string() + ": " + systemErrorText(failed)};
    return {};
}

/// The file has its name now.
void ReplacedFile::named() {
    temporary_.clear();
    // The name itself reaches the disk with its folder; some file systems refuse this, which costs nothing
    // but the promptness of the rename.
    flushToDisk(folderOf(target_));
}

Result<void> ReplacedFile::commit() {
    std::error_code unknown;
    const auto standing = fs::status(target_, unknown);
    if (fs::exists(standing) && !fs::is_regular_file(standing))
        return Error{"cannot write " + target_.string() + ": it is no ordinary file"};
    if (auto flushed = flush(); !flushed) return flushed;
    std::error_code error;
    fs::rename(temporary_, target_, error);
    if (error) return Error{"cannot replace " + target_.string() + ": " + systemErrorText(error.value())};
    named();
    return {};
}

Result<fs::path> ReplacedFile::commitUnderFreeName() {
    if (auto flushed = flush(); !flushed) return flushed.error();
    fs::path name = target_;
    int failed = renameWithoutReplacing(temporary_, name);
    for (int number = 2; failed == EEXIST; ++number) {
        name = numberedName(target_, number);
        failed = renameWithoutReplacing(temporary_, name);
    }
    if (failed) return Error{"cannot write " + name.string() + ": " + systemErrorText(failed)};
    named();
    return name;
}

fs::path numberedName(const fs::path& name, int number) {
    fs::path numbered = name.parent_path() / name.stem();
    numbered += "~" + std::to_string(number);
    numbered += name.extension();
    return numbered;
}

bool isTemporaryName(const fs::path& name) {
    const std::string text = name.filename().string();
    const auto mark = text.rfind(kTemporaryMark);
    if (mark == text.npos || mark == 0) return false;
    const auto rest = text.find_first_not_of("0123456789-", mark + kTemporaryMark.size());
    return rest == text.npos && mark + kTemporaryMark.size() < text.size();
}

bool isAbandoned(const fs::path& path) {
    const int fd = lockAbandoned(path);
    if (fd >= 0) ::close(fd);
    return fd >= 0;
}

bool removeAbandoned(const fs::path& path) {
    const int fd = lockAbandoned(path);
    if (fd < 0) return false;
    const bool removed = ::unlink(path.c_str()) == 0;
    ::close(fd);
    return removed;
}

FileInWork::~FileInWork() {
    if (lock_ >= 0) ::close(lock_);
}

FileInWork::FileInWork(FileInWork&& other) noexcept
    : lock_(std::exchange(other.lock_, -1)) {}

bool FileInWork::mark(const fs::path& path) {
    const int fd = ::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) return true;
    if (tryLock(fd) == Lock::HeldElsewhere) {
        ::close(fd);
        return false;
    }
    if (lock_ >= 0) ::close(lock_);
    lock_ = fd;
    return true;
}

bool takeName(const fs::path& existing, const fs::path& name) {
    struct stat standing {};
    if (::lstat(name.c_str(), &standing) == 0 && !isAbandoned(name)) return false;
    const fs::path step = temporaryName(name);
    if (::link(existing.c_str(), step.c_str()) != 0) return false;
    const bool taken = ::rename(step.c_str(), name.c_str()) == 0;
    if (!taken) ::unlink(step.c_str());
    return taken;
}

std::string systemErrorText(int errorNumber) {
#ifdef __GLIBC__
    // The category's message would be in the language of a locale that a program has set.
    if (const char* text = ::strerrordesc_np(errorNumber)) return text;
    return "error " + std::to_string(errorNumber);
#else
    return std::generic_category().message(errorNumber);
#endif
}
