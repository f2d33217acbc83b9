#pragma once

#include "framework/Export.h"
#include "framework/windows/Wnd.h"

/// Tabs above a display area. Selecting by the program notifies nobody.
class VEXA_API CTabCtrl : public CWnd {
  public:
    int InsertItem(int index, const std::wstring& text); ///< selects the first tab that comes
    int DeleteItem(int index);
    int DeleteAllItems();
    int GetItemCount() const;
    std::wstring GetItemText(int index) const;
    int SetItemText(int index, const std::wstring& text);
    int GetCurSel() const;
    int SetCurSel(int index); ///< the former one
    /// From the control's rectangle to its display area, or with `larger` back.
    void AdjustRect(int larger, CRect* rect) const;
};

namespace framework {

LRESULT tabProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
/// The user selects a tab: TCN_SELCHANGING, which may refuse, then TCN_SELCHANGE. False for a bad position.
bool selectTab(HWND tabs, int index);

} // namespace framework
