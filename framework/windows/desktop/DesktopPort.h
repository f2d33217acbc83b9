#pragma once

#include "framework/Export.h"
#include "framework/drawing/Geometry.h"
#include "framework/windows/WindowTypes.h"

#include <string>

namespace framework {

/// What of a window changed; bits add up.
namespace change {
inline constexpr unsigned kText = 1;    ///< text, and the selection in the text of an edit
inline constexpr unsigned kPlace = 2;   ///< rectangle
inline constexpr unsigned kState = 4;   ///< style: visible, enabled, read-only ...
inline constexpr unsigned kContent = 8; ///< items, columns, selection, check, range, position
inline constexpr unsigned kFocus = 16;  ///< got or lost the focus or the activation
inline constexpr unsigned kOrder = 32;  ///< parent, or place among the windows of the screen
} // namespace change

/// A screen that shows the windows. It is told what happens to the records, which stay the only truth; what
/// its user does it turns into the functions of UserActions.h. Calls come while handlers run: look at the
/// record, do not send messages from within.
class DesktopPort {
  public:
    virtual ~DesktopPort() = default;

    virtual void WindowCreated(HWND) {}
    virtual void WindowChanged(HWND, unsigned /*what*/) {}
    /// The record is still there, its children are gone.
    virtual void WindowDestroyed(HWND) {}
    /// A part of the client area is to be painted; pumpMessages does it.
    virtual void RegionInvalid(HWND, const CRect&) {}
    /// What the client area shows (WindowRecord::presented) is another one.
    virtual void WindowPainted(HWND) {}
    /// Messages wait; call pumpMessages when control is back in the screen's own loop.
    virtual void MessagePosted() {}

    /// Lets the user work until modalLoopEnded(dialog), calling pumpMessages.
    virtual void RunModalLoop(HWND dialog) = 0;
    /// Shows a message and answers the id of the button that was pressed.
    virtual int ShowMessageBox(HWND owner, const std::wstring& text, const std::wstring& caption,
                               unsigned style) = 0;
    /// Where dialogs are placed, on the screen.
    virtual CRect WorkArea() const { return {0, 0, 1920, 1080}; }
};

/// Registers the screen of this process and answers the one before; null: the scripted desk again.
VEXA_API DesktopPort* setDesktop(DesktopPort* desktop);
VEXA_API DesktopPort& desktop();

/// Whether a modal dialog has its answer or is gone.
VEXA_API bool modalLoopEnded(HWND dialog);

/// Whether an object paints this window (its map handles WM_PAINT): a screen shows what is painted and sends
/// mouse messages, whatever the window's class is.
VEXA_API bool paintsItself(HWND window);

/// Tells the desktop of a change, unless the window is gone.
void windowChanged(HWND window, unsigned what);

} // namespace framework
