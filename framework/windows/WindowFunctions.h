#pragma once

#include "framework/windows/Geometry.h"
#include "framework/windows/WindowMessages.h"
#include "framework/windows/WindowStyles.h"

#include <string>

class CWnd;

// The system's functions on handles. Every one takes the handle of a window that is gone, and then does
// nothing and answers zero or null.

int IsWindow(HWND window);
int DestroyWindow(HWND window); ///< zero for a window that is gone or about to go

/// Delivers a message at once. A handler that throws ends its message: the cause goes to the error output and
/// the answer is 0 (-1 to WM_CREATE).
LRESULT SendMessage(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
/// Queues a message for framework::pumpMessages. Zero when there is no such window.
int PostMessage(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
/// A number of its own for a message of that name, the same for the same name.
UINT RegisterWindowMessage(const std::wstring& name);

HWND GetParent(HWND window); ///< of a child; of a top-level window its owner
HWND GetDlgItem(HWND window, int id);
int GetDlgCtrlID(HWND window);
int IsChild(HWND window, HWND descendant);
HWND SetParent(HWND window, HWND parent); ///< the former one

HWND GetFocus();
/// Gives the focus to an enabled window (null: to none) and makes its top-level window active. Answers the
/// one that had it.
HWND SetFocus(HWND window);
HWND GetActiveWindow();
/// Makes an enabled top-level window the active one. Answers the one that was.
HWND SetActiveWindow(HWND window);
HWND GetCapture();
HWND SetCapture(HWND window);
int ReleaseCapture();
/// Negative while a modifier key (VK_SHIFT, VK_CONTROL) is held.
short GetKeyState(int key);

int EnableWindow(HWND window, int enable); ///< non-zero when it was disabled
int IsWindowEnabled(HWND window);
int ShowWindow(HWND window, int how); ///< non-zero when it was visible
int IsWindowVisible(HWND window);     ///< it and all its parents

/// Places a window: a child in the client area of its parent, another on the screen.
int MoveWindow(HWND window, const CRect& rect);
int GetWindowRect(HWND window, CRect* rect); ///< on the screen
int GetClientRect(HWND window, CRect* rect); ///< left and top are 0
int ClientToScreen(HWND window, CPoint* point);
int ScreenToClient(HWND window, CPoint* point);
int BringWindowToTop(HWND window);

int InvalidateRect(HWND window, const CRect* rect, int erase); ///< null: the whole client area
int ValidateRect(HWND window, const CRect* rect);              ///< null: the whole client area
int UpdateWindow(HWND window);                                 ///< paints now what is invalid

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
void pumpMessages();

/// Window without a parent that holds `window`.
HWND topLevelOf(HWND window);
/// Notifies the parent of a control with WM_COMMAND. False when the control is gone afterwards.
bool notifyParent(HWND control, UINT code);
/// Notifies the parent of a control with WM_NOTIFY; fills in the head of the record.
LRESULT notifyParent(HWND control, UINT code, NMHDR& header);

std::wstring windowText(HWND window);

} // namespace framework
