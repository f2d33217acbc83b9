#include "framework/windows/dialogs/Navigation.h"

#include "framework/windows/FocusRules.h"
#include "framework/windows/WindowClasses.h"
#include "framework/windows/WindowFunctions.h"
#include "framework/windows/WindowRecord.h"
#include "framework/windows/controls/ControlClasses.h"

#include <algorithm>

namespace framework {
namespace {

bool isPage(const WindowRecord& record) {
    return record.windowClass->kind == ControlKind::kDialog || (record.exStyle & WS_EX_CONTROLPARENT);
}

/// What input a control takes itself; `key`, when given, is the message in question.
UINT dialogCode(HWND window, const MSG* key = nullptr) {
    return static_cast<UINT>(SendMessage(window, WM_GETDLGCODE, 0, reinterpret_cast<LPARAM>(key)));
}

bool isRadio(HWND window) {
    return (dialogCode(window) & DLGC_RADIOBUTTON) != 0;
}

/// Whether Tab stops at a control. Of the radio buttons of a group only the checked one counts, and while
/// none is checked the first that can be used.
bool isTabStop(HWND window) {
    const auto* record = findWindow(window);
    if (!record || isPage(*record) || !isUsable(window)) return false;
    if (!isRadio(window)) return (record->style & WS_TABSTOP) != 0;
    HWND stop = nullptr;
    bool wanted = false;
    for (const HWND member : groupOf(window)) {
        if (!isRadio(member)) continue;
        const auto* button = findWindow(member);
        wanted = wanted || (button->style & WS_TABSTOP);
        if (isUsable(member) && (!stop || button->check)) stop = member;
    }
    return wanted && stop == window;
}

void collect(HWND window, std::vector<HWND>& controls) {
    const auto* record = findWindow(window);
    if (!record) return;
    for (const HWND child : record->children) {
        controls.push_back(child);
        if (const auto* page = findWindow(child); page && isPage(*page)) collect(child, controls);
    }
}

void focusTo(HWND control) {
    if (!control) return;
    SetFocus(control);
    // An edit that is reached by the keyboard is ready to be typed over.
    if (dialogCode(control) & DLGC_HASSETSEL) SendMessage(control, EM_SETSEL, 0, -1);
}

void moveInGroup(HWND from, bool previous) {
    const HWND next = nextGroupItem(from, previous);
    if (!next || next == from) return;
    focusTo(next);
    if (isRadio(next)) SendMessage(next, BM_CLICK);
}

/// Enter: the focused push button, or else the default one. Without either the dialog still hears IDOK.
int pressDefault(HWND dialog, HWND focus) {
    HWND button = (dialogCode(focus) & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) ? focus : nullptr;
    UINT id = static_cast<UINT>(IDOK);
    if (!button) {
        if (const UINT preferred = LOWORD(SendMessage(dialog, DM_GETDEFID))) id = preferred;
        for (const HWND control : controlsInTabOrder(dialog))
            if (!button && GetDlgCtrlID(control) == static_cast<int>(id)) button = control;
    }
    if (button) {
        if (isUsable(button)) SendMessage(button, BM_CLICK);
    } else {
        SendMessage(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED));
    }
    return 1;
}

int cancel(HWND dialog) {
    const HWND button = GetDlgItem(dialog, IDCANCEL);
    if (!button || IsWindowEnabled(button))
        SendMessage(dialog, WM_COMMAND, MAKEWPARAM(static_cast<UINT>(IDCANCEL), BN_CLICKED),
                    reinterpret_cast<LPARAM>(button));
    return 1;
}

wchar_t lower(wchar_t c) {
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
}

/// Controls whose text carries the letter; a static or a group box stands for the next tab stop. Two of the
/// same letter take turns, and are not pressed.
int useMnemonic(HWND dialog, HWND focus, wchar_t letter) {
    std::vector<HWND> targets;
    const auto controls = controlsInTabOrder(dialog);
    for (std::size_t i = 0; i < controls.size(); ++i) {
        if (!isUsable(controls[i]) || mnemonicOf(mnemonicText(controls[i])) != letter) continue;
        std::size_t target = i;
        if (dialogCode(controls[i]) & DLGC_STATIC)
            while (target < controls.size() && !isTabStop(controls[target]))
                ++target;
        if (target < controls.size()) targets.push_back(controls[target]);
    }
    if (targets.empty()) return 0;
    const auto here = std::find(targets.begin(), targets.end(), focus);
    const HWND target = here == targets.end() || here + 1 == targets.end() ? targets.front() : *(here + 1);
    focusTo(target);
    if (targets.size() == 1 && (dialogCode(target) & DLGC_BUTTON)) SendMessage(target, BM_CLICK);
    return 1;
}

int useKey(HWND dialog, HWND focus, WPARAM key, UINT code) {
    switch (key) {
    case VK_TAB:
        if (GetKeyState(VK_CONTROL) < 0 || (code & DLGC_WANTTAB)) return 0;
        focusTo(nextTabItem(dialog, focus, GetKeyState(VK_SHIFT) < 0));
        return 1;
    case VK_LEFT:
    case VK_UP:
    case VK_RIGHT:
    case VK_DOWN:
        if (code & DLGC_WANTARROWS) return 0;
        moveInGroup(focus, key == VK_LEFT || key == VK_UP);
        return 1;
    case VK_RETURN:
        return pressDefault(dialog, focus);
    case VK_ESCAPE:
        return cancel(dialog);
    default:
        return 0;
    }
}

} // namespace

std::vector<HWND> controlsInTabOrder(HWND dialog) {
    std::vector<HWND> controls;
    collect(dialog, controls);
    return controls;
}

HWND nextTabItem(HWND dialog, HWND from, bool previous) {
    auto controls = controlsInTabOrder(dialog);
    if (previous) std::reverse(controls.begin(), controls.end());
    const auto here = std::find(controls.begin(), controls.end(), from);
    if (here != controls.end()) std::rotate(controls.begin(), here + 1, controls.end());
    const auto next = std::find_if(controls.begin(), controls.end(), isTabStop);
    return next == controls.end() ? nullptr : *next;
}

std::vector<HWND> groupOf(HWND control) {
    const auto* record = findWindow(control);
    const auto* parent = record ? findWindow(record->parent) : nullptr;
    if (!parent) return {};
    const auto& all = parent->children;
    const auto starts = [](HWND window) { return (findWindow(window)->style & WS_GROUP) != 0; };
    auto first = std::find(all.begin(), all.end(), control);
    auto last = first + 1;
    while (first != all.begin() && !starts(*first))
        --first;
    while (last != all.end() && !starts(*last))
        ++last;
    return {first, last};
}

HWND nextGroupItem(HWND from, bool previous) {
    auto group = groupOf(from);
    if (previous) std::reverse(group.begin(), group.end());
    const auto here = std::find(group.begin(), group.end(), from);
    if (here == group.end()) return nullptr;
    std::rotate(group.begin(), here + 1, group.end());
    // Around to `from` itself, which comes last now.
    for (const HWND member : group)
        if (member == from || (isUsable(member) && !(dialogCode(member) & DLGC_STATIC))) return member;
    return from;
}

wchar_t mnemonicOf(const std::wstring& text) {
    for (std::size_t i = 0; i + 1 < text.size(); ++i)
        if (text[i] == L'&') {
            if (text[i + 1] != L'&') return lower(text[i + 1]);
            ++i;
        }
    return 0;
}

std::wstring withoutMnemonic(const std::wstring& text) {
    std::wstring shown;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == L'&' && ++i == text.size()) break;
        shown += text[i];
    }
    return shown;
}

HWND navigatingDialog(HWND window) {
    HWND found = nullptr;
    for (const auto* record = findWindow(window); record; record = findWindow(record->parent))
        if (record->windowClass->kind == ControlKind::kDialog) found = record->handle;
    return found;
}

int IsDialogMessage(HWND dialog, const MSG& message) {
    if (!findWindow(dialog) || (message.hwnd != dialog && !IsChild(dialog, message.hwnd))) return 0;
    const UINT code = dialogCode(message.hwnd, &message);
    if (message.message == WM_SYSCHAR)
        return useMnemonic(dialog, message.hwnd, lower(static_cast<wchar_t>(message.wParam)));
    if (code & DLGC_WANTALLKEYS) return 0;
    if (message.message == WM_KEYDOWN) return useKey(dialog, message.hwnd, message.wParam, code);
    // A letter that the focused control does not take is a mnemonic without Alt.
    if (message.message == WM_CHAR && !(code & DLGC_WANTCHARS) && message.wParam != VK_SPACE)
        return useMnemonic(dialog, message.hwnd, lower(static_cast<wchar_t>(message.wParam)));
    return 0;
}

} // namespace framework
