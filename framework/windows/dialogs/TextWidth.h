#pragma once

#include "framework/Export.h"
#include "framework/windows/dialogs/DialogTemplate.h"

#include <string_view>

namespace framework {

/// Height of a line of dialog text, pixels.
inline constexpr int kTextHeight = 13;

/// Width of a text in the font of dialogs (8 points at 96 dpi, 11 pixels to the em), in pixels, rounded up.
/// From one table whatever the screen, so that a layout can be tested; its letters are those of a wide font,
/// so that what fits here fits on real screens.
VEXA_API int textWidth(std::wstring_view text);

/// Whether a control of a template has room for a text: one line, or as many as it is high where its kind
/// breaks lines at blanks. Kinds that scroll always have.
VEXA_API bool fitsControl(const ControlTemplate& control, std::wstring_view text);

} // namespace framework
