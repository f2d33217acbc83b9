#pragma once

#include "framework/Export.h"
#include "framework/windows/WindowMessages.h"

#include <string>
#include <string_view>

/// Texts of the user interface by key, in the current language.
class VEXA_API CMSGFunction {
  public:
    /// The text of a message key; the key itself when the host has no text for it.
    static std::wstring GetValue(std::wstring_view key);
};

/// Reports an error in the host's output pane.
VEXA_API void qmMsgOutError(const std::wstring& text);
/// Reports a warning there.
VEXA_API void qmMsgOutWarning(const std::wstring& text);

/// Shows a message box (MB_...) and answers the button that closed it (IDOK, ...).
VEXA_API int AfxMessageBox(const std::wstring& text, unsigned style = MB_OK);
