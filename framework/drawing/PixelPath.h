#pragma once

#include "framework/Export.h"
#include "framework/drawing/Geometry.h"

#include <span>
#include <vector>

namespace framework {

/// The points that a line through `points` needs to cover the same pixels: of those that follow one another
/// in a column only the first, the extremes and the last are kept. So a curve of any number of points that
/// goes from left to right comes down to four a column. At least two, unless `points` is empty.
VEXA_API std::vector<CPoint> pixelPath(std::span<const CPoint> points);

/// Painters cover the pixels whose middles lie between the ends of a line, the lesser end counted and the
/// greater one not. This moves an end that an upright or level line has at the wrong side, so that a line
/// that goes up or to the left has its first pixel too and leaves out its last one.
VEXA_API void leaveOutLastPixel(std::vector<CPoint>& path);

} // namespace framework
