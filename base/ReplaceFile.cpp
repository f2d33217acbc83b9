#include "base/ReplaceFile.h"

#include <fcntl.h>
#include <string.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace {

std::filesystem::path temporaryNameFor(const std::filesystem::path& target) {
    std::filesystem::path name = target;
    name += ".part-" + std::to_string(::getpid());
    return name;
}

/// Where a rename must go so that a link stays a link.
std::filesystem::path behindLinks(std::filesystem::path path) {
    std::error_code error;
    if (!std::filesystem::is_symlink(path, error)) return path;
    auto resolved = std::filesystem::canonical(path, error);
    return error ? path : resolved;
}

/// fsync of a file or folder by path; the error number, 0 on success.
int flushToDisk(const std::filesystem::path& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return errno;
    const int failed = ::fsync(fd) != 0 ? errno : 0;
    ::close(fd);
    return failed;
}

} // namespace

ReplacedFile::ReplacedFile(std::filesystem::path target)
    : target_(behindLinks(std::move(target)))
    , temporary_(temporaryNameFor(target_)) {}

ReplacedFile::ReplacedFile(ReplacedFile&& other) noexcept
    : target_(std::move(other.target_))
    , temporary_(std::exchange(other.temporary_, {})) {}

ReplacedFile::~ReplacedFile() {
    std::error_code ignored;
    if (!temporary_.empty()) std::filesystem::remove(temporary_, ignored);
}

Result<void> ReplacedFile::commit() {
    std::error_code unknown;
    const auto standing = std::filesystem::status(target_, unknown);
    if (std::filesystem::exists(standing) && !std::filesystem::is_regular_file(standing))
        return Error{"cannot write " + target_.string() + ": it is no ordinary file"};
    if (const int failed = flushToDisk(temporary_))
        return Error{"cannot write " + target_.string() + ": " + systemErrorText(failed)};
    std::error_code error;
    std::filesystem::rename(temporary_, target_, error);
    if (error) return Error{"cannot replace " + target_.string() + ": " + systemErrorText(error.value())};
    temporary_.clear();
    // The name itself reaches the disk with its folder; some file systems refuse this, which costs nothing
    // but the promptness of the rename.
    const auto folder = target_.has_parent_path() ? target_.parent_path() : std::filesystem::path(".");
    flushToDisk(folder);
    return {};
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
