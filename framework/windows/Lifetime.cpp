#include "framework/windows/ErrorOutput.h"
#include "framework/windows/FocusRules.h"
#include "framework/windows/ObjectAccess.h"
#include "framework/windows/WinThread.h"
#include "framework/windows/WindowClasses.h"
#include "framework/windows/WindowState.h"
#include "framework/windows/desktop/DesktopPort.h"

#include <algorithm>

using framework::findWindow;
using framework::WindowRecord;
using framework::windowState;

namespace {

bool attachMaker(CWnd& object, WindowRecord& record) {
    record.made = true;
    try {
        framework::ObjectAccess::attach(object, record, true);
        return true;
    } catch (...) {
        framework::reportException();
        return false;
    }
}

void destroyOwned(HWND window) {
    for (const HWND other : framework::topLevelWindows())
        if (const auto* record = findWindow(other); record && record->owner == window) DestroyWindow(other);
}

void destroyChildren(HWND window) {
    const auto* record = findWindow(window);
    if (!record) return;
    // A child that is on its way out already (its handler destroys us) ends by itself.
    const auto children = record->children;
    for (const HWND child : children)
        DestroyWindow(child);
}

/// Takes every trace of a window out of what others remember.
void forget(const WindowRecord& record) {
    auto& state = windowState();
    const HWND window = record.handle;
    std::erase(state.topLevels, window);
    if (auto* parent = findWindow(record.parent)) std::erase(parent->children, window);
    std::erase_if(state.posted, [&](const MSG& posted) { return posted.hwnd == window; });
    for (HWND* remembered : {&state.active, &state.focus, &state.capture, &state.lockedOut})
        if (*remembered == window) *remembered = nullptr;
    if (auto lent = state.temporaries.extract(window)) {
        framework::ObjectAccess::lend(*lent.mapped(), nullptr);
        state.deadTemporaries.push_back(std::move(lent.mapped()));
    }
}

} // namespace

namespace framework {

HWND createWindow(const NewWindow& wanted, CWnd* object, bool incomplete) {
    const WindowClass* windowClass = findWindowClass(wanted.className);
    const bool child = (wanted.style & WS_CHILD) != 0;
    WindowRecord* parent = findWindow(wanted.parent);
    if (!windowClass || (object && object->m_hWnd) || (wanted.parent && !parent) || (child && !parent))
        return nullptr;
    if (parent && parent->destroying) return nullptr;
    if (!child && windowState().depth == 0) releaseTemporaries();

    WindowRecord& record = addRecord();
    const HWND window = record.handle;
    record.windowClass = windowClass;
    // A top-level window is shown when it is complete, so that it is never active before.
    record.style = child ? wanted.style : wanted.style & ~WS_VISIBLE;
    record.exStyle = wanted.exStyle;
    record.id = wanted.id & 0xFFFF;
    record.text = wanted.text;
    record.rect = wanted.rect;
    record.creating = true;
    GetClientRect(window, &record.invalid);
    record.eraseInvalid = true;
    if (child) {
        record.parent = wanted.parent;
        parent->children.push_back(window);
    } else {
        record.owner = topLevelOf(wanted.parent);
        windowState().topLevels.push_back(window);
    }
    const bool attached = !object || attachMaker(*object, record);
    desktop().WindowCreated(window);
    if (!attached || deliver(window, WM_CREATE, 0, 0).value_or(-1) == -1) {
        DestroyWindow(window);
        return nullptr;
    }
    if (incomplete) return findWindow(window) ? window : nullptr;
    completeCreation(window);
    if (!child && (wanted.style & WS_VISIBLE)) ShowWindow(window, SW_SHOW);
    return findWindow(window) ? window : nullptr;
}

void completeCreation(HWND window) {
    if (auto* record = findWindow(window)) record->creating = false;
}

} // namespace framework

int IsWindow(HWND window) {
    return findWindow(window) != nullptr;
}

int DestroyWindow(HWND window) {
    WindowRecord* record = findWindow(window);
    if (!record || record->destroying) return 0;
    record->destroying = true;
    destroyOwned(window);
    framework::leaveForGood(window);
    SendMessage(window, WM_DESTROY);
    destroyChildren(window);
    SendMessage(window, WM_NCDESTROY);

    framework::desktop().WindowDestroyed(window);
    CWnd* object = record->object;
    if (CWinThread* thread = AfxGetThread(); thread && object && thread->m_pMainWnd == object)
        thread->m_pMainWnd = nullptr;
    const bool completed = !record->creating;
    framework::ObjectAccess::detach(*record);
    forget(*record);
    framework::removeRecord(window);
    if (object && completed) {
        try {
            framework::ObjectAccess::postNcDestroy(*object);
        } catch (...) {
            framework::reportException();
        }
    }
    return 1;
}
