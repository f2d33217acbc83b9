#pragma once

#include "framework/Export.h"
#include "framework/drawing/Recording.h"

#include <string>

namespace framework {

/// A recording as an SVG document of so many pixels, in UTF-8, the same on every platform. Lines and fills
/// cover the pixels that they cover on a screen.
VEXA_API std::string toSvg(const Recording& drawn, CSize size);

} // namespace framework
