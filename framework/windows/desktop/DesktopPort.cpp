#include "framework/windows/desktop/DesktopPort.h"

#include "framework/windows/WindowRecord.h"
#include "framework/windows/desktop/ScriptedDesk.h"

#include <utility>

namespace framework {
namespace {

DesktopPort* g_desktop = nullptr;

} // namespace

DesktopPort* setDesktop(DesktopPort* desktop) {
    return std::exchange(g_desktop, desktop);
}

DesktopPort& desktop() {
    return g_desktop ? *g_desktop : scriptedDesk();
}

void windowChanged(HWND window, unsigned what) {
    if (findWindow(window)) desktop().WindowChanged(window, what);
}

} // namespace framework
