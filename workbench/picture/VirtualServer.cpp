#include "workbench/picture/VirtualServer.h"

#include "base/ReplaceFile.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace workbench {
namespace {

constexpr auto kStartTime = std::chrono::seconds(30);
constexpr auto kEndTime = std::chrono::seconds(3);

/// Both ends of a pipe, closed with the object and in child processes.
struct Pipe {
    int read = -1;
    int write = -1;

    bool open() {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0) return false;
        read = ends[0];
        write = ends[1];
        return true;
    }
    void closeWrite() {
        if (write >= 0) ::close(write);
        write = -1;
    }
    ~Pipe() {
        closeWrite();
        if (read >= 0) ::close(read);
    }
};

/// Becomes Xvfb, in the child: only calls that are safe after a fork. Never returns.
[[noreturn]] void becomeServer(pid_t parent, int displayFd, int statusFd, char* const* arguments) {
    // The signal is sent when the thread that forked ends, which waits as long as the process lives.
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() != parent) ::_exit(1);
    ::setpgid(0, 0); // an interrupt from the terminal is for the program, which still needs its server
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::signal(SIGPIPE, SIG_DFL);
    const int nothing = ::open("/dev/null", O_RDWR);
    for (int fd = 0; fd <= 2; ++fd)
        ::dup2(nothing, fd);
    ::close_range(3, ~0U, CLOSE_RANGE_CLOEXEC);
    ::fcntl(displayFd, F_SETFD, 0);
    ::execvp(arguments[0], arguments);
    const int failed = errno;
    [[maybe_unused]] const auto written = ::write(statusFd, &failed, sizeof failed);
    ::_exit(127);
}

/// The line that Xvfb writes when it is ready, its display number; empty when it ended or took too long.
std::string readDisplayNumber(int fd) {
    const auto deadline = std::chrono::steady_clock::now() + kStartTime;
    std::string line;
    while (true) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        pollfd waiting{fd, POLLIN, 0};
        const int ready = left.count() > 0 ? ::poll(&waiting, 1, static_cast<int>(left.count())) : 0;
        if (ready < 0 && errno == EINTR) continue;
        char byte;
        if (ready <= 0 || ::read(fd, &byte, 1) != 1) return {};
        if (byte == '\n') break;
        line += byte;
    }
    const bool digits =
        !line.empty() && std::ranges::all_of(line, [](char c) { return c >= '0' && c <= '9'; });
    return digits ? line : std::string();
}

/// The cause why the program did not start, 0 when it did.
int readStartFailure(int fd) {
    int failed = 0;
    ssize_t got;
    do
        got = ::read(fd, &failed, sizeof failed);
    while (got < 0 && errno == EINTR);
    return got == sizeof failed ? failed : 0;
}

} // namespace

struct VirtualServer::Child {
    std::mutex mutex;
    std::condition_variable changed;
    pid_t pid = 0; ///< 0 before the fork, -1 when that failed
    bool ended = false;

    /// Forks, then waits for the end. Runs in a thread of its own, the parent in the sense of the death
    /// signal.
    void run(pid_t parent, int displayFd, int statusFd, char* const* arguments) {
        const pid_t forked = ::fork();
        if (forked == 0) becomeServer(parent, displayFd, statusFd, arguments);
        {
            const std::lock_guard lock(mutex);
            pid = forked;
            ended = forked < 0;
        }
        changed.notify_all();
        if (forked < 0) return;
        siginfo_t info;
        while (::waitid(P_PID, static_cast<id_t>(forked), &info, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
        }
        // Only now is the number given back to the system, so that `signal` never meets a stranger.
        const std::lock_guard lock(mutex);
        ::waitpid(forked, nullptr, 0);
        ended = true;
        changed.notify_all();
    }

    void signal(int number) {
        const std::lock_guard lock(mutex);
        if (!ended && pid > 0) ::kill(pid, number);
    }

    bool waitForEnd(std::chrono::seconds time) {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, time, [this] { return ended; });
    }

    void end() {
        signal(SIGTERM);
        if (waitForEnd(kEndTime)) return;
        signal(SIGKILL);
        waitForEnd(kEndTime);
    }
};

VirtualServer::VirtualServer(std::shared_ptr<Child> child)
    : child_(std::move(child)) {}

Result<std::unique_ptr<VirtualServer>> VirtualServer::start() {
    Pipe number, status;
    if (!number.open() || !status.open())
        return Error{"cannot start a virtual display for the picture: " + systemErrorText(errno)};
    const std::string fd = std::to_string(number.write);
    std::string texts[] = {"Xvfb",      "-displayfd", fd,         "-screen",    "0",  "640x480x24",
                           "-nolisten", "tcp",        "-noreset", "+extension", "GLX"};
    std::vector<char*> arguments;
    for (std::string& text : texts)
        arguments.push_back(text.data());
    arguments.push_back(nullptr);

    auto child = std::make_shared<Child>();
    std::thread([child, parent = ::getpid(), &number, &status, argv = arguments.data()] {
        child->run(parent, number.write, status.write, argv);
    }).detach();
    {
        std::unique_lock lock(child->mutex);
        child->changed.wait(lock, [&] { return child->pid != 0; });
    }
    // From here the object ends the child on every way out.
    std::unique_ptr<VirtualServer> server(new VirtualServer(child));
    number.closeWrite();
    status.closeWrite();
    if (child->pid < 0)
        return Error{"cannot start a virtual display for the picture: the system has no room for a process"};
    if (const int failed = readStartFailure(status.read))
        return Error{failed == ENOENT ? "pictures need an X display or the program Xvfb, and neither is "
                                        "there: install the package xvfb"
                                      : "cannot start Xvfb for the picture: " + systemErrorText(failed)};
    const std::string found = readDisplayNumber(number.read);
    if (found.empty())
        return Error{"the virtual display for the picture (Xvfb) ended or did not answer: try it with "
                     "\"Xvfb -displayfd 1\""};
    server->display_ = ":" + found;
    return server;
}

VirtualServer::~VirtualServer() {
    child_->end();
}

bool VirtualServer::alive() const {
    const std::lock_guard lock(child_->mutex);
    return !child_->ended;
}

} // namespace workbench
