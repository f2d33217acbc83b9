#pragma once

#include "framework/Export.h"
#include "framework/windows/WindowTypes.h"

#include <string>
#include <vector>

namespace framework {

/// The controls of a dialog and of the pages in it, in tab order.
VEXA_API std::vector<HWND> controlsInTabOrder(HWND dialog);

/// The tab stop after (or before) `from`, around the end; in a radio group the checked button stands for all.
/// The first one for null; null when there is none.
HWND nextTabItem(HWND dialog, HWND from, bool previous);

/// The enabled, visible control after (or before) `from` in its group, around the end; `from` when it is
/// alone.
HWND nextGroupItem(HWND from, bool previous);

/// Siblings from the WS_GROUP control at or before `control` up to the next one.
VEXA_API std::vector<HWND> groupOf(HWND control);

/// The letter behind a single "&" in a text, in lower case; 0 when there is none.
VEXA_API wchar_t mnemonicOf(const std::wstring& text);
/// The text as it is shown: single "&" removed, "&&" one "&".
VEXA_API std::wstring withoutMnemonic(const std::wstring& text);

/// The dialog that navigates for `window`: the outermost one of nested pages. Null outside of dialogs.
VEXA_API HWND navigatingDialog(HWND window);

/// Tab, arrows in groups, Enter, Escape and mnemonics for a key message to `dialog` or a control in it.
/// Non-zero when the key was used. The dialog may be gone afterwards.
VEXA_API int IsDialogMessage(HWND dialog, const MSG& message);

} // namespace framework
