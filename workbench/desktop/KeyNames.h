#pragma once

#include "framework/windows/WindowTypes.h"
#include "workbench/desktop/QtWidgets.h"

namespace workbench::desktop {

/// The framework's key of one of the toolkit's; 0 for keys that only make characters, or nothing.
WPARAM frameworkKey(int key);
UINT frameworkModifiers(Qt::KeyboardModifiers modifiers);

/// Does what the clipboard keys (select all, copy, cut, paste) mean in an edit. False for other keys.
bool useClipboardKey(HWND edit, const QKeyEvent& key);

} // namespace workbench::desktop
