#pragma once

#include "framework/windows/WindowClasses.h"

#include <deque>
#include <string>

namespace framework {

/// The classes that are there from the start: dialog, static, edit, button, combo box, list box, list
/// control, tab control, spin button.
std::deque<WindowClass> controlClasses();

/// The text whose "&" marks a mnemonic: of statics and buttons; empty for others.
std::wstring mnemonicText(HWND control);

} // namespace framework
