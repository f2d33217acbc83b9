#pragma once

#include "framework/Export.h"
#include "framework/windows/WindowTypes.h"

#include <memory>
#include <string>
#include <string_view>

class CWnd;

namespace framework {

/// What a window is to its user.
enum class ControlKind { kPlain, kDialog, kStatic, kEdit, kButton, kCombo, kList, kListControl, kTab, kSpin };

/// What windows of one class have in common.
struct WindowClass {
    std::wstring name;
    /// Answers the messages that no object handles. The window may be gone when a notification returns.
    LRESULT (*procedure)(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    /// The object for FromHandle where none is attached, so that it may be cast to its control's class.
    std::unique_ptr<CWnd> (*makeObject)();
    ControlKind kind = ControlKind::kPlain;
};

/// The class of that name, in any letter case; null when it is not registered.
const WindowClass* findWindowClass(std::wstring_view name);
/// Adds a class, or answers the one of that name that is there. Lives as long as the process.
const WindowClass& registerWindowClass(WindowClass added);

VEXA_API ControlKind kindOf(HWND window); ///< kPlain for a window that is gone

/// What every window answers; the procedures of all classes end here.
LRESULT defaultProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace framework
