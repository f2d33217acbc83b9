#include "base/ReplaceFile.h"
#include "solver/ByteSource.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace solver {
namespace {

class FileSource final : public ByteSource {
  public:
    FileSource(int fd, std::uint64_t size, std::string name)
        : fd_(fd)
        , size_(size)
        , name_(std::move(name)) {}
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;
    ~FileSource() override { ::close(fd_); }

    const std::string& name() const override { return name_; }
    std::uint64_t size() const override { return size_; }

    Result<std::size_t> read(std::span<std::byte> out) override {
        std::size_t done = 0;
        while (done < out.size()) {
            const ssize_t got = ::read(fd_, out.data() + done, out.size() - done);
            if (got == 0) break;
            if (got > 0) {
                done += static_cast<std::size_t>(got);
            } else if (errno != EINTR) {
                return Error{"cannot read " + name_ + ": " + systemErrorText(errno)};
            }
        }
        return done;
    }

  private:
    int fd_;
    std::uint64_t size_;
    std::string name_;
};

} // namespace

Result<std::unique_ptr<ByteSource>> openFile(const std::filesystem::path& path) {
    // Not blocking, so that a pipe without a writer is refused rather than waited for.
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) return Error{"cannot open " + path.string() + ": " + systemErrorText(errno)};
    struct stat status {};
    if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(fd);
        return Error{"cannot read " + path.string() + ": it is not a regular file"};
    }
    return std::unique_ptr<ByteSource>(
        std::make_unique<FileSource>(fd, static_cast<std::uint64_t>(status.st_size), path.string()));
}

} // namespace solver
