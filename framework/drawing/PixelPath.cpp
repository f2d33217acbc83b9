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
    std::int64_t at = std::max<std::int64_t>(length > 0 ? begin : begin + length + 1, turned.left);
    const std::int64_t end = std::min<std::int64_t>(length > 0 ? begin + length : begin + 1, turned.right);
    if (at >= end) return;
    // `rest` tells how far the line lies above the upper half of the pixels at `across`, in parts of which a
    // pixel has `whole`: none, and less than a whole one below, as long as these pixels are the nearest.
    const double rises =
        static_cast<double>(at - begin) * static_cast<double>(rise) / static_cast<double>(length);
    const double nearest = std::ceil(rises - 0.5);
    const std::int64_t whole = 2 * std::abs(length), step = length > 0 ? 2 * rise : -2 * rise;
    std::int64_t across = beginAcross + static_cast<std::int64_t>(nearest);
    std::int64_t rest = std::llround((rises - nearest - 0.5) * static_cast<double>(whole));
    while (at < end) {
        if (rest > 0) {
            ++across;
            rest -= whole;
        } else if (rest <= -whole) {
            --across;
            rest += whole;
        }
        std::int64_t next = step == 0 ? end : at;
        for (; next < end && rest <= 0 && rest > -whole; ++next)
            rest += step;
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
    // The pixel at the end is drawn only where the line was there before, so the end stays what it is.
    std::span<const CPoint> drawn = points;
    while (!drawn.empty() && drawn.back() == points.back())
        drawn = drawn.first(drawn.size() - 1);
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
