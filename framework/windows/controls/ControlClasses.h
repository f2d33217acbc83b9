#pragma once

#include "framework/windows/WindowClasses.h"

#include <deque>
#include <string>

namespace framework {

/// A class with nothing of its own: of main windows, views and controls that are all object.
inline constexpr const wchar_t* kPlainClass = L"AfxWnd";

/// The classes that are there from the start: that one, dialog, static, edit, button, combo box, list box,
/// list control, tab control, spin button.
std::deque<WindowClass> controlClasses();

/// The text whose "&" marks a mnemonic: of statics and buttons; empty for others.
std::wstring mnemonicText(HWND control);

} // namespace framework
