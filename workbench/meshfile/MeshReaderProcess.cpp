#include "workbench/meshfile/MeshReaderProcess.h"

#include "base/ReplaceFile.h"
#include "workbench/meshfile/MeshReaderLimits.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

namespace workbench {
namespace {

using Clock = std::chrono::steady_clock;

/// A file descriptor that the child cannot mistake for one of its own, closed with the object.
class Descriptor {
  public:
    explicit Descriptor(int fd = -1) {
        if (fd < 0) return;
        constexpr int kAboveChilds = 16;
        fd_ = ::fcntl(fd, F_DUPFD_CLOEXEC, kAboveChilds);
        ::close(fd);
    }
    ~Descriptor() { reset(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return fd_; }
    int release() { return std::exchange(fd_, -1); }
    void reset() {
        if (fd_ >= 0) ::close(fd_);
        fd_ = -1;
    }

  private:
    int fd_ = -1;
};

/// A file without a name in the folder for temporary files; -1 and errno on failure.
int nameless() {
    std::error_code code;
    const auto folder = std::filesystem::temp_directory_path(code);
    if (code) {
        errno = ENOENT;
        return -1;
    }
    std::string name = (folder / "vexa-mesh-XXXXXX").string();
    const int fd = ::mkostemp(name.data(), O_CLOEXEC);
    if (fd >= 0) ::unlink(name.c_str());
    return fd;
}

class FileActions {
  public:
    FileActions() { ::posix_spawn_file_actions_init(&actions_); }
    ~FileActions() { ::posix_spawn_file_actions_destroy(&actions_); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;

    /// The child has nothing but its output, the pipe that ends with it, and no words of its libraries.
    posix_spawn_file_actions_t* forChild(int output, int alive) {
        for (int fd = 0; fd <= 2; ++fd)
            ::posix_spawn_file_actions_addopen(&actions_, fd, "/dev/null", O_RDWR, 0);
        ::posix_spawn_file_actions_adddup2(&actions_, output, kMeshOutput);
        ::posix_spawn_file_actions_adddup2(&actions_, alive, kMeshOutput + 1);
        ::posix_spawn_file_actions_addclosefrom_np(&actions_, kMeshOutput + 2);
        return &actions_;
    }

  private:
    posix_spawn_file_actions_t actions_;
};

/// Waits until the other end of the pipe is closed. False when the time is over.
bool waitForEnd(int pipe, Clock::time_point deadline) {
    while (true) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0) return false;
        pollfd waiting{pipe, POLLIN, 0};
        const int ready = ::poll(&waiting, 1, static_cast<int>(std::min<std::int64_t>(left, 1 << 30)));
        if (ready > 0) return true;
        if (ready < 0 && errno != EINTR) return false;
    }
}

int statusOf(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

std::filesystem::path programBeside() {
    std::error_code code;
    return std::filesystem::read_symlink("/proc/self/exe", code).parent_path() / "vexa-read-mesh";
}

} // namespace

Result<MeshFile> readMeshFile(const std::filesystem::path& path, const MeshReading& reading) {
    std::error_code code;
    const std::uint64_t bytes = std::filesystem::file_size(path, code);
    if (code) return Error{path.string() + " cannot be read: " + code.message()};
    const auto limit =
        reading.timeLimit.value_or(std::chrono::seconds(60) + std::chrono::seconds(bytes >> 20));
    const std::string program = (reading.program.empty() ? programBeside() : reading.program).string();

    Descriptor output(nameless());
    int ends[2] = {-1, -1};
    if (output.get() < 0 || ::pipe2(ends, O_CLOEXEC) != 0)
        return Error{path.string() + " cannot be read: no temporary file: " + systemErrorText(errno)};
    Descriptor ended(ends[0]), alive(ends[1]);

    std::string file = path.string();
    char* const arguments[] = {const_cast<char*>(program.c_str()), file.data(), nullptr};
    pid_t child = 0;
    const int failed =
        ::posix_spawn(&child, program.c_str(), FileActions().forChild(output.get(), alive.get()), nullptr,
                      arguments, environ);
    alive.reset();
    if (failed != 0)
        return Error{file + " cannot be read: " + program + " does not start: " + systemErrorText(failed)};
    const bool inTime = waitForEnd(ended.get(), Clock::now() + limit);
    if (!inTime) ::kill(child, SIGKILL);
    const int status = statusOf(child);
    if (!inTime)
        return Error{file + ": reading it took more than " + std::to_string(limit.count() / 1000) +
                     " seconds and was given up; the file is damaged"};
    if (WIFSIGNALED(status))
        return Error{file + ": the library that reads such files broke off (signal " +
                     std::to_string(WTERMSIG(status)) +
                     "); the file is damaged, or of a kind it cannot read"};
    std::FILE* stream = ::fdopen(output.get(), "rb");
    if (!stream) return Error{file + " cannot be read: " + systemErrorText(errno)};
    output.release();
    return MeshFile::open(stream, file);
}

} // namespace workbench
