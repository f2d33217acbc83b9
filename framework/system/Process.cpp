#include "framework/system/Process.h"

#include "framework/system/ChildProcess.h"
#include "framework/system/SystemError.h"

namespace framework {

namespace {

std::optional<ProcessEnd> g_lastEnd;
std::wstring g_lastFailure;

} // namespace

int runProcess(const ProcessRequest& request) {
    forgetLastProcess();
    int error = 0;
    g_lastEnd = runChild(request, error);
    if (error) g_lastFailure = L"cannot start " + request.program + L": " + systemErrorText(error);
    return g_lastEnd ? 1 : 0;
}

void forgetLastProcess() {
    g_lastEnd.reset();
    g_lastFailure.clear();
}

const std::optional<ProcessEnd>& lastProcessEnd() {
    return g_lastEnd;
}
const std::wstring& lastProcessFailure() {
    return g_lastFailure;
}

} // namespace framework
