#pragma once

#include "framework/windows/Geometry.h"
#include "framework/windows/WindowTypes.h"

#include <string>
#include <vector>

/// What a user does with a window, as a screen or a script delivers it: the record changes, then the messages
/// follow. Every function is false, and nothing happens, when the user could not do it: the control is gone,
/// hidden, disabled (or in a disabled window), or of another kind, or has no such item. The window may be
/// gone afterwards. Characters and keys: see framework/windows/Keyboard.h.
namespace framework::user {

bool canUse(HWND window); ///< visible and enabled with all its parents

bool press(HWND button); ///< a push button, check box or radio button
bool check(HWND button,
           bool on); ///< a check box: pressed when it is otherwise; a radio button can only be set
bool choose(HWND combo, int index); ///< an item of a combo box
bool dropDown(HWND combo, bool open);
/// Items of a list box or rows of a list control, these and no others; or one tab of a tab control.
bool select(HWND list, const std::vector<int>& indices);
bool checkItem(HWND list, int index, bool on); ///< the check box of an item or row
bool doubleClickItem(HWND list, int index);
bool clickColumn(HWND list, int column);
bool spin(HWND spinButton, int steps); ///< positive: up
/// Types over all of an edit's, or a combo box's, text: one character after the other.
bool type(HWND edit, const std::wstring& text);
/// Puts a text that an input method or the clipboard made in place of all of an edit's text: one change.
bool paste(HWND edit, const std::wstring& text);
bool close(HWND topLevel); ///< the close button of its frame

/// A mouse message at a point of the client area; a captured mouse goes to its window.
bool mouse(HWND window, UINT message, CPoint point, UINT keys = 0);

} // namespace framework::user
