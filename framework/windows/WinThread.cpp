#include "framework/windows/WinThread.h"

namespace {

CWinThread* g_thread = nullptr;

} // namespace

CWinThread::CWinThread() {
    if (!g_thread) g_thread = this;
}

CWinThread::~CWinThread() {
    if (g_thread == this) g_thread = nullptr;
}

CWinThread* AfxGetThread() {
    return g_thread;
}

CWnd* AfxGetMainWnd() {
    return g_thread ? g_thread->GetMainWnd() : nullptr;
}
