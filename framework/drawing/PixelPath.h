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

} // namespace framework
