#pragma once

#include "workbench/session/Document.h"

#include <span>
#include <string>

namespace workbench::desktop {

/// A dialog of the module, as a menu and the command line know it.
struct ModuleDialog {
    const wchar_t* className;
    const wchar_t* menuKey; ///< of the text of its menu entry
    bool modal;
};

/// All of them, in the order of the menu.
std::span<const ModuleDialog> moduleDialogs();
/// Null for a name that is not among them; upper and lower case differ.
const ModuleDialog* findModuleDialog(const std::wstring& className);

/// The class of the one that takes a name.
inline constexpr const wchar_t* kSafetyGraphClass = L"CVEXAGpsSafetyGraphDlg";

/// Opens it as a host does. `argument` is the name that the safety graph takes; others take none.
void openModuleDialog(const ModuleDialog& dialog, Document& document, const std::wstring& argument);

} // namespace workbench::desktop
