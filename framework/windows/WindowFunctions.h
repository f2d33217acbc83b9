#pragma once

#include "framework/Export.h"
#include "framework/drawing/Geometry.h"
#include "framework/windows/WindowMessages.h"
#include "framework/windows/WindowStyles.h"

#include <string>

class CWnd;

// The system's functions on handles. Every one takes the handle of a window that is gone, and then does
// nothing and answers zero or null.

VEXA_API int IsWindow(HWND window);
VEXA_API int DestroyWindow(HWND window); ///< zero for a window that is gone or about to go

/// Delivers a message at once. A handler that throws ends its message: the cause goes to the error output and
/// the answer is 0 (-1 to WM_CREATE).
VEXA_API LRESULT SendMessage(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
/// Queues a message for framework::pumpMessages. Zero when there is no such window.
VEXA_API int PostMessage(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
/// A number of its own for a message of that name, the same for the same name.
VEXA_API UINT RegisterWindowMessage(const std::wstring& name);

VEXA_API HWND GetParent(HWND window); ///< of a child; of a top-level window its owner
VEXA_API HWND GetDlgItem(HWND window, int id);
VEXA_API int GetDlgCtrlID(HWND window);
VEXA_API int IsChild(HWND window, HWND descendant);
VEXA_API HWND SetParent(HWND window, HWND parent); ///< the former one

VEXA_API HWND GetFocus();
/// Gives the focus to an enabled window (null: to none) and makes its top-level window active. Answers the
/// one that had it.
VEXA_API HWND SetFocus(HWND window);
VEXA_API HWND GetActiveWindow();
/// Makes an enabled top-level window the active one. Answers the one that was.
VEXA_API HWND SetActiveWindow(HWND window);
VEXA_API HWND GetCapture();
VEXA_API HWND SetCapture(HWND window);
VEXA_API int ReleaseCapture();
/// Negative while a modifier key (VK_SHIFT, VK_CONTROL) is held.
VEXA_API short GetKeyState(int key);

VEXA_API int EnableWindow(HWND window, int enable); ///< non-zero when it was disabled
VEXA_API int IsWindowEnabled(HWND window);
VEXA_API int ShowWindow(HWND window, int how); ///< non-zero when it was visible
VEXA_API int IsWindowVisible(HWND window);     ///< it and all its parents

/// Places a window: a child in the client area of its parent, another on the screen.
VEXA_API int MoveWindow(HWND window, const CRect& rect);
VEXA_API int GetWindowRect(HWND window, CRect* rect); ///< on the screen
VEXA_API int GetClientRect(HWND window, CRect* rect); ///< left and top are 0
VEXA_API int ClientToScreen(HWND window, CPoint* point);
VEXA_API int ScreenToClient(HWND window, CPoint* point);
VEXA_API int BringWindowToTop(HWND window);

VEXA_API int InvalidateRect(HWND window, const CRect* rect, int erase); ///< null: the whole client area
VEXA_API int ValidateRect(HWND window, const CRect* rect);              ///< null: the whole client area
VEXA_API int UpdateWindow(HWND window);                                 ///< paints now what is invalid

namespace framework {

struct NewWindow {
    std::wstring className;
    std::wstring text;
    UINT style = 0;
    UINT exStyle = 0;
    CRect rect;            ///< in the client area of the parent, or on the screen
    HWND parent = nullptr; ///< of a child; the owner of another window
    UINT id = 0;
};

/// Makes a window and sends WM_CREATE. `object`, when given, gets its messages from the first one on. Null
/// when the class is unknown, the parent is missing, WM_CREATE answers -1 or throws, or a handler destroyed
/// the window; the object then has no window and its post-destroy has not run. With `incomplete` the window
/// counts as being created until completeCreation is called.
HWND createWindow(const NewWindow& wanted, CWnd* object, bool incomplete = false);
void completeCreation(HWND window);

/// /// Dispatches the posted messages, those included that handlers post meanwhile (10,000 at most, the
/// others wait for the next call), then paints what is invalid.
VEXA_API void pumpMessages();

/// Window without a parent that holds `window`.
VEXA_API HWND topLevelOf(HWND window);
/// Notifies the parent of a control with WM_COMMAND. False when the control is gone afterwards.
bool notifyParent(HWND control, UINT code);
/// Notifies the parent of a control with WM_NOTIFY; fills in the head of the record.
LRESULT notifyParent(HWND control, UINT code, NMHDR& header);

VEXA_API std::wstring windowText(HWND window);

} // namespace framework
