#pragma once

#include "framework/Export.h"
#include "framework/windows/Wnd.h"

/// Two arrows that step a whole number in a range; with UDS_SETBUDDYINT the buddy's text shows it. "Up" goes
/// towards the upper limit, which may be the smaller number.
class VEXA_API CSpinButtonCtrl : public CWnd {
  public:
    void SetRange(short lower, short upper) { SetRange32(lower, upper); }
    void SetRange32(int lower, int upper);
    void GetRange(int& lower, int& upper) const;
    int SetPos(int position);    ///< the former one; stays within the range
    int GetPos() const;          ///< as the buddy's text has it
    CWnd* SetBuddy(CWnd* buddy); ///< the former one
    CWnd* GetBuddy() const;
};

namespace framework {

LRESULT spinProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
/// The user steps up (positive) or down: UDN_DELTAPOS, which may refuse or change the step, then the scroll
/// messages with this control to its parent.
bool spinBy(HWND spin, int steps);
/// The spin button that the arrow keys of an edit step (UDS_ARROWKEYS); null when there is none.
HWND spinOfBuddy(HWND edit);

} // namespace framework
