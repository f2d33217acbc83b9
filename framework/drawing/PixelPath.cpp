#include "framework/drawing/PixelPath.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace framework {
namespace {

/// Adds the first of the points, which are all in one column, the extremes and the last.
void addColumn(std::span<const CPoint> points, std::vector<CPoint>& path) {
    const CPoint first = points.front(), last = points.back();
    int low = first.y, high = first.y;
    for (const CPoint point : points) {
        low = std::min(low, point.y);
        high = std::max(high, point.y);
    }
    path.push_back(first);
    if (low < std::min(first.y, last.y)) path.push_back({first.x, low});
    if (high > std::max(first.y, last.y)) path.push_back({first.x, high});
    if (last.y != path.back().y) path.push_back(last);
}

/// All pixels from `from` up to `to` but that one.
void addRuns(CPoint from, CPoint to, const CRect& seen, std::vector<CRect>& runs) {
    const std::int64_t width = std::int64_t{to.x} - from.x, height = std::int64_t{to.y} - from.y;
    const bool flat = std::abs(width) >= std::abs(height);
    // Along the longer extent and across it, in ascending order whichever way the line goes.
    const std::int64_t begin = flat ? from.x : from.y, length = flat ? width : height;
    const std::int64_t beginAcross = flat ? from.y : from.x, rise = flat ? height : width;
    const CRect turned = flat ? seen : CRect(seen.top, seen.left, seen.bottom, seen.right);
    const auto acrossAt = [&](std::int64_t along) {
        const double exact =
            static_cast<double>(along - begin) * static_cast<double>(rise) / static_cast<double>(length);
        return beginAcross + static_cast<std::int64_t>(std::ceil(exact - 0.5));
    };
    std::int64_t at = std::max<std::int64_t>(length > 0 ? begin : begin + length + 1, turned.left);
    const std::int64_t end = std::min<std::int64_t>(length > 0 ? begin + length : begin + 1, turned.right);
    while (at < end) {
        const std::int64_t across = acrossAt(at);
        std::int64_t next = rise == 0 ? end : at + 1;
        while (next < end && acrossAt(next) == across)
            ++next;
        if (across >= turned.top && across < turned.bottom) {
            const CPoint corner(static_cast<int>(at), static_cast<int>(across));
            const int pixels = static_cast<int>(next - at);
            runs.push_back(flat ? CRect(corner, CSize(pixels, 1))
                                : CRect(CPoint(corner.y, corner.x), CSize(1, pixels)));
        }
        at = next;
    }
}

} // namespace

std::vector<CPoint> pixelPath(std::span<const CPoint> points) {
    std::vector<CPoint> path;
    if (points.empty()) return path;
    // The last point of a line is not drawn, so it stays what it is: where the line was there before, that
    // is another point.
    const std::span<const CPoint> drawn = points.first(points.size() - 1);
    for (std::size_t first = 0, next = 0; first < drawn.size(); first = next) {
        while (next < drawn.size() && drawn[next].x == drawn[first].x)
            ++next;
        addColumn(drawn.subspan(first, next - first), path);
    }
    path.push_back(points.back());
    if (path.size() == 1) path.push_back(path.front());
    return path;
}

std::vector<CRect> pixelRuns(std::span<const CPoint> path, const CRect& seen) {
    std::vector<CRect> runs;
    for (std::size_t i = 1; i < path.size(); ++i)
        addRuns(path[i - 1], path[i], seen, runs);
    return runs;
}

CPoint withinReach(CPoint point) {
    constexpr int kReach = 1 << 22;
    return {std::clamp(point.x, -kReach, kReach), std::clamp(point.y, -kReach, kReach)};
}

} // namespace framework
