#include "framework/files/PathMap.h"
#include "framework/system/ChildProcess.h"
#include "framework/text/CodePage.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>

extern char** environ;

namespace framework {

namespace {

/// What the child does with its descriptors before the program starts: it reads nothing, it has nothing of
/// ours, and what it prints does not mix with our own output.
class ChildDescriptors {
  public:
    ChildDescriptors() {
        error_ = ::posix_spawn_file_actions_init(&actions_);
        if (error_) return;
        initialized_ = true;
        check(::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0));
        check(::posix_spawn_file_actions_adddup2(&actions_, STDERR_FILENO, STDOUT_FILENO));
#if defined(__GLIBC__) && __GLIBC_PREREQ(2, 34)
        check(::posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1));
#endif
    }
    ~ChildDescriptors() {
        if (initialized_) ::posix_spawn_file_actions_destroy(&actions_);
    }
    ChildDescriptors(const ChildDescriptors&) = delete;
    ChildDescriptors& operator=(const ChildDescriptors&) = delete;

    int error() const {
        return error_;
    }
    const posix_spawn_file_actions_t* get() const {
        return &actions_;
    }

  private:
    void check(int error) {
        if (!error_) error_ = error;
    }
    posix_spawn_file_actions_t actions_;
    bool initialized_ = false;
    int error_ = 0;
};

/// The system's error number; 0 when the program itself has started.
int start(const std::string& program, const std::string& argument, pid_t& child) {
    if (program.find('\0') != std::string::npos || argument.find('\0') != std::string::npos) return EINVAL;
    const ChildDescriptors descriptors;
    if (descriptors.error()) return descriptors.error();
    std::array<char*, 3> arguments{const_cast<char*>(program.c_str()), const_cast<char*>(argument.c_str()),
                                   nullptr};
    return ::posix_spawn(&child, program.c_str(), descriptors.get(), nullptr, arguments.data(), environ);
}

ProcessEnd waitFor(pid_t child, const std::wstring& program) {
    ProcessEnd end{program, 0, 0};
    int status = 0;
    pid_t ended = 0;
    do {
        ended = ::waitpid(child, &status, 0);
    } while (ended < 0 && errno == EINTR);
    if (ended < 0)
        end.exitCode = -1;
    else if (WIFSIGNALED(status))
        end.signal = WTERMSIG(status);
    else
        end.exitCode = WEXITSTATUS(status);
    return end;
}

} // namespace

std::optional<ProcessEnd> runChild(const ProcessRequest& request, int& error) {
    const std::string program = nativePath(request.program).native();
    const std::string argument = toUtf8(request.argument);
    pid_t child = 0;
    error = start(program, argument, child);
    if (error) return std::nullopt;
    return waitFor(child, request.program);
}

} // namespace framework
