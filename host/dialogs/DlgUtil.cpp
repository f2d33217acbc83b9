#include "host/dialogs/DlgUtil.h"

#include "framework/windows/dialogs/TextWidth.h"

#include <algorithm>

int CDlgUtil::CobxAddItem(CComboBox& box, const std::wstring& text, DWORD_PTR data) {
    const int index = box.AddString(text);
    box.SetItemData(index, data);
    return index;
}

DWORD_PTR CDlgUtil::CobxGetCurSelItemData(const CComboBox& box) {
    return box.GetItemData(box.GetCurSel());
}

int CDlgUtil::CobxSetCurSelItemData(CComboBox& box, DWORD_PTR data) {
    for (int i = 0; i < box.GetCount(); ++i)
        if (box.GetItemData(i) == data) return box.SetCurSel(i);
    return CB_ERR;
}

int CDlgUtil::CobxGetItemDataByCurSel(const CComboBox& box, DWORD_PTR& data) {
    const int current = box.GetCurSel();
    if (current == CB_ERR) return 0;
    data = box.GetItemData(current);
    return 1;
}

void CDlgUtil::CobxUpdateItemWidth(CComboBox& box) {
    constexpr int kScrollBarAndEdges = 26;
    int width = 0;
    std::wstring text;
    for (int i = 0; i < box.GetCount(); ++i) {
        box.GetLBText(i, text);
        width = std::max(width, framework::textWidth(text));
    }
    box.SetDroppedWidth(static_cast<UINT>(width + kScrollBarAndEdges));
}

int CDlgUtil::CLBAddItem(CCheckListBox& list, const std::wstring& text, DWORD_PTR data, int check) {
    const int index = list.AddString(text);
    list.SetItemData(index, data);
    list.SetCheck(index, check);
    return index;
}

std::vector<DWORD_PTR> CDlgUtil::CLBGetCheck(const CCheckListBox& list) {
    std::vector<DWORD_PTR> checked;
    for (int i = 0; i < list.GetCount(); ++i)
        if (list.GetCheck(i)) checked.push_back(list.GetItemData(i));
    return checked;
}

void CDlgUtil::CLBSetCheck(CCheckListBox& list, const std::vector<DWORD_PTR>& data) {
    for (int i = 0; i < list.GetCount(); ++i)
        list.SetCheck(i, std::ranges::find(data, list.GetItemData(i)) != data.end());
}

void CDlgUtil::CtrlEnableDisable(CWnd* dialog, const std::vector<int>& ids, int enable) {
    for (const int id : ids)
        EnableWindow(GetDlgItem(dialog->m_hWnd, id), enable);
}

void CDlgUtil::CtrlShowHide(CWnd* dialog, const std::vector<int>& ids, int show) {
    for (const int id : ids)
        ShowWindow(GetDlgItem(dialog->m_hWnd, id), show ? SW_SHOW : SW_HIDE);
}

int CDlgUtil::CtrlRadioGetCheck(const CWnd* dialog, int first, int last) {
    const int checked = dialog->GetCheckedRadioButton(first, last);
    return checked ? checked - first : -1;
}

void CDlgUtil::CtrlRadioSetCheck(CWnd* dialog, int first, int last, int position) {
    dialog->CheckRadioButton(first, last, position < 0 ? -1 : first + position);
}

std::vector<int> CDlgUtil::GetSelectedListItemIndex(const CListCtrl& list) {
    std::vector<int> rows;
    for (POSITION position = list.GetFirstSelectedItemPosition(); position;)
        rows.push_back(list.GetNextSelectedItem(position));
    return rows;
}

int CDlgUtil::SetListItem(CListCtrl& list, int row, const std::vector<std::wstring>& texts) {
    const int count = list.GetItemCount();
    if (row < 0 || row > count || (row == count && list.InsertItem(row, L"") < 0)) return 0;
    for (std::size_t column = 0; column < texts.size(); ++column)
        list.SetItemText(row, static_cast<int>(column), texts[column]);
    return 1;
}
