#pragma once

#include "framework/windows/WindowTypes.h"

namespace framework {

/// Whether a window and all its parents are enabled.
bool isEnabledWithParents(HWND window);
/// And none of those with a parent is hidden: what a dialog navigates to, shown yet or not.
bool isUsable(HWND window);
/// Takes focus and activation from a window that is being destroyed or hidden, and from those in it.
void leaveForGood(HWND window);
/// Takes the focus from a window that was disabled or hidden to the next tab stop of its dialog.
void leaveFocus(HWND window);
bool holdsFocus(HWND window); ///< it or a window in it

} // namespace framework
