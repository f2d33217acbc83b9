#include "framework/windows/controls/Edit.h"

#include "framework/windows/WindowClasses.h"
#include "framework/windows/WindowRecord.h"
#include "framework/windows/controls/SpinButtonCtrl.h"
#include "framework/windows/desktop/DesktopPort.h"

#include <algorithm>

namespace framework {
namespace {

void notifyChange(HWND window) {
    if (notifyParent(window, EN_UPDATE)) notifyParent(window, EN_CHANGE);
}

bool isWritable(const WindowRecord& record) {
    return record.windowClass->kind != ControlKind::kEdit || !(record.style & ES_READONLY);
}

bool accepts(const WindowRecord& record, wchar_t c) {
    const bool edit = record.windowClass->kind == ControlKind::kEdit;
    if (c == L'\n') return edit && (record.style & ES_MULTILINE);
    if (c < L' ') return false;
    return !edit || !(record.style & ES_NUMBER) || (c >= L'0' && c <= L'9');
}

void moveCaret(WindowRecord& record, std::size_t to) {
    record.selectionEnd = to;
    if (GetKeyState(static_cast<int>(VK_SHIFT)) >= 0) record.selectionBegin = to;
    windowChanged(record.handle, change::kText);
}

LRESULT dialogCode(const WindowRecord& record, LPARAM message) {
    UINT code = DLGC_WANTCHARS | DLGC_HASSETSEL | DLGC_WANTARROWS;
    const auto* key = reinterpret_cast<const MSG*>(message);
    const UINT lines = ES_MULTILINE | ES_WANTRETURN;
    if (key && key->message == WM_KEYDOWN && key->wParam == VK_RETURN && (record.style & lines) == lines)
        code |= DLGC_WANTALLKEYS;
    return code;
}

} // namespace

void selectText(HWND window, LPARAM start, LPARAM end) {
    auto* record = findWindow(window);
    if (!record) return;
    const auto size = static_cast<LPARAM>(record->text.size());
    if (start < 0) start = end = static_cast<LPARAM>(record->selectionEnd);
    if (end < 0) end = size;
    record->selectionBegin = static_cast<std::size_t>(std::min(start, size));
    record->selectionEnd = static_cast<std::size_t>(std::min(end, size));
    windowChanged(window, change::kText);
}

void replaceSelection(HWND window, const std::wstring& text) {
    auto* record = findWindow(window);
    if (!record) return;
    const auto [first, last] = std::minmax(record->selectionBegin, record->selectionEnd);
    const std::size_t rest = record->text.size() - (last - first);
    const std::size_t room = record->textLimit > rest ? record->textLimit - rest : 0;
    const std::wstring added = text.substr(0, room);
    record->text.replace(first, last - first, added);
    record->selectionBegin = record->selectionEnd = first + added.size();
    windowChanged(window, change::kText);
}

bool editByCharacter(HWND window, wchar_t character) {
    auto* record = findWindow(window);
    if (!record || !isWritable(*record)) return false;
    const std::size_t before = record->text.size();
    const bool selected = record->selectionBegin != record->selectionEnd;
    if (character == L'\b') {
        if (!selected && record->selectionEnd == 0) return false;
        if (!selected) record->selectionBegin = record->selectionEnd - 1;
        replaceSelection(window, {});
        return true;
    }
    if (character == L'\r') character = L'\n';
    if (!accepts(*record, character)) return false;
    replaceSelection(window, character == L'\n' ? L"\r\n" : std::wstring(1, character));
    return selected || record->text.size() != before;
}

bool editByKey(HWND window, WPARAM key) {
    auto* record = findWindow(window);
    if (!record) return false;
    const std::size_t caret = record->selectionEnd;
    const std::size_t size = record->text.size();
    switch (key) {
    case VK_LEFT:
        moveCaret(*record, caret ? caret - 1 : 0);
        return false;
    case VK_RIGHT:
        moveCaret(*record, std::min(caret + 1, size));
        return false;
    case VK_HOME:
        moveCaret(*record, 0);
        return false;
    case VK_END:
        moveCaret(*record, size);
        return false;
    case VK_DELETE:
        if (!isWritable(*record) || size == 0) return false;
        if (record->selectionBegin == caret) {
            if (caret == size) return false;
            record->selectionEnd = caret + 1;
        }
        replaceSelection(window, {});
        return true;
    default:
        return false;
    }
}

LRESULT editProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* record = findWindow(window);
    if (!record) return 0;
    switch (message) {
    case WM_SETTEXT:
        record->selectionBegin = record->selectionEnd = 0;
        defaultProcedure(window, message, wParam, lParam);
        notifyChange(window);
        return 1;
    case WM_CHAR:
        if (editByCharacter(window, static_cast<wchar_t>(wParam))) notifyChange(window);
        return 0;
    case WM_KEYDOWN:
        if (wParam == VK_UP || wParam == VK_DOWN)
            spinBy(spinOfBuddy(window), wParam == VK_UP ? 1 : -1);
        else if (editByKey(window, wParam))
            notifyChange(window);
        return 0;
    case EM_SETSEL:
        selectText(window, static_cast<LPARAM>(wParam), lParam);
        return 0;
    case EM_GETSEL:
        return MAKELPARAM(static_cast<int>(std::min(record->selectionBegin, record->selectionEnd)),
                          static_cast<int>(std::max(record->selectionBegin, record->selectionEnd)));
    case EM_REPLACESEL:
        replaceSelection(window, reinterpret_cast<const wchar_t*>(lParam));
        notifyChange(window);
        return 0;
    case WM_SETFOCUS:
        notifyParent(window, EN_SETFOCUS);
        return 0;
    case WM_KILLFOCUS:
        notifyParent(window, EN_KILLFOCUS);
        return 0;
    case WM_LBUTTONDOWN:
        SetFocus(window);
        return 0;
    case WM_GETDLGCODE:
        return dialogCode(*record, lParam);
    default:
        return defaultProcedure(window, message, wParam, lParam);
    }
}

} // namespace framework

void CEdit::SetSel(int start, int end) {
    SendMessage(EM_SETSEL, static_cast<WPARAM>(start), end);
}

void CEdit::GetSel(int& start, int& end) const {
    const auto* record = Record();
    start = record ? static_cast<int>(std::min(record->selectionBegin, record->selectionEnd)) : 0;
    end = record ? static_cast<int>(std::max(record->selectionBegin, record->selectionEnd)) : 0;
}

void CEdit::ReplaceSel(const std::wstring& text) {
    SendMessage(EM_REPLACESEL, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

void CEdit::SetLimitText(UINT characters) {
    if (auto* record = Record()) record->textLimit = characters ? characters : 0x7FFFFFFE;
}

UINT CEdit::GetLimitText() const {
    const auto* record = Record();
    return record ? static_cast<UINT>(record->textLimit) : 0;
}

int CEdit::SetReadOnly(int readOnly) {
    ModifyStyle(ES_READONLY, readOnly ? ES_READONLY : 0);
    return Record() != nullptr;
}
