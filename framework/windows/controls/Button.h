#pragma once

#include "framework/Export.h"
#include "framework/windows/Wnd.h"

/// A push button, check box, radio button or group box, by its style.
class VEXA_API CButton : public CWnd {
  public:
    int GetCheck() const;
    void SetCheck(int check); ///< BST_...; of this button alone, without a notification
    UINT GetButtonStyle() const { return GetStyle() & BS_TYPEMASK; }
    void SetButtonStyle(UINT style, int redraw = 1);
};

namespace framework {

LRESULT buttonProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
bool isRadioButton(HWND window);
/// Checks one radio button and clears the others of its group, without notifications.
void checkRadio(HWND button);
void setCheck(HWND button, int check);

} // namespace framework
