#pragma once

#include "framework/Export.h"
#include "framework/windows/WindowTypes.h"

namespace framework {

// What the user does at the keyboard, delivered as a screen does it: to the focused window, first up the
// PreTranslateMessage chain of it and its parents (where dialogs navigate), then to the window itself. False
// when no enabled window has the focus. `modifiers`: MK_SHIFT, MK_CONTROL.

/// A key that is no character, and Enter, Backspace and the space bar.
VEXA_API bool pressKey(WPARAM key, UINT modifiers = 0);
VEXA_API bool typeCharacter(wchar_t character, UINT modifiers = 0);
/// Alt and a letter.
VEXA_API bool pressMnemonic(wchar_t letter);

} // namespace framework
