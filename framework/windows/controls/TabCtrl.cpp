#include "framework/windows/controls/TabCtrl.h"

#include "framework/windows/WindowClasses.h"
#include "framework/windows/controls/ItemList.h"
#include "framework/windows/desktop/DesktopPort.h"

namespace {

// Around the display area: the row of tabs above, a frame on every side.
constexpr int kTabHeight = 21;
constexpr int kFrame = 4;

} // namespace

namespace framework {

bool selectTab(HWND tabs, int index) {
    auto* record = findWindow(tabs);
    if (!itemAt(record, index)) return false;
    if (record->current == index) return true;
    NMHDR notice;
    if (notifyParent(tabs, TCN_SELCHANGING, notice)) return true;
    record = findWindow(tabs);
    if (!itemAt(record, index)) return true; // the handler took it away
    setCurrentItem(record, index);
    notifyParent(tabs, TCN_SELCHANGE, notice);
    return true;
}

LRESULT tabProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto* record = findWindow(window);
    if (!record) return 0;
    switch (message) {
    case WM_KEYDOWN: {
        const WPARAM key = wParam == VK_LEFT ? VK_UP : wParam == VK_RIGHT ? VK_DOWN : wParam;
        const int index = itemByKey(*record, record->current, key);
        if (index != record->current) selectTab(window, index);
        return 0;
    }
    case WM_LBUTTONDOWN:
        SetFocus(window);
        return 0;
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS;
    default:
        return defaultProcedure(window, message, wParam, lParam);
    }
}

} // namespace framework

int CTabCtrl::InsertItem(int index, const std::wstring& text) {
    auto* record = Record();
    if (!record || index < 0) return -1;
    const int count = GetItemCount();
    const int place = framework::insertItem(record, index > count ? count : index, text);
    if (count == 0) framework::setCurrentItem(record, 0);
    return place;
}

int CTabCtrl::DeleteItem(int index) {
    return framework::removeItem(Record(), index) >= 0;
}

int CTabCtrl::DeleteAllItems() {
    framework::removeAllItems(Record());
    return Record() != nullptr;
}

int CTabCtrl::GetItemCount() const {
    const auto* record = Record();
    return record ? static_cast<int>(record->items.size()) : 0;
}

std::wstring CTabCtrl::GetItemText(int index) const {
    const auto* item = framework::itemAt(Record(), index);
    return item ? item->texts[0] : std::wstring();
}

int CTabCtrl::SetItemText(int index, const std::wstring& text) {
    auto* item = framework::itemAt(Record(), index);
    if (!item) return 0;
    item->texts[0] = text;
    framework::windowChanged(m_hWnd, framework::change::kContent);
    return 1;
}

int CTabCtrl::GetCurSel() const {
    const auto* record = Record();
    return record ? record->current : -1;
}

int CTabCtrl::SetCurSel(int index) {
    const int before = GetCurSel();
    if (!framework::itemAt(Record(), index)) return -1;
    framework::setCurrentItem(Record(), index);
    return before;
}

void CTabCtrl::AdjustRect(int larger, CRect* rect) const {
    const int sign = larger ? -1 : 1;
    *rect = CRect(rect->left + sign * kFrame, rect->top + sign * (kTabHeight + kFrame),
                  rect->right - sign * kFrame, rect->bottom - sign * kFrame);
}
