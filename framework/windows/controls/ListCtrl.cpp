#include "framework/windows/controls/ListCtrl.h"

#include "framework/windows/WindowClasses.h"
#include "framework/windows/controls/ItemList.h"
#include "framework/windows/controls/ListBox.h"
#include "framework/windows/desktop/DesktopPort.h"

#include <algorithm>
#include <utility>

using framework::itemAt;

namespace framework {
namespace {

void notifyRow(HWND list, UINT code, int row, UINT before = 0, UINT after = 0) {
    NMLISTVIEW notice;
    notice.iItem = row;
    notice.uOldState = before;
    notice.uNewState = after;
    notice.uChanged = before != after ? LVIF_STATE : 0;
    notifyParent(list, code, notice.hdr);
}

void useKey(HWND window, WPARAM key) {
    auto* record = findWindow(window);
    const int row = itemByKey(*record, record->current, key);
    if (row != record->current) selectRows(window, {row});
}

} // namespace

bool selectRows(HWND list, const std::vector<int>& rows) {
    auto* record = findWindow(list);
    if (!record || (!isMultiple(*record) && rows.size() > 1)) return false;
    for (const int row : rows)
        if (!itemAt(record, row)) return false;
    // All rows change before the first notice, so that handlers see the selection as it is.
    std::vector<int> changed;
    for (int row = 0; row < static_cast<int>(record->items.size()); ++row) {
        const bool select = std::find(rows.begin(), rows.end(), row) != rows.end();
        if (std::exchange(itemAt(record, row)->selected, select) != select) changed.push_back(row);
    }
    if (!rows.empty()) record->current = rows.back();
    windowChanged(list, change::kContent);
    for (const int row : changed) {
        const bool selected = std::find(rows.begin(), rows.end(), row) != rows.end();
        notifyRow(list, LVN_ITEMCHANGED, row, selected ? 0 : LVIS_SELECTED, selected ? LVIS_SELECTED : 0);
        if (!findWindow(list)) break;
    }
    return true;
}

bool checkRow(HWND list, int row, int check) {
    auto* record = findWindow(list);
    auto* item = itemAt(record, row);
    if (!item || !record->checkItems) return false;
    if (std::exchange(item->check, check) == check) return true;
    windowChanged(list, change::kContent);
    constexpr UINT kImageShift = 12; // unchecked is state image 1, checked 2
    notifyRow(list, LVN_ITEMCHANGED, row, (check ? 1U : 2U) << kImageShift, (check ? 2U : 1U) << kImageShift);
    return true;
}

bool doubleClickRow(HWND list, int row) {
    if (!selectRows(list, {row})) return false;
    notifyRow(list, NM_DBLCLK, row);
    return true;
}

bool clickColumn(HWND list, int column) {
    const auto* record = findWindow(list);
    if (!record || column < 0 || column >= static_cast<int>(record->columns.size())) return false;
    NMLISTVIEW notice;
    notice.iSubItem = column;
    notifyParent(list, LVN_COLUMNCLICK, notice.hdr);
    return true;
}

LRESULT listControlProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto* record = findWindow(window);
    if (!record) return 0;
    switch (message) {
    case WM_KEYDOWN:
        useKey(window, wParam);
        return 0;
    case WM_CHAR:
        if (const auto* item = itemAt(findWindow(window), record->current); item && wParam == VK_SPACE)
            checkRow(window, record->current, !item->check);
        return 0;
    case WM_LBUTTONDOWN:
        SetFocus(window);
        return 0;
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS | DLGC_WANTCHARS;
    default:
        return defaultProcedure(window, message, wParam, lParam);
    }
}

} // namespace framework

int CListCtrl::InsertColumn(int column, const std::wstring& heading, int format, int width) {
    auto* record = Record();
    if (!record || column < 0) return -1;
    column = std::min(column, GetColumnCount());
    constexpr int kDefaultWidth = 50;
    record->columns.insert(record->columns.begin() + column,
                           {heading, width < 0 ? kDefaultWidth : width, format});
    // Texts of rows that are there move with their columns.
    for (auto& item : record->items)
        if (record->columns.size() > 1 && static_cast<std::size_t>(column) <= item.texts.size())
            item.texts.insert(item.texts.begin() + column, std::wstring());
    framework::windowChanged(m_hWnd, framework::change::kContent);
    return column;
}

int CListCtrl::DeleteColumn(int column) {
    auto* record = Record();
    if (!record || column < 0 || column >= GetColumnCount()) return 0;
    record->columns.erase(record->columns.begin() + column);
    for (auto& item : record->items)
        if (item.texts.size() > 1 && static_cast<std::size_t>(column) < item.texts.size())
            item.texts.erase(item.texts.begin() + column);
    framework::windowChanged(m_hWnd, framework::change::kContent);
    return 1;
}

int CListCtrl::GetColumnCount() const {
    const auto* record = Record();
    return record ? static_cast<int>(record->columns.size()) : 0;
}

int CListCtrl::GetColumnWidth(int column) const {
    const auto* record = Record();
    if (!record || column < 0 || column >= GetColumnCount()) return 0;
    return record->columns[static_cast<std::size_t>(column)].width;
}

int CListCtrl::SetColumnWidth(int column, int width) {
    auto* record = Record();
    if (!record || column < 0 || column >= GetColumnCount()) return 0;
    record->columns[static_cast<std::size_t>(column)].width = width;
    framework::windowChanged(m_hWnd, framework::change::kContent);
    return 1;
}

int CListCtrl::InsertItem(int row, const std::wstring& text) {
    return row < 0 ? -1 : framework::insertItem(Record(), std::min(row, GetItemCount()), text);
}

int CListCtrl::SetItemText(int row, int column, const std::wstring& text) {
    auto* item = itemAt(Record(), row);
    if (!item || column < 0 || column >= std::max(1, GetColumnCount())) return 0;
    const auto place = static_cast<std::size_t>(column);
    if (item->texts.size() <= place) item->texts.resize(place + 1);
    item->texts[place] = text;
    framework::windowChanged(m_hWnd, framework::change::kContent);
    return 1;
}

std::wstring CListCtrl::GetItemText(int row, int column) const {
    const auto* item = itemAt(Record(), row);
    const auto place = static_cast<std::size_t>(column);
    return item && column >= 0 && place < item->texts.size() ? item->texts[place] : std::wstring();
}

int CListCtrl::DeleteItem(int row) {
    return framework::removeItem(Record(), row) >= 0;
}

int CListCtrl::DeleteAllItems() {
    framework::removeAllItems(Record());
    return Record() != nullptr;
}

int CListCtrl::GetItemCount() const {
    const auto* record = Record();
    return record ? static_cast<int>(record->items.size()) : 0;
}

int CListCtrl::SetItemData(int row, DWORD_PTR data) {
    auto* item = itemAt(Record(), row);
    if (item) item->data = data;
    return item != nullptr;
}

DWORD_PTR CListCtrl::GetItemData(int row) const {
    const auto* item = itemAt(Record(), row);
    return item ? item->data : 0;
}

int CListCtrl::SetItemState(int row, UINT state, UINT mask) {
    auto* record = Record();
    if (!record || row < -1 || row >= GetItemCount()) return 0;
    if (mask & LVIS_SELECTED) {
        // In a list of one, selecting a row clears the others.
        const bool alone = !framework::isMultiple(*record) && row >= 0 && (state & LVIS_SELECTED);
        for (int i = 0; i < GetItemCount(); ++i)
            if (row == -1 || i == row)
                itemAt(record, i)->selected = (state & LVIS_SELECTED) != 0;
            else if (alone)
                itemAt(record, i)->selected = false;
    }
    if ((mask & LVIS_FOCUSED) && row >= 0) record->current = state & LVIS_FOCUSED ? row : -1;
    framework::windowChanged(m_hWnd, framework::change::kContent);
    return 1;
}

UINT CListCtrl::GetItemState(int row, UINT mask) const {
    const auto* item = itemAt(Record(), row);
    if (!item) return 0;
    return ((item->selected ? LVIS_SELECTED : 0) | (Record()->current == row ? LVIS_FOCUSED : 0)) & mask;
}

UINT CListCtrl::GetSelectedCount() const {
    const auto* record = Record();
    if (!record) return 0;
    return static_cast<UINT>(std::count_if(record->items.begin(), record->items.end(),
                                           [](const auto& item) { return item.selected; }));
}

int CListCtrl::GetNextItem(int after, UINT flags) const {
    for (int row = std::max(after, -1) + 1; row < GetItemCount(); ++row) {
        const UINT state = GetItemState(row, LVIS_SELECTED | LVIS_FOCUSED);
        const bool selected = !(flags & LVNI_SELECTED) || (state & LVIS_SELECTED);
        const bool focused = !(flags & LVNI_FOCUSED) || (state & LVIS_FOCUSED);
        if (selected && focused) return row;
    }
    return -1;
}

POSITION CListCtrl::GetFirstSelectedItemPosition() const {
    return GetNextItem(-1, LVNI_SELECTED) + 1;
}

int CListCtrl::GetNextSelectedItem(POSITION& position) const {
    const int row = static_cast<int>(position) - 1;
    position = row < 0 ? 0 : GetNextItem(row, LVNI_SELECTED) + 1;
    return row;
}

int CListCtrl::EnsureVisible(int row, int) {
    return itemAt(Record(), row) != nullptr;
}

UINT CListCtrl::SetExtendedStyle(UINT style) {
    auto* record = Record();
    if (!record) return 0;
    record->checkItems = (style & LVS_EX_CHECKBOXES) != 0;
    framework::windowChanged(m_hWnd, framework::change::kState);
    return std::exchange(record->extendedStyle, style);
}

UINT CListCtrl::GetExtendedStyle() const {
    const auto* record = Record();
    return record ? record->extendedStyle : 0;
}

int CListCtrl::GetCheck(int row) const {
    const auto* item = itemAt(Record(), row);
    return item ? item->check : 0;
}

int CListCtrl::SetCheck(int row, int check) {
    auto* item = itemAt(Record(), row);
    if (!item) return 0;
    item->check = check != 0;
    framework::windowChanged(m_hWnd, framework::change::kContent);
    return 1;
}
