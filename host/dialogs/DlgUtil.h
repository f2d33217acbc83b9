#pragma once

#include "framework/Export.h"
#include "framework/windows/controls/ComboBox.h"
#include "framework/windows/controls/ListBox.h"
#include "framework/windows/controls/ListCtrl.h"

#include <string>
#include <vector>

/// What dialogs do with controls again and again.
class VEXA_API CDlgUtil {
  public:
    // Combo boxes whose items carry data.
    static int CobxAddItem(CComboBox& box, const std::wstring& text, DWORD_PTR data = 0); ///< its position
    /// Data of the selected item; CB_ERR, widened, when none is selected.
    static DWORD_PTR CobxGetCurSelItemData(const CComboBox& box);
    /// Selects the first item with that data; its position, or CB_ERR and the selection as it was.
    static int CobxSetCurSelItemData(CComboBox& box, DWORD_PTR data);
    /// The same data, where CB_ERR may be one; zero, and `data` untouched, when no item is selected.
    static int CobxGetItemDataByCurSel(const CComboBox& box, DWORD_PTR& data);
    static void CobxUpdateItemWidth(CComboBox& box); ///< lets the dropped list be as wide as its longest text

    // Check list boxes whose items carry data.
    static int CLBAddItem(CCheckListBox& list, const std::wstring& text, DWORD_PTR data, int check = 0);
    static std::vector<DWORD_PTR>
    CLBGetCheck(const CCheckListBox& list); ///< data of the checked items, in order
    /// Checks the items with these data, and no others.
    static void CLBSetCheck(CCheckListBox& list, const std::vector<DWORD_PTR>& data);

    // Controls of a dialog by id; ids without a control are passed over.
    static void CtrlEnableDisable(CWnd* dialog, const std::vector<int>& ids, int enable);
    static void CtrlShowHide(CWnd* dialog, const std::vector<int>& ids, int show);
    /// Position in the radio buttons with the ids `first` to `last`; -1 when none is checked.
    static int CtrlRadioGetCheck(const CWnd* dialog, int first, int last);
    static void CtrlRadioSetCheck(CWnd* dialog, int first, int last, int position); ///< -1: none

    static std::vector<int> GetSelectedListItemIndex(const CListCtrl& list); ///< ascending
    /// Writes a row, one text a column; a row behind the last one is added. Zero for a bad row.
    static int SetListItem(CListCtrl& list, int row, const std::vector<std::wstring>& texts);
};
