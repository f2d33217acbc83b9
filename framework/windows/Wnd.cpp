#include "framework/windows/Wnd.h"

#include "framework/text/Numbers.h"
#include "framework/windows/ObjectAccess.h"
#include "framework/windows/WinThread.h"
#include "framework/windows/WindowClasses.h"
#include "framework/windows/WindowState.h"
#include "framework/windows/controls/ControlClasses.h"
#include "framework/windows/desktop/DesktopPort.h"
#include "framework/windows/dialogs/Navigation.h"

#include <algorithm>
#include <utility>

using framework::findWindow;
using framework::ObjectAccess;
using framework::windowState;

const framework::MessageMap* CWnd::GetThisMessageMap() {
    static const framework::MessageEntry entries[] = {framework::MessageEntry{}};
    static const framework::MessageMap map{nullptr, entries};
    return &map;
}

const framework::MessageMap* CWnd::GetMessageMap() const {
    return GetThisMessageMap();
}

CWnd::~CWnd() {
    auto* record = Record();
    if (!record || record->object != this) return;
    const HWND window = record->handle;
    const bool made = record->made;
    if (CWinThread* thread = AfxGetThread(); thread && thread->m_pMainWnd == this)
        thread->m_pMainWnd = nullptr;
    // What is left of this object must get no message any more.
    ObjectAccess::detach(*record);
    if (made) ::DestroyWindow(window);
}

framework::WindowRecord* CWnd::Record() const {
    return findWindow(m_hWnd);
}

CWnd* CWnd::FromHandlePermanent(HWND window) {
    const auto* record = findWindow(window);
    return record ? record->object : nullptr;
}

CWnd* CWnd::FromHandle(HWND window) {
    const auto* record = findWindow(window);
    if (!record) return nullptr;
    if (record->object) return record->object;
    auto& lent = windowState().temporaries[window];
    if (!lent) {
        lent = record->windowClass->makeObject();
        ObjectAccess::lend(*lent, window);
    }
    return lent.get();
}

int CWnd::Attach(HWND window) {
    auto* record = findWindow(window);
    if (m_hWnd || !record || record->object || record->destroying) return 0;
    ObjectAccess::attach(*this, *record, false);
    return 1;
}

HWND CWnd::Detach() {
    auto* record = Record();
    if (!record || record->object != this) return nullptr;
    ObjectAccess::detach(*record);
    return record->handle;
}

int CWnd::SubclassWindow(HWND window) {
    auto* record = findWindow(window);
    if (m_hWnd || !record || record->object || record->destroying) return 0;
    ObjectAccess::attach(*this, *record, true);
    return 1;
}

int CWnd::SubclassDlgItem(UINT id, CWnd* parent) {
    return parent && SubclassWindow(::GetDlgItem(parent->m_hWnd, static_cast<int>(id)));
}

int CWnd::Create(const wchar_t* className, const wchar_t* text, UINT style, const CRect& rect, CWnd* parent,
                 UINT id) {
    return CreateEx(0, className, text, style | WS_CHILD, rect, parent, id);
}

int CWnd::CreateEx(UINT exStyle, const wchar_t* className, const wchar_t* text, UINT style, const CRect& rect,
                   CWnd* parent, UINT id) {
    framework::NewWindow wanted{
        className ? className : framework::kPlainClass, text ? text : L"", style, exStyle, rect, nullptr, id};
    if (parent) wanted.parent = parent->m_hWnd;
    return framework::createWindow(wanted, this) != nullptr;
}

int CWnd::DestroyWindow() {
    return ::DestroyWindow(m_hWnd);
}

void CWnd::SetWindowText(const std::wstring& text) {
    SendMessage(WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

void CWnd::GetWindowText(std::wstring& text) const {
    text = framework::windowText(m_hWnd);
}

int CWnd::GetWindowTextLength() const {
    return static_cast<int>(framework::windowText(m_hWnd).size());
}

UINT CWnd::GetStyle() const {
    const auto* record = Record();
    return record ? record->style : 0;
}

UINT CWnd::GetExStyle() const {
    const auto* record = Record();
    return record ? record->exStyle : 0;
}

int CWnd::ModifyStyle(UINT remove, UINT add, UINT) {
    auto* record = Record();
    if (!record) return 0;
    const UINT style = (record->style & ~remove) | add;
    if (style == record->style) return 0;
    record->style = style;
    framework::windowChanged(m_hWnd, framework::change::kState);
    return 1;
}

int CWnd::SetDlgCtrlID(int id) {
    auto* record = Record();
    return record ? static_cast<int>(std::exchange(record->id, static_cast<UINT>(id) & 0xFFFF)) : 0;
}

CWnd* CWnd::SetParent(CWnd* parent) {
    return parent ? FromHandle(::SetParent(m_hWnd, parent->m_hWnd)) : nullptr;
}

CWnd* CWnd::GetOwner() const {
    return findWindow(m_hWndOwner) ? FromHandle(m_hWndOwner) : GetParent();
}

CWnd* CWnd::GetNextDlgTabItem(CWnd* from, int previous) const {
    return FromHandle(framework::nextTabItem(m_hWnd, from ? from->m_hWnd : nullptr, previous != 0));
}

CWnd* CWnd::GetNextDlgGroupItem(CWnd* from, int previous) const {
    return from ? FromHandle(framework::nextGroupItem(from->m_hWnd, previous != 0)) : nullptr;
}

void CWnd::MoveWindow(const CRect& rect, int) {
    ::MoveWindow(m_hWnd, rect);
}

void CWnd::MoveWindow(int x, int y, int width, int height, int) {
    ::MoveWindow(m_hWnd, CRect(CPoint(x, y), CSize(width, height)));
}

int CWnd::SetWindowPos(const CWnd*, int x, int y, int width, int height, UINT flags) {
    const auto* record = Record();
    if (!record) return 0;
    const HWND window = m_hWnd;
    const CPoint corner = flags & SWP_NOMOVE ? record->rect.TopLeft() : CPoint(x, y);
    const bool raise = !record->parent && !(flags & (SWP_NOZORDER | SWP_NOACTIVATE));
    const CSize size = flags & SWP_NOSIZE ? record->rect.Size() : CSize(width, height);
    ::MoveWindow(window, CRect(corner, size));
    if (flags & SWP_HIDEWINDOW) ::ShowWindow(window, SW_HIDE);
    if (flags & SWP_SHOWWINDOW) ::ShowWindow(window, flags & SWP_NOACTIVATE ? SW_SHOWNA : SW_SHOW);
    if (raise && ::IsWindowVisible(window)) ::BringWindowToTop(window);
    return 1;
}

void CWnd::ClientToScreen(CRect* rect) const {
    CPoint corner = rect->TopLeft();
    ClientToScreen(&corner);
    *rect = CRect(corner, rect->Size());
}

void CWnd::ScreenToClient(CRect* rect) const {
    CPoint corner = rect->TopLeft();
    ScreenToClient(&corner);
    *rect = CRect(corner, rect->Size());
}

void CWnd::CenterWindow(CWnd* over) {
    const auto* record = Record();
    if (!record) return;
    const CRect area = framework::desktop().WorkArea();
    const HWND around = over ? over->m_hWnd : ::GetParent(m_hWnd);
    CRect frame = area;
    if (::IsWindowVisible(around) || record->parent) ::GetWindowRect(around, &frame);
    const CSize size = record->rect.Size();
    CPoint corner(frame.left + (frame.Width() - size.cx) / 2, frame.top + (frame.Height() - size.cy) / 2);
    if (record->parent) {
        ::ScreenToClient(record->parent, &corner);
    } else {
        corner.x = std::max(area.left, std::min(corner.x, area.right - size.cx));
        corner.y = std::max(area.top, std::min(corner.y, area.bottom - size.cy));
    }
    MoveWindow(CRect(corner, size));
}

int CWnd::RedrawWindow(const CRect* rect, UINT flags) {
    const HWND window = m_hWnd;
    if (!findWindow(window)) return 0;
    if (flags & RDW_INVALIDATE) ::InvalidateRect(window, rect, (flags & RDW_ERASE) != 0);
    if (flags & RDW_UPDATENOW) ::UpdateWindow(window);
    if (const auto* record = findWindow(window); record && (flags & RDW_ALLCHILDREN))
        for (const HWND child : std::vector<HWND>(record->children))
            if (CWnd* object = FromHandle(child)) object->RedrawWindow(nullptr, flags);
    return 1;
}

void CWnd::SendMessageToDescendants(UINT message, WPARAM wParam, LPARAM lParam) {
    const auto* record = Record();
    if (!record) return;
    std::vector<HWND> waiting(record->children.rbegin(), record->children.rend());
    while (!waiting.empty()) {
        const HWND next = waiting.back();
        waiting.pop_back();
        ::SendMessage(next, message, wParam, lParam);
        if (const auto* sent = findWindow(next))
            waiting.insert(waiting.end(), sent->children.rbegin(), sent->children.rend());
    }
}

int CWnd::MessageBox(const std::wstring& text, const std::wstring& caption, UINT style) {
    return framework::desktop().ShowMessageBox(m_hWnd, text, caption, style);
}

int CWnd::PreTranslateMessage(MSG*) {
    return 0;
}

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    LRESULT result = 0;
    if (!OnWndMsg(message, wParam, lParam, &result)) result = DefWindowProc(message, wParam, lParam);
    return result; // this object may be gone
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    const auto* record = Record();
    return record ? record->windowClass->procedure(m_hWnd, message, wParam, lParam) : 0;
}

LRESULT CWnd::Default() {
    const MSG& handled = GetCurrentMessage();
    return DefWindowProc(handled.message, handled.wParam, handled.lParam);
}

const MSG& CWnd::GetCurrentMessage() {
    return windowState().current;
}

int CWnd::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
    if (message == WM_COMMAND) {
        if (!OnCommand(wParam, lParam)) return 0;
        *result = 1;
        return 1;
    }
    if (message == WM_NOTIFY) return OnNotify(wParam, lParam, result);
    const auto* entry = framework::findMessageEntry(GetMessageMap(), message);
    if (!entry) return 0;
    *result = entry->invoke(*this, {.wParam = wParam, .lParam = lParam});
    return 1;
}

/// Non-zero when the control's object settled it, or this window is gone.
int CWnd::ReflectNotification(HWND control, UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
    const auto* record = findWindow(control);
    if (!record || !record->object || !record->routed) return 0;
    const HWND own = m_hWnd;
    return record->object->OnChildNotify(message, wParam, lParam, result) || !findWindow(own);
}

int CWnd::OnCommand(WPARAM wParam, LPARAM lParam) {
    if (lParam && windowState().lockedOut == m_hWnd) return 1;
    if (ReflectNotification(reinterpret_cast<HWND>(lParam), WM_COMMAND, wParam, lParam, nullptr)) return 1;
    const auto command = static_cast<LPARAM>(wParam);
    return OnCmdMsg(LOWORD(command), HIWORD(command));
}

int CWnd::OnCmdMsg(UINT id, UINT code) {
    const auto* entry = framework::findControlEntry(GetMessageMap(), WM_COMMAND, code, id);
    if (!entry) return 0;
    entry->invoke(*this, {.id = id});
    return 1;
}

int CWnd::OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result) {
    if (windowState().lockedOut == m_hWnd) return 1;
    auto* header = reinterpret_cast<NMHDR*>(lParam);
    if (ReflectNotification(header->hwndFrom, WM_NOTIFY, wParam, lParam, result)) return 1;
    const auto id = static_cast<UINT>(header->idFrom);
    const auto* entry = framework::findControlEntry(GetMessageMap(), WM_NOTIFY, header->code, id);
    if (!entry) return 0;
    entry->invoke(*this, {.id = id, .header = header, .result = result});
    return 1;
}

void CWnd::SetDlgItemText(int id, const std::wstring& text) {
    ::SendMessage(::GetDlgItem(m_hWnd, id), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

int CWnd::GetDlgItemText(int id, std::wstring& text) const {
    text = framework::windowText(::GetDlgItem(m_hWnd, id));
    return static_cast<int>(text.size());
}

void CWnd::SetDlgItemInt(int id, UINT value, int isSigned) {
    SetDlgItemText(id, isSigned ? std::to_wstring(static_cast<int>(value)) : std::to_wstring(value));
}

UINT CWnd::GetDlgItemInt(int id, int* translated, int isSigned) const {
    std::wstring text;
    GetDlgItemText(id, text);
    const int value = framework::wtoi(text);
    const auto first = text.find_first_not_of(L" \t");
    const bool number = first != std::wstring::npos && text.find_first_of(L"0123456789", first) <= first + 1;
    const bool valid = number && (isSigned || value >= 0);
    if (translated) *translated = valid;
    return valid ? static_cast<UINT>(value) : 0;
}

void CWnd::CheckDlgButton(int id, UINT check) {
    ::SendMessage(::GetDlgItem(m_hWnd, id), BM_SETCHECK, check);
}

UINT CWnd::IsDlgButtonChecked(int id) const {
    return static_cast<UINT>(::SendMessage(::GetDlgItem(m_hWnd, id), BM_GETCHECK));
}

void CWnd::CheckRadioButton(int first, int last, int checked) {
    for (int id = first; id <= last; ++id)
        CheckDlgButton(id, static_cast<UINT>(id == checked));
}

int CWnd::GetCheckedRadioButton(int first, int last) const {
    for (int id = first; id <= last; ++id)
        if (IsDlgButtonChecked(id)) return id;
    return 0;
}
