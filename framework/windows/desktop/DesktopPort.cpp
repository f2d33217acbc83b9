#include "framework/windows/desktop/DesktopPort.h"

#include "framework/windows/ObjectAccess.h"
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

bool paintsItself(HWND window) {
    const auto* record = findWindow(window);
    return record && record->object && record->routed &&
           findMessageEntry(ObjectAccess::messageMap(*record->object), WM_PAINT);
}

void windowChanged(HWND window, unsigned what) {
    if (findWindow(window)) desktop().WindowChanged(window, what);
}

} // namespace framework
