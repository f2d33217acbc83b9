#include "base/ReplaceFile.h"

#include <string.h>

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

/// The lock on an abandoned file; not open when the file is not abandoned.
FileLock lockAbandoned(const fs::path& path) {
    FileLock lock;
    if (lock.open(path, false) != 0) return {};
    // The file may have got another name, and another file this one, before the lock was taken.
    if (lock.tryLock() == FileLock::State::Taken && lock.isFileAt(path)) return lock;
    return {};
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
    name += std::to_string(processNumber()) + "-" + std::to_string(++count);
    return name;
}

struct TemporaryFile {
    fs::path path;
    FileLock lock;
};

/// A new temporary file for `target`; only its name where it cannot be created.
TemporaryFile createTemporary(const fs::path& target) {
    constexpr int kAttempts = 1000;
    TemporaryFile file;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        file.path = temporaryName(target);
        const int failed = file.lock.create(file.path);
        if (failed == EEXIST) continue; // of a process with this number on another machine
        if (failed) return file;
        // Between creation and lock another program may have taken it for a leftover.
        if (file.lock.tryLock() != FileLock::State::HeldElsewhere && file.lock.isFileAt(file.path))
            return file;
        file.lock.close();
    }
    return file;
}

} // namespace

ReplacedFile::ReplacedFile(fs::path target)
    : target_(behindLinks(std::move(target))) {
    removeLeftovers(folderOf(target_));
    auto created = createTemporary(target_);
    temporary_ = std::move(created.path);
    lock_ = std::move(created.lock);
}

ReplacedFile::ReplacedFile(ReplacedFile&& other) noexcept
    : target_(std::move(other.target_))
    , temporary_(std::exchange(other.temporary_, {}))
    , lock_(std::move(other.lock_)) {}

ReplacedFile::~ReplacedFile() {
    std::error_code ignored;
    if (!temporary_.empty()) fs::remove(temporary_, ignored);
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
    if (error)
        return Error{"cannot replace " + target_.string() + ": " +
                     systemErrorText(error.default_error_condition().value())};
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
    return lockAbandoned(path).isOpen();
}

bool removeAbandoned(const fs::path& path) {
    const FileLock lock = lockAbandoned(path);
    std::error_code error;
    return lock.isOpen() && fs::remove(path, error);
}

bool FileInWork::mark(const fs::path& path) {
    FileLock lock;
    if (lock.open(path, true) != 0) return true;
    if (lock.tryLock() == FileLock::State::HeldElsewhere) return false;
    lock_ = std::move(lock);
    return true;
}

bool takeName(const fs::path& existing, const fs::path& name) {
    std::error_code error;
    if (fs::exists(fs::symlink_status(name, error)) && !isAbandoned(name)) return false;
    const fs::path step = temporaryName(name);
    fs::create_hard_link(existing, step, error);
    if (error) return false;
    fs::rename(step, name, error);
    const bool taken = !error;
    if (!taken) fs::remove(step, error);
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
