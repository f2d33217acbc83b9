#pragma once

#include "framework/Export.h"
#include "framework/windows/Wnd.h"

#include <vector>

/// Position in the walk over selected rows.
using POSITION = std::intptr_t; ///< 0 ends

/// A table of rows with columns; of its rows one (LVS_SINGLESEL) or several are selected. Positions that are
/// not there answer -1 or zero. What the program does here notifies nobody.
class VEXA_API CListCtrl : public CWnd {
  public:
    int InsertColumn(int column, const std::wstring& heading, int format = LVCFMT_LEFT, int width = -1);
    int DeleteColumn(int column);
    int GetColumnCount() const;
    int GetColumnWidth(int column) const;
    int SetColumnWidth(int column, int width);

    int InsertItem(int row, const std::wstring& text); ///< behind the last row when `row` lies beyond
    int SetItemText(int row, int column, const std::wstring& text);
    std::wstring GetItemText(int row, int column) const;
    int DeleteItem(int row);
    int DeleteAllItems();
    int GetItemCount() const;
    int SetItemData(int row, DWORD_PTR data);
    DWORD_PTR GetItemData(int row) const;

    int SetItemState(int row, UINT state, UINT mask); ///< LVIS_SELECTED, LVIS_FOCUSED; row -1: every row
    UINT GetItemState(int row, UINT mask) const;
    UINT GetSelectedCount() const;
    int GetNextItem(int after, UINT flags) const; ///< LVNI_ALL, LVNI_SELECTED or LVNI_FOCUSED
    POSITION GetFirstSelectedItemPosition() const;
    int GetNextSelectedItem(POSITION& position) const; ///< the row there; moves on to the next one
    int EnsureVisible(int row, int partialOk);

    UINT SetExtendedStyle(UINT style); ///< the former one; LVS_EX_CHECKBOXES gives rows check boxes
    UINT GetExtendedStyle() const;
    int GetCheck(int row) const;
    int SetCheck(int row, int check = 1);
};

namespace framework {

LRESULT listControlProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
/// What the user does; each notifies (LVN_ITEMCHANGED a row, NM_DBLCLK, LVN_COLUMNCLICK). False for a bad
/// position.
bool selectRows(HWND list, const std::vector<int>& rows);
bool checkRow(HWND list, int row, int check);
bool doubleClickRow(HWND list, int row);
VEXA_API bool clickColumn(HWND list, int column);

} // namespace framework
