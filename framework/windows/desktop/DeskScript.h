#pragma once

#include "framework/Export.h"
#include "framework/windows/WindowTypes.h"

#include <string>
#include <string_view>
#include <vector>

namespace framework {

/// One line of a script of user actions; docs/desk-script.md describes the language.
struct DeskStep {
    std::size_t line = 0; ///< in the script, from 1
    std::wstring action;
    std::vector<std::wstring> arguments;
};

/// What a text of a script says, and what is wrong with it: one sentence a line that is not understood.
struct DeskScript {
    std::vector<DeskStep> steps;
    std::vector<std::wstring> problems;
};

VEXA_API DeskScript parseDeskScript(std::wstring_view text);

/// Does one step as the user of the active window. An empty text, or one sentence why it was not possible.
/// "answer" is not done here: message boxes ask for it.
VEXA_API std::wstring performDeskStep(const DeskStep& step);

/// The id of a button that "answer" names ("ok", "yes", ...); 0 when there is none of that name.
VEXA_API int answerId(const std::wstring& name);

/// The control of a dialog by its id or its text; a text that is a label's means the control after it. Null
/// when there is none.
VEXA_API HWND findControl(HWND dialog, const std::wstring& name);

} // namespace framework
