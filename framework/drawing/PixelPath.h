#pragma once

#include "framework/Export.h"
#include "framework/drawing/Geometry.h"

#include <span>
#include <vector>

// Which pixels a line covers, for whoever paints recordings.
namespace framework {

/// The points that a line through `points` needs to cover the same pixels: of those that follow one another
/// in a column only the first, the extremes and the last are kept. So a curve of any number of points that
/// goes from left to right comes down to four a column, and its end. At least two, unless `points` is empty.
VEXA_API std::vector<CPoint> pixelPath(std::span<const CPoint> points);

/// The pixels of a pen of one pixel along `path`, as rows and columns of pixels from its begin to its end; a
/// pixel may lie in several. In every column, or row where it is steeper, it is the one nearest to the line,
/// of two the upper or left one, so that there and back are the same pixels. The last point is left out, and
/// what lies outside of `seen`.
VEXA_API std::vector<CRect> pixelRuns(std::span<const CPoint> path, const CRect& seen);

/// The point, or one at the edge of what painters can count: some have but 24 bits for a coordinate.
VEXA_API CPoint withinReach(CPoint point);

} // namespace framework
