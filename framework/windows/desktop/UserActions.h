#pragma once

#include "framework/Export.h"
#include "framework/drawing/Geometry.h"
#include "framework/windows/WindowTypes.h"

#include <string>
#include <vector>

/// What a user does with a window, as a screen or a script delivers it: the record changes, then the messages
/// follow. Every function is false, and nothing happens, when the user could not do it: the control is gone,
/// hidden, disabled (or in a disabled window), or of another kind, or has no such item. The window may be
/// gone afterwards. Characters and keys: see framework/windows/Keyboard.h.
namespace framework::user {

VEXA_API bool canUse(HWND window); ///< visible and enabled with all its parents

VEXA_API bool press(HWND button); ///< a push button, check box or radio button
VEXA_API bool check(HWND button,
                    bool on); ///< a check box: pressed when it is otherwise; a radio button can only be set
VEXA_API bool choose(HWND combo, int index); ///< an item of a combo box
VEXA_API bool dropDown(HWND combo, bool open);
/// Items of a list box or rows of a list control, these and no others; or one tab of a tab control.
VEXA_API bool select(HWND list, const std::vector<int>& indices);
VEXA_API bool checkItem(HWND list, int index, bool on); ///< the check box of an item or row
VEXA_API bool doubleClickItem(HWND list, int index);
VEXA_API bool clickColumn(HWND list, int column);
VEXA_API bool spin(HWND spinButton, int steps); ///< positive: up
/// Types over all of an edit's, or a combo box's, text: one character after the other.
VEXA_API bool type(HWND edit, const std::wstring& text);
/// Puts a text that an input method or the clipboard made in place of all of an edit's text: one change.
VEXA_API bool paste(HWND edit, const std::wstring& text);
VEXA_API bool close(HWND topLevel); ///< the close button of its frame

/// A mouse message at a point of the client area; a captured mouse goes to its window.
VEXA_API bool mouse(HWND window, UINT message, CPoint point, UINT keys = 0);

} // namespace framework::user
