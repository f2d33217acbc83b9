#include "workbench/picture/ProbeWindow.h"

#include "workbench/picture/SceneWindow.h"
#include "workbench/picture/VtkMessages.h"

#include <X11/Xlib.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

namespace workbench {
namespace {

constexpr unsigned kMostSeconds = 30;

int endAtOnce(Display*) {
    ::_exit(1);
}

/// In the child: leaves by _exit in every case, so that nothing of the parent is flushed or ended twice.
[[noreturn]] void openWindow(const std::string& display) {
    for (const int number : {SIGALRM, SIGABRT, SIGSEGV, SIGTERM})
        ::signal(number, SIG_DFL);
    ::alarm(kMostSeconds);
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    const int nothing = ::open("/dev/null", O_RDWR);
    for (int fd = 0; fd <= 2; ++fd)
        ::dup2(nothing, fd);
    ::XSetIOErrorHandler(endAtOnce);
    const VtkMessages messages;
    SceneWindow window(display, 16, 16);
    ::_exit(window.isOpen() && window.supportsDrawing() ? 0 : 1);
}

} // namespace

bool canDrawOn(const std::string& display) {
    const pid_t child = ::fork();
    if (child == 0) openWindow(display);
    if (child < 0) return false;
    int status = 0;
    while (::waitpid(child, &status, 0) < 0)
        if (errno != EINTR) return false;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool displayAnswers(const std::string& display) {
    Display* connection = ::XOpenDisplay(display.c_str());
    if (connection) ::XCloseDisplay(connection);
    return connection != nullptr;
}

} // namespace workbench
