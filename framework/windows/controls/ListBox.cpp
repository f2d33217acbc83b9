#include "framework/windows/controls/ListBox.h"

#include "framework/windows/WindowClasses.h"
#include "framework/windows/controls/ItemList.h"
#include "framework/windows/desktop/DesktopPort.h"

#include <algorithm>
#include <utility>

using framework::itemAt;

namespace framework {
namespace {

void useKey(HWND window, WPARAM key) {
    const auto* record = findWindow(window);
    const int index = itemByKey(*record, record->current, key);
    if (index != record->current) selectItems(window, {index});
}

void useCharacter(HWND window, wchar_t c) {
    const auto* record = findWindow(window);
    const auto* item = itemAt(findWindow(window), record->current);
    if (c == L' ' && record->checkItems && item) {
        checkItem(window, record->current, !item->check);
        return;
    }
    const int index = findItem(record, record->current, std::wstring(1, c), false);
    if (index >= 0 && index != record->current) selectItems(window, {index});
}

} // namespace

bool isMultiple(const WindowRecord& record) {
    if (record.windowClass->kind == ControlKind::kListControl) return !(record.style & LVS_SINGLESEL);
    return (record.style & (LBS_MULTIPLESEL | LBS_EXTENDEDSEL)) != 0;
}

bool selectItems(HWND list, const std::vector<int>& indices) {
    auto* record = findWindow(list);
    if (!record || (!isMultiple(*record) && indices.size() > 1)) return false;
    for (const int index : indices)
        if (!itemAt(record, index)) return false;
    bool changed = false;
    for (int i = 0; i < static_cast<int>(record->items.size()); ++i) {
        const bool select = std::find(indices.begin(), indices.end(), i) != indices.end();
        changed = std::exchange(itemAt(record, i)->selected, select) != select || changed;
    }
    const int caret = !indices.empty() ? indices.back() : isMultiple(*record) ? record->current : -1;
    changed = std::exchange(record->current, caret) != caret || changed;
    if (!changed) return true;
    windowChanged(list, change::kContent);
    notifyParent(list, LBN_SELCHANGE);
    return true;
}

bool checkItem(HWND list, int index, int check) {
    auto* item = itemAt(findWindow(list), index);
    if (!item || !findWindow(list)->checkItems) return false;
    if (std::exchange(item->check, check) == check) return true;
    windowChanged(list, change::kContent);
    notifyParent(list, CLBN_CHKCHANGE);
    return true;
}

LRESULT listProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_KEYDOWN:
        useKey(window, wParam);
        return 0;
    case WM_CHAR:
        useCharacter(window, static_cast<wchar_t>(wParam));
        return 0;
    case WM_SETFOCUS:
        notifyParent(window, LBN_SETFOCUS);
        return 0;
    case WM_KILLFOCUS:
        notifyParent(window, LBN_KILLFOCUS);
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

int CListBox::AddString(const std::wstring& text) {
    return framework::addItem(Record(), text, (GetStyle() & LBS_SORT) != 0);
}

int CListBox::InsertString(int index, const std::wstring& text) {
    return framework::insertItem(Record(), index, text);
}

int CListBox::DeleteString(UINT index) {
    return framework::removeItem(Record(), static_cast<int>(index));
}

void CListBox::ResetContent() {
    framework::removeAllItems(Record());
}

int CListBox::GetCount() const {
    const auto* record = Record();
    return record ? static_cast<int>(record->items.size()) : 0;
}

int CListBox::GetCurSel() const {
    const auto* record = Record();
    return record ? record->current : LB_ERR;
}

int CListBox::SetCurSel(int index) {
    auto* record = Record();
    if (!record || framework::isMultiple(*record)) return LB_ERR;
    for (auto& item : record->items)
        item.selected = false;
    if (auto* item = itemAt(record, index)) item->selected = true;
    return framework::setCurrentItem(record, index);
}

int CListBox::GetSel(int index) const {
    const auto* item = itemAt(Record(), index);
    return item ? item->selected : LB_ERR;
}

int CListBox::SetSel(int index, int select) {
    auto* record = Record();
    if (!record || !framework::isMultiple(*record) || (index != -1 && !itemAt(record, index))) return LB_ERR;
    for (int i = 0; i < GetCount(); ++i)
        if (index == -1 || i == index) itemAt(record, i)->selected = select != 0;
    framework::windowChanged(m_hWnd, framework::change::kContent);
    return 0;
}

int CListBox::GetSelCount() const {
    const auto* record = Record();
    if (!record || !framework::isMultiple(*record)) return LB_ERR;
    return static_cast<int>(std::count_if(record->items.begin(), record->items.end(),
                                          [](const auto& item) { return item.selected; }));
}

int CListBox::GetSelItems(int capacity, int* indices) const {
    const auto* record = Record();
    if (!record || !framework::isMultiple(*record)) return LB_ERR;
    int written = 0;
    for (int i = 0; i < GetCount() && written < capacity; ++i)
        if (GetSel(i)) indices[written++] = i;
    return written;
}

DWORD_PTR CListBox::GetItemData(int index) const {
    const auto* item = itemAt(Record(), index);
    return item ? item->data : static_cast<DWORD_PTR>(LB_ERR);
}

int CListBox::SetItemData(int index, DWORD_PTR data) {
    auto* item = itemAt(Record(), index);
    if (!item) return LB_ERR;
    item->data = data;
    return 0;
}

int CListBox::GetText(int index, std::wstring& text) const {
    const auto* item = itemAt(Record(), index);
    if (!item) return LB_ERR;
    text = item->texts[0];
    return static_cast<int>(text.size());
}

int CListBox::FindString(int after, const std::wstring& text) const {
    return framework::findItem(Record(), after, text, false);
}

int CListBox::FindStringExact(int after, const std::wstring& text) const {
    return framework::findItem(Record(), after, text, true);
}

int CListBox::SelectString(int after, const std::wstring& text) {
    const int found = FindString(after, text);
    return found == LB_ERR ? LB_ERR : SetCurSel(found);
}

void CCheckListBox::PreSubclassWindow() {
    Record()->checkItems = true;
}

int CCheckListBox::GetCheck(int index) const {
    const auto* item = itemAt(Record(), index);
    return item ? item->check : BST_UNCHECKED;
}

void CCheckListBox::SetCheck(int index, int check) {
    auto* item = itemAt(Record(), index);
    if (!item) return;
    item->check = check;
    framework::windowChanged(m_hWnd, framework::change::kContent);
}
