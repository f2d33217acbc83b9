#include "framework/windows/WindowClasses.h"

#include "framework/windows/FocusRules.h"
#include "framework/windows/WindowState.h"
#include "framework/windows/Wnd.h"
#include "framework/windows/controls/ControlClasses.h"
#include "framework/windows/desktop/DesktopPort.h"
#include "framework/windows/dialogs/Navigation.h"

#include <deque>

namespace framework {
namespace {

std::wstring folded(std::wstring_view name) {
    std::wstring text(name);
    for (wchar_t& c : text)
        if (c >= L'A' && c <= L'Z') c = static_cast<wchar_t>(c - L'A' + L'a');
    return text;
}

/// A deque: references to classes stay.
std::deque<WindowClass>& classes() {
    static std::deque<WindowClass>& all = *new std::deque<WindowClass>(controlClasses());
    return all;
}

} // namespace

const WindowClass* findWindowClass(std::wstring_view name) {
    const std::wstring wanted = folded(name);
    for (const auto& known : classes())
        if (folded(known.name) == wanted) return &known;
    return nullptr;
}

const WindowClass& registerWindowClass(WindowClass added) {
    if (const auto* known = findWindowClass(added.name)) return *known;
    return classes().emplace_back(std::move(added));
}

ControlKind kindOf(HWND window) {
    const auto* record = findWindow(window);
    return record ? record->windowClass->kind : ControlKind::kPlain;
}

LRESULT defaultProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* record = findWindow(window);
    if (!record) return 0;
    switch (message) {
    case WM_SETTEXT:
        record->text = lParam ? reinterpret_cast<const wchar_t*>(lParam) : L"";
        windowChanged(window, change::kText);
        return 1;
    case WM_CLOSE:
        DestroyWindow(window);
        return 0;
    case WM_ACTIVATE:
        if (wParam != WA_INACTIVE && !holdsFocus(window)) SetFocus(window);
        return 0;
    case WM_MOUSEWHEEL:
        return record->parent ? SendMessage(record->parent, message, wParam, lParam) : 0;
    default:
        return 0;
    }
}

} // namespace framework
