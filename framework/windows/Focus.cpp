#include "framework/windows/FocusRules.h"
#include "framework/windows/WindowFunctions.h"
#include "framework/windows/WindowState.h"
#include "framework/windows/desktop/DesktopPort.h"
#include "framework/windows/dialogs/Navigation.h"

#include <algorithm>
#include <utility>

using framework::findWindow;
using framework::windowState;

namespace {

bool activatable(HWND window) {
    const auto* record = findWindow(window);
    return record && !record->destroying && (record->style & WS_VISIBLE) && !(record->style & WS_DISABLED);
}

void raise(HWND window) {
    auto& windows = windowState().topLevels;
    const auto place = std::find(windows.begin(), windows.end(), window);
    if (place == windows.end() || place + 1 == windows.end()) return;
    std::rotate(place, place + 1, windows.end());
    framework::windowChanged(window, framework::change::kOrder);
}

/// The focus lies in the active window or nowhere, whatever handlers did meanwhile.
void dropStrayFocus() {
    const auto& state = windowState();
    if (state.focus && framework::topLevelOf(state.focus) != state.active) SetFocus(nullptr);
}

/// Hands the activation over. With `focus` the new window finds a place for the focus itself.
void activate(HWND window, bool focus) {
    auto& state = windowState();
    const HWND before = state.active;
    if (before == window) return;
    state.active = window;
    SendMessage(before, WM_ACTIVATE, WA_INACTIVE, reinterpret_cast<LPARAM>(window));
    framework::windowChanged(before, framework::change::kFocus);
    if (state.active != window || !findWindow(window)) return;
    raise(window);
    // An active window that a handler gives the focus to in WM_ACTIVATE keeps it.
    SendMessage(window, WM_ACTIVATE, WA_ACTIVE, reinterpret_cast<LPARAM>(before));
    framework::windowChanged(window, framework::change::kFocus);
    if (!focus) return;
    if (state.active == window && findWindow(window) && !framework::holdsFocus(window)) SetFocus(window);
    dropStrayFocus();
}

/// The window to go on with when `window` goes: its owner, or else the topmost one.
HWND successor(HWND window) {
    if (const auto* record = findWindow(window))
        if (activatable(record->owner)) return record->owner;
    const auto windows = framework::topLevelWindows();
    const auto found = std::find_if(windows.rbegin(), windows.rend(),
                                    [&](HWND other) { return other != window && activatable(other); });
    return found == windows.rend() ? nullptr : *found;
}

} // namespace

namespace framework {

bool isEnabledWithParents(HWND window) {
    const auto* record = findWindow(window);
    if (!record) return false;
    for (; record; record = findWindow(record->parent))
        if (record->style & WS_DISABLED) return false;
    return true;
}

bool isUsable(HWND window) {
    for (const auto* record = findWindow(window); record && record->parent;
         record = findWindow(record->parent))
        if (!(record->style & WS_VISIBLE)) return false;
    return isEnabledWithParents(window);
}

bool holdsFocus(HWND window) {
    const HWND focus = windowState().focus;
    return focus && (focus == window || IsChild(window, focus));
}

void leaveFocus(HWND window) {
    if (!holdsFocus(window)) return;
    const HWND top = topLevelOf(window);
    HWND next = nextTabItem(top, window, false);
    if (next && (next == window || IsChild(window, next))) next = nullptr;
    if (!next && top != window) next = top;
    SetFocus(isEnabledWithParents(next) ? next : nullptr);
}

void leaveForGood(HWND window) {
    auto* record = findWindow(window);
    if (!record) return;
    record->style &= ~WS_VISIBLE;
    if (record->parent) {
        leaveFocus(window);
    } else if (windowState().active == window) {
        const HWND next = successor(window);
        if (next)
            SetActiveWindow(next);
        else
            activate(nullptr, false);
        if (holdsFocus(window)) SetFocus(nullptr);
    }
}

} // namespace framework

HWND GetFocus() {
    return windowState().focus;
}

HWND SetFocus(HWND window) {
    auto& state = windowState();
    const HWND before = state.focus;
    if (before == window) return before;
    if (window && !framework::isEnabledWithParents(window)) return nullptr;
    if (window) {
        activate(framework::topLevelOf(window), false);
        if (!findWindow(window) || state.active != framework::topLevelOf(window)) {
            dropStrayFocus();
            return before;
        }
    }
    const HWND left = state.focus;
    if (left == window) return before;
    state.focus = window;
    SendMessage(left, WM_KILLFOCUS, reinterpret_cast<WPARAM>(window));
    framework::windowChanged(left, framework::change::kFocus);
    if (window && state.focus == window) {
        SendMessage(window, WM_SETFOCUS, reinterpret_cast<WPARAM>(left));
        framework::windowChanged(window, framework::change::kFocus);
    }
    return before;
}

HWND GetActiveWindow() {
    return windowState().active;
}

HWND SetActiveWindow(HWND window) {
    const auto* record = findWindow(window);
    const HWND before = windowState().active;
    if (!record || record->parent || record->destroying || (record->style & WS_DISABLED)) return nullptr;
    activate(window, true);
    return before;
}

HWND GetCapture() {
    return windowState().capture;
}

HWND SetCapture(HWND window) {
    return findWindow(window) ? std::exchange(windowState().capture, window) : nullptr;
}

int ReleaseCapture() {
    windowState().capture = nullptr;
    return 1;
}

short GetKeyState(int key) {
    const UINT held = windowState().modifiers;
    const bool down = (key == static_cast<int>(VK_SHIFT) && (held & MK_SHIFT)) ||
                      (key == static_cast<int>(VK_CONTROL) && (held & MK_CONTROL));
    return static_cast<short>(down ? -0x8000 : 0);
}

int EnableWindow(HWND window, int enable) {
    auto* record = findWindow(window);
    if (!record) return 0;
    const bool wasDisabled = (record->style & WS_DISABLED) != 0;
    if (wasDisabled != (enable != 0)) return wasDisabled;
    record->style = enable ? record->style & ~WS_DISABLED : record->style | WS_DISABLED;
    framework::windowChanged(window, framework::change::kState);
    // A top-level window keeps the focus until another one becomes active.
    if (!enable && record->parent) framework::leaveFocus(window);
    SendMessage(window, WM_ENABLE, enable != 0);
    return wasDisabled;
}

int IsWindowEnabled(HWND window) {
    const auto* record = findWindow(window);
    return record && !(record->style & WS_DISABLED);
}

int ShowWindow(HWND window, int how) {
    auto* record = findWindow(window);
    if (!record) return 0;
    const bool wasVisible = (record->style & WS_VISIBLE) != 0;
    const bool show = how != SW_HIDE;
    if (show && !record->destroying && !wasVisible) {
        SendMessage(window, WM_SHOWWINDOW, 1);
        if (!findWindow(window)) return wasVisible;
        record->style |= WS_VISIBLE;
        framework::windowChanged(window, framework::change::kState);
        InvalidateRect(window, nullptr, 1);
    } else if (!show && wasVisible) {
        SendMessage(window, WM_SHOWWINDOW, 0);
        if (!findWindow(window)) return wasVisible;
        framework::leaveForGood(window);
        framework::windowChanged(window, framework::change::kState);
    }
    if (show && findWindow(window) && !record->parent && how != SW_SHOWNOACTIVATE && how != SW_SHOWNA)
        SetActiveWindow(window);
    return wasVisible;
}

int IsWindowVisible(HWND window) {
    const auto* record = findWindow(window);
    if (!record) return 0;
    for (; record; record = findWindow(record->parent))
        if (!(record->style & WS_VISIBLE)) return 0;
    return 1;
}
