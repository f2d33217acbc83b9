#include "framework/windows/ErrorOutput.h"
#include "framework/windows/ObjectAccess.h"
#include "framework/windows/WindowClasses.h"
#include "framework/windows/WindowState.h"
#include "framework/windows/desktop/DesktopPort.h"

#include <map>

using framework::findWindow;
using framework::windowState;

namespace {

/// The message being handled, for as long as it is.
class CurrentMessage {
  public:
    explicit CurrentMessage(const MSG& message)
        : before_(windowState().current) {
        windowState().current = message;
        ++windowState().depth;
    }
    ~CurrentMessage() {
        windowState().current = before_;
        --windowState().depth;
    }
    CurrentMessage(const CurrentMessage&) = delete;
    CurrentMessage& operator=(const CurrentMessage&) = delete;

  private:
    MSG before_;
};

void paintInvalid() {
    for (auto& window : framework::topLevelWindows())
        if (const auto* record = findWindow(window); record && (record->style & WS_VISIBLE)) {
            std::vector<HWND> waiting = {window};
            while (!waiting.empty()) {
                const HWND next = waiting.back();
                waiting.pop_back();
                UpdateWindow(next);
                if (const auto* painted = findWindow(next))
                    waiting.insert(waiting.end(), painted->children.begin(), painted->children.end());
            }
        }
}

} // namespace

namespace framework {

std::optional<LRESULT> deliver(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const WindowRecord* record = findWindow(window);
    if (!record) return 0;
    const MSG sent{window, message, wParam, lParam};
    const CurrentMessage scope(sent);
    try {
        if (record->object && record->routed) return ObjectAccess::windowProc(*record->object, sent);
        return record->windowClass->procedure(window, message, wParam, lParam);
    } catch (...) {
        reportException();
        return {};
    }
}

void pumpMessages() {
    auto& state = windowState();
    if (state.depth == 0) releaseTemporaries();
    // A handler that posts to itself again and again must not keep the caller from going on.
    constexpr int kMost = 10000;
    for (int count = 0; count < kMost && !state.posted.empty(); ++count) {
        const MSG next = state.posted.front();
        state.posted.pop_front();
        SendMessage(next.hwnd, next.message, next.wParam, next.lParam);
    }
    paintInvalid();
}

bool notifyParent(HWND control, UINT code) {
    const WindowRecord* record = findWindow(control);
    if (!record) return false;
    SendMessage(record->parent, WM_COMMAND, MAKEWPARAM(record->id, code), reinterpret_cast<LPARAM>(control));
    return findWindow(control) != nullptr;
}

LRESULT notifyParent(HWND control, UINT code, NMHDR& header) {
    const WindowRecord* record = findWindow(control);
    if (!record) return 0;
    header = {control, record->id, code};
    return SendMessage(record->parent, WM_NOTIFY, record->id, reinterpret_cast<LPARAM>(&header));
}

} // namespace framework

LRESULT SendMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return framework::deliver(window, message, wParam, lParam).value_or(message == WM_CREATE ? -1 : 0);
}

int PostMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (!findWindow(window)) return 0;
    windowState().posted.push_back({window, message, wParam, lParam});
    framework::desktop().MessagePosted();
    return 1;
}

UINT RegisterWindowMessage(const std::wstring& name) {
    static std::map<std::wstring, UINT> numbers;
    constexpr UINT kFirst = 0xC000;
    return numbers.try_emplace(name, kFirst + static_cast<UINT>(numbers.size())).first->second;
}
