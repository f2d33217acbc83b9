#pragma once

#include "framework/Export.h"
#include "framework/drawing/Color.h"

#include <string>
#include <string_view>

/// Pieces of SVG at the end of a text, the same on every platform and in every locale.
namespace framework::svg {

/// A coordinate: at most `decimals` digits behind the point and no zeros at their end; 0 for what is not
/// finite.
VEXA_API void appendNumber(std::string& out, double value, int decimals = 2);
/// "#rrggbb".
VEXA_API void appendColor(std::string& out, COLORREF color);
/// UTF-8 with &, <, > and quotes written out, for content and attributes alike. Characters that XML does not
/// allow become U+FFFD.
VEXA_API void appendText(std::string& out, std::wstring_view text);

} // namespace framework::svg
