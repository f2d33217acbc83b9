#include "framework/system/ChildProcess.h"

#include <windows.h>

namespace framework {

namespace {

/// The handles of a child process; closed with the object.
class Child {
  public:
    Child() = default;
    ~Child() {
        if (information_.hThread) ::CloseHandle(information_.hThread);
        if (information_.hProcess) ::CloseHandle(information_.hProcess);
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// The system's error number; 0 when the program has started.
    int start(std::wstring commandLine) {
        // The system would take the part before a zero character for the whole line.
        if (commandLine.find(L'\0') != std::wstring::npos) return ERROR_INVALID_NAME;
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        startup.dwFlags = STARTF_USESHOWWINDOW | STARTF_FORCEOFFFEEDBACK;
        startup.wShowWindow = SW_HIDE;
        if (::CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                             &startup, &information_))
            return 0;
        return static_cast<int>(::GetLastError());
    }

    /// False when the wait reported a time-out, which it has no reason to.
    bool wait() { return ::WaitForSingleObject(information_.hProcess, INFINITE) != WAIT_TIMEOUT; }

    /// -1 when the system does not tell.
    std::int64_t exitCode() const {
        DWORD code = 0;
        return ::GetExitCodeProcess(information_.hProcess, &code) ? std::int64_t{code} : -1;
    }

  private:
    PROCESS_INFORMATION information_{};
};

} // namespace

std::optional<ProcessEnd> runChild(const ProcessRequest& request, int& error) {
    Child child;
    error = child.start(request.commandLine);
    if (error || !child.wait()) return std::nullopt;
    return ProcessEnd{request.program, child.exitCode(), 0};
}

} // namespace framework
