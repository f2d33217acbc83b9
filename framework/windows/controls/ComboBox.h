#pragma once

#include "framework/Export.h"
#include "framework/windows/Wnd.h"

/// A list to choose one item from, each with a value of the program's. Positions that are not there answer
/// CB_ERR. What the program does here notifies nobody.
class VEXA_API CComboBox : public CWnd {
  public:
    int AddString(const std::wstring& text); ///< its position
    int InsertString(int index, const std::wstring& text);
    int DeleteString(UINT index);
    void ResetContent();
    int GetCount() const;
    int GetCurSel() const;                  ///< CB_ERR when nothing is selected
    int SetCurSel(int index);               ///< -1 selects nothing
    DWORD_PTR GetItemData(int index) const; ///< CB_ERR, widened, for a bad position
    int SetItemData(int index, DWORD_PTR data);
    int GetLBText(int index, std::wstring& text) const; ///< its length
    int GetLBTextLen(int index) const;
    int FindString(int after, const std::wstring& text) const; ///< one that begins with it
    int FindStringExact(int after, const std::wstring& text) const;
    int SelectString(int after, const std::wstring& text);
    void ShowDropDown(int show = 1);
    int GetDroppedState() const;
    int SetDroppedWidth(UINT pixels);
    int GetDroppedWidth() const;
};

namespace framework {

LRESULT comboProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
/// The user chooses an item: notifies when it is another one. False for a bad position.
bool chooseItem(HWND combo, int index);
/// Opens or closes the list; notifies (CBN_DROPDOWN, CBN_CLOSEUP) when that is a change.
VEXA_API void dropDown(HWND combo, bool open);
VEXA_API bool hasEdit(HWND combo); ///< its text can be typed

} // namespace framework
