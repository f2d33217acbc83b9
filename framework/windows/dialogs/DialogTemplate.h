#pragma once

#include "framework/Export.h"
#include "framework/drawing/Geometry.h"
#include "framework/windows/WindowTypes.h"

#include <span>

namespace framework {

/// A control of a dialog template; rectangle in dialog units.
struct ControlTemplate {
    const wchar_t* className = L"";
    const wchar_t* text = L"";
    UINT id = 0;
    UINT style = 0;
    UINT exStyle = 0;
    CRect rect;
};

/// A dialog as a resource script describes it; the rectangle, in dialog units, is that of the client area.
struct DialogTemplate {
    UINT id = 0;
    const wchar_t* title = L"";
    UINT style = 0;
    UINT exStyle = 0;
    CRect rect;
    std::span<const ControlTemplate> controls;
};

/// Makes a library's templates known; they must stay. A second call with the same table does nothing. Of two
/// templates of one id the one added last counts.
VEXA_API void addTemplates(std::span<const DialogTemplate> templates);
VEXA_API void removeTemplates(std::span<const DialogTemplate> templates);
VEXA_API const DialogTemplate* findTemplate(UINT id); ///< null when there is none

/// Dialog units to pixels: a quarter of 6 pixels across, an eighth of 13 down, rounded.
VEXA_API CRect dialogToPixels(const CRect& units);

} // namespace framework
