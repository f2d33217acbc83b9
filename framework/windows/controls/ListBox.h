#pragma once

#include "framework/Export.h"
#include "framework/windows/Wnd.h"

#include <vector>

/// A list of items, each with a value of the program's, of which one or (LBS_MULTIPLESEL, LBS_EXTENDEDSEL)
/// several are selected. Positions that are not there answer LB_ERR. What the program does here notifies
/// nobody.
class VEXA_API CListBox : public CWnd {
  public:
    int AddString(const std::wstring& text);
    int InsertString(int index, const std::wstring& text);
    int DeleteString(UINT index);
    void ResetContent();
    int GetCount() const;
    int GetCurSel() const; ///< in a list of several: the item with the caret
    int SetCurSel(int index);
    int GetSel(int index) const;           ///< non-zero when selected
    int SetSel(int index, int select = 1); ///< lists of several; -1 means every item
    int GetSelCount() const;
    int GetSelItems(int capacity, int* indices) const; ///< number written, ascending
    DWORD_PTR GetItemData(int index) const;
    int SetItemData(int index, DWORD_PTR data);
    int GetText(int index, std::wstring& text) const;
    int FindString(int after, const std::wstring& text) const;
    int FindStringExact(int after, const std::wstring& text) const;
    int SelectString(int after, const std::wstring& text);
};

/// A list box whose items have check boxes. A check by the user notifies with CLBN_CHKCHANGE.
class VEXA_API CCheckListBox : public CListBox {
  public:
    int GetCheck(int index) const;
    void SetCheck(int index, int check);

  protected:
    void PreSubclassWindow() override;
};

namespace framework {

LRESULT listProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
VEXA_API bool isMultiple(const WindowRecord& record);
/// The user selects these items and no others (one in a list of one); notifies when that is a change. False,
/// and nothing done, for a bad position.
bool selectItems(HWND list, const std::vector<int>& indices);
/// The user checks an item; notifies when that is a change.
VEXA_API bool checkItem(HWND list, int index, int check);

} // namespace framework
