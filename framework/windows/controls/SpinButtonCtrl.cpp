#include "framework/windows/controls/SpinButtonCtrl.h"

#include "framework/text/Numbers.h"
#include "framework/windows/WindowClasses.h"
#include "framework/windows/WindowRecord.h"
#include "framework/windows/desktop/DesktopPort.h"

#include <algorithm>
#include <utility>

namespace framework {
namespace {

int clampToRange(const WindowRecord& record, long long value) {
    const auto [low, high] = std::minmax(record.lower, record.upper);
    return static_cast<int>(std::clamp<long long>(value, low, high));
}

int positionOf(const WindowRecord& record) {
    if (!(record.style & UDS_SETBUDDYINT) || !findWindow(record.buddy)) return record.position;
    return clampToRange(record, wtoi(windowText(record.buddy)));
}

void setPosition(HWND spin, int position) {
    auto* record = findWindow(spin);
    record->position = position;
    windowChanged(spin, change::kContent);
    if (!(record->style & UDS_SETBUDDYINT)) return;
    const std::wstring text = std::to_wstring(position);
    if (windowText(record->buddy) != text)
        SendMessage(record->buddy, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

/// The control that comes before in tab order.
HWND neighbour(const WindowRecord& record) {
    const auto* parent = findWindow(record.parent);
    if (!parent) return nullptr;
    const auto here = std::find(parent->children.begin(), parent->children.end(), record.handle);
    return here == parent->children.begin() ? nullptr : *(here - 1);
}

} // namespace

bool spinBy(HWND spin, int steps) {
    const auto* record = findWindow(spin);
    if (!record) return false;
    NMUPDOWN notice;
    notice.iPos = positionOf(*record);
    notice.iDelta = record->upper >= record->lower ? steps : -steps;
    const bool refused = notifyParent(spin, UDN_DELTAPOS, notice.hdr) != 0;
    record = findWindow(spin);
    if (refused || !record) return true;

    const auto [low, high] = std::minmax(record->lower, record->upper);
    const long long wanted = static_cast<long long>(notice.iPos) + notice.iDelta;
    const bool wraps = (record->style & UDS_WRAP) != 0;
    const int position = !wraps || (wanted >= low && wanted <= high) ? clampToRange(*record, wanted)
                         : wanted < low                              ? high
                                                                     : low;
    const UINT message = record->style & UDS_HORZ ? WM_HSCROLL : WM_VSCROLL;
    const HWND parent = record->parent;
    setPosition(spin, position);
    SendMessage(parent, message, MAKEWPARAM(SB_THUMBPOSITION, static_cast<UINT>(position)),
                reinterpret_cast<LPARAM>(spin));
    if (findWindow(spin))
        SendMessage(parent, message, MAKEWPARAM(SB_ENDSCROLL, static_cast<UINT>(position)),
                    reinterpret_cast<LPARAM>(spin));
    return true;
}

HWND spinOfBuddy(HWND edit) {
    const auto* record = findWindow(edit);
    const auto* parent = record ? findWindow(record->parent) : nullptr;
    if (!parent) return nullptr;
    const auto found = std::find_if(parent->children.begin(), parent->children.end(), [&](HWND sibling) {
        const auto* spin = findWindow(sibling);
        return spin->windowClass->kind == ControlKind::kSpin && spin->buddy == edit &&
               (spin->style & UDS_ARROWKEYS) && !(spin->style & WS_DISABLED);
    });
    return found == parent->children.end() ? nullptr : *found;
}

LRESULT spinProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* record = findWindow(window);
    if (!record) return 0;
    if (message == WM_CREATE && (record->style & UDS_AUTOBUDDY)) record->buddy = neighbour(*record);
    if (message == WM_KEYDOWN && (wParam == VK_UP || wParam == VK_DOWN))
        spinBy(window, wParam == VK_UP ? 1 : -1);
    if (message == WM_GETDLGCODE) return DLGC_WANTARROWS;
    return defaultProcedure(window, message, wParam, lParam);
}

} // namespace framework

void CSpinButtonCtrl::SetRange32(int lower, int upper) {
    auto* record = Record();
    if (!record) return;
    record->lower = lower;
    record->upper = upper;
    framework::windowChanged(m_hWnd, framework::change::kContent);
}

void CSpinButtonCtrl::GetRange(int& lower, int& upper) const {
    const auto* record = Record();
    lower = record ? record->lower : 0;
    upper = record ? record->upper : 0;
}

int CSpinButtonCtrl::SetPos(int position) {
    auto* record = Record();
    if (!record) return 0;
    const int before = framework::positionOf(*record);
    framework::setPosition(m_hWnd, framework::clampToRange(*record, position));
    return before;
}

int CSpinButtonCtrl::GetPos() const {
    const auto* record = Record();
    return record ? framework::positionOf(*record) : 0;
}

CWnd* CSpinButtonCtrl::SetBuddy(CWnd* buddy) {
    auto* record = Record();
    return record ? FromHandle(std::exchange(record->buddy, buddy ? buddy->m_hWnd : nullptr)) : nullptr;
}

CWnd* CSpinButtonCtrl::GetBuddy() const {
    const auto* record = Record();
    return record ? FromHandle(record->buddy) : nullptr;
}
