#include "workbench/cli/DesktopChart.h"

#include "base/ReplaceFile.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <stdexcept>

namespace workbench::cli {

Result<void> runDesktop(const std::vector<std::string>& arguments) {
    std::error_code code;
    const std::string program =
        (std::filesystem::read_symlink("/proc/self/exe", code).parent_path() / "vexa-desktop").string();
    std::vector<char*> words{const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments)
        words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    pid_t child = 0;
    if (const int error = ::posix_spawn(&child, program.c_str(), nullptr, nullptr, words.data(), ::environ))
        return Error{"cannot start " + program + ", which draws PNG pictures: " + systemErrorText(error) +
                     "; an SVG picture needs no other program"};
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return {};
    return Error{"vexa-desktop did not draw the picture"};
}

TemporaryText::TemporaryText(const std::string& text)
    : path_((std::filesystem::temp_directory_path() / "vexa-XXXXXX").string()) {
    const int file = ::mkstemp(path_.data());
    if (file < 0) throw std::runtime_error("cannot write " + path_ + ": " + systemErrorText(errno));
    const bool isWritten = ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    if (::close(file) == 0 && isWritten) return;
    ::unlink(path_.c_str());
    throw std::runtime_error("cannot write " + path_);
}

TemporaryText::~TemporaryText() {
    ::unlink(path_.c_str());
}

} // namespace workbench::cli
