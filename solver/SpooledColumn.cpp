#include "solver/SpooledColumn.h"

#include "base/ReplaceFile.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <utility>

namespace solver {
namespace {
constexpr std::size_t kBufferBytes = 1 << 16;

Error systemError(const std::string& what) {
    return Error{what + ": " + systemErrorText(errno)};
}
} // namespace

Spool::Spool(int fd)
    : fd_(fd) {
    buffer_.reserve(kBufferBytes);
}

Spool::Spool(Spool&& other) noexcept
    : fd_(std::exchange(other.fd_, -1))
    , buffer_(std::move(other.buffer_))
    , size_(other.size_)
    , mapping_(std::exchange(other.mapping_, nullptr)) {}

Spool::~Spool() {
    if (mapping_) ::munmap(mapping_, size_);
    if (fd_ >= 0) ::close(fd_);
}

Result<Spool> Spool::create(const std::filesystem::path& folder) {
    std::string name = (folder / ".fatigue-XXXXXX").string();
    const int fd = ::mkostemp(name.data(), O_CLOEXEC);
    if (fd < 0) return systemError("cannot create a temporary file in " + folder.string());
    Spool spool(fd);
    if (::unlink(name.c_str()) != 0) return systemError("cannot remove the temporary file " + name);
    return spool;
}

Result<void> Spool::append(std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const std::size_t count = std::min(bytes.size(), kBufferBytes - buffer_.size());
        buffer_.insert(buffer_.end(), bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
        bytes = bytes.subspan(count);
        if (buffer_.size() < kBufferBytes) continue;
        if (auto flushed = flush(); !flushed) return flushed;
    }
    return {};
}

Result<void> Spool::flush() {
    for (std::size_t done = 0; done < buffer_.size();) {
        const ssize_t put = ::write(fd_, buffer_.data() + done, buffer_.size() - done);
        if (put < 0 && errno == EINTR) continue;
        if (put <= 0) return systemError("cannot write a temporary file beside the result");
        done += static_cast<std::size_t>(put);
    }
    size_ += buffer_.size();
    buffer_.clear();
    return {};
}

Result<std::span<const std::byte>> Spool::view() {
    if (auto flushed = flush(); !flushed) return flushed.error();
    if (size_ == 0) return std::span<const std::byte>();
    if (!mapping_) {
        void* const mapping = ::mmap(nullptr, size_, PROT_READ, MAP_PRIVATE, fd_, 0);
        if (mapping == MAP_FAILED) return systemError("cannot read a temporary file beside the result");
        mapping_ = mapping;
    }
    return std::span(static_cast<const std::byte*>(mapping_), size_);
}

} // namespace solver
