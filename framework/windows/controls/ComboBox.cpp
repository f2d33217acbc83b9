#include "framework/windows/controls/ComboBox.h"

#include "framework/windows/WindowClasses.h"
#include "framework/windows/controls/Edit.h"
#include "framework/windows/controls/ItemList.h"
#include "framework/windows/desktop/DesktopPort.h"

#include <algorithm>
#include <utility>

using framework::itemAt;

namespace framework {
namespace {

/// The text of a combo box is its selected item's.
void showCurrent(HWND combo) {
    auto* record = findWindow(combo);
    const auto* item = itemAt(record, record ? record->current : -1);
    if (!record || (!item && hasEdit(combo))) return;
    record->text = item ? item->texts[0] : std::wstring();
    record->selectionBegin = record->selectionEnd = record->text.size();
    windowChanged(combo, change::kText);
}

void typeInEdit(HWND window, bool changed) {
    auto* record = findWindow(window);
    if (!changed || !record) return;
    record->current = -1;
    notifyParent(window, CBN_EDITCHANGE);
}

/// A typed letter goes to the next item that begins with it.
void chooseByLetter(HWND window, wchar_t letter) {
    const auto* record = findWindow(window);
    const int index = findItem(record, record->current, std::wstring(1, letter), false);
    if (index >= 0) chooseItem(window, index);
}

} // namespace

bool hasEdit(HWND combo) {
    const auto* record = findWindow(combo);
    return record && (record->style & CBS_DROPDOWNLIST) != CBS_DROPDOWNLIST;
}

bool chooseItem(HWND combo, int index) {
    auto* record = findWindow(combo);
    if (!itemAt(record, index)) return false;
    if (record->current == index) return true;
    setCurrentItem(record, index);
    showCurrent(combo);
    notifyParent(combo, CBN_SELCHANGE);
    return true;
}

void dropDown(HWND combo, bool open) {
    auto* record = findWindow(combo);
    if (!record || std::exchange(record->dropped, open) == open) return;
    windowChanged(combo, change::kContent);
    notifyParent(combo, open ? CBN_DROPDOWN : CBN_CLOSEUP);
}

LRESULT comboProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* record = findWindow(window);
    if (!record) return 0;
    switch (message) {
    case WM_SETTEXT:
        if (!hasEdit(window)) return CB_ERR;
        defaultProcedure(window, message, wParam, lParam);
        record->current = findItem(record, -1, record->text, true);
        record->selectionBegin = record->selectionEnd = 0;
        return 1;
    case WM_KEYDOWN:
        if (record->dropped && (wParam == VK_RETURN || wParam == VK_ESCAPE)) {
            dropDown(window, false);
            return 0;
        }
        if (hasEdit(window) && (wParam == VK_HOME || wParam == VK_END || wParam == VK_DELETE ||
                                wParam == VK_LEFT || wParam == VK_RIGHT)) {
            typeInEdit(window, editByKey(window, wParam));
        } else {
            const WPARAM key = wParam == VK_LEFT ? VK_UP : wParam == VK_RIGHT ? VK_DOWN : wParam;
            const int index = itemByKey(*record, record->current, key);
            if (index != record->current) chooseItem(window, index);
        }
        return 0;
    case WM_CHAR:
        if (hasEdit(window))
            typeInEdit(window, editByCharacter(window, static_cast<wchar_t>(wParam)));
        else
            chooseByLetter(window, static_cast<wchar_t>(wParam));
        return 0;
    case EM_SETSEL:
        selectText(window, static_cast<LPARAM>(wParam), lParam);
        return 0;
    case WM_SETFOCUS:
        notifyParent(window, CBN_SETFOCUS);
        return 0;
    case WM_KILLFOCUS:
        dropDown(window, false);
        notifyParent(window, CBN_KILLFOCUS);
        return 0;
    case WM_LBUTTONDOWN:
        SetFocus(window);
        return 0;
    case WM_GETDLGCODE:
        if (const auto* key = reinterpret_cast<const MSG*>(lParam);
            key && record->dropped && (key->wParam == VK_RETURN || key->wParam == VK_ESCAPE))
            return LRESULT{DLGC_WANTALLKEYS};
        return LRESULT{DLGC_WANTARROWS | DLGC_WANTCHARS} | (hasEdit(window) ? LRESULT{DLGC_HASSETSEL} : 0);
    default:
        return defaultProcedure(window, message, wParam, lParam);
    }
}

} // namespace framework

int CComboBox::AddString(const std::wstring& text) {
    return framework::addItem(Record(), text, (GetStyle() & CBS_SORT) != 0);
}

int CComboBox::InsertString(int index, const std::wstring& text) {
    return framework::insertItem(Record(), index, text);
}

int CComboBox::DeleteString(UINT index) {
    const int before = GetCurSel();
    const int left = framework::removeItem(Record(), static_cast<int>(index));
    if (before != CB_ERR && GetCurSel() == CB_ERR) framework::showCurrent(m_hWnd);
    return left;
}

void CComboBox::ResetContent() {
    auto* record = Record();
    framework::removeAllItems(record);
    if (!record) return;
    record->text.clear();
    record->selectionBegin = record->selectionEnd = 0;
    framework::windowChanged(m_hWnd, framework::change::kText);
}

int CComboBox::GetCount() const {
    const auto* record = Record();
    return record ? static_cast<int>(record->items.size()) : 0;
}

int CComboBox::GetCurSel() const {
    const auto* record = Record();
    return record ? record->current : CB_ERR;
}

int CComboBox::SetCurSel(int index) {
    const int selected = framework::setCurrentItem(Record(), index);
    framework::showCurrent(m_hWnd);
    return selected;
}

DWORD_PTR CComboBox::GetItemData(int index) const {
    const auto* item = itemAt(Record(), index);
    return item ? item->data : static_cast<DWORD_PTR>(CB_ERR);
}

int CComboBox::SetItemData(int index, DWORD_PTR data) {
    auto* item = itemAt(Record(), index);
    if (!item) return CB_ERR;
    item->data = data;
    return 0;
}

int CComboBox::GetLBText(int index, std::wstring& text) const {
    const auto* item = itemAt(Record(), index);
    if (!item) return CB_ERR;
    text = item->texts[0];
    return static_cast<int>(text.size());
}

int CComboBox::GetLBTextLen(int index) const {
    std::wstring text;
    return GetLBText(index, text);
}

int CComboBox::FindString(int after, const std::wstring& text) const {
    return framework::findItem(Record(), after, text, false);
}

int CComboBox::FindStringExact(int after, const std::wstring& text) const {
    return framework::findItem(Record(), after, text, true);
}

int CComboBox::SelectString(int after, const std::wstring& text) {
    const int found = FindString(after, text);
    return found == CB_ERR ? CB_ERR : SetCurSel(found);
}

void CComboBox::ShowDropDown(int show) {
    framework::dropDown(m_hWnd, show != 0);
}

int CComboBox::GetDroppedState() const {
    const auto* record = Record();
    return record && record->dropped;
}

int CComboBox::SetDroppedWidth(UINT pixels) {
    auto* record = Record();
    if (!record) return CB_ERR;
    record->droppedWidth = static_cast<int>(pixels);
    framework::windowChanged(m_hWnd, framework::change::kContent);
    return GetDroppedWidth();
}

int CComboBox::GetDroppedWidth() const {
    const auto* record = Record();
    return record ? std::max(record->droppedWidth, record->rect.Width()) : 0;
}
