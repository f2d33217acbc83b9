#include "module/graphs/GraphMapping.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace graphs {
namespace {

constexpr double kSameX = 1e-13;

/// Half of the sum of two edges, cut towards zero.
int halfOf(int a, int b) {
    return static_cast<int>((std::int64_t{a} + b) / 2);
}

/// In 64 bits: the edges of a rectangle may lie further apart than 32 bits hold.
double extent(int from, int to) {
    return static_cast<double>(std::int64_t{to} - from);
}

} // namespace

void setEmptyRange(double range[2]) {
    range[0] = std::numeric_limits<double>::max();
    range[1] = -std::numeric_limits<double>::max();
}

void widenRanges(std::span<const T_GRPH_D> points, double xRange[2], double yRange[2]) {
    // Of its own, so that the ends stay in registers.
    T_GRPH_D low{xRange[0], yRange[0]}, high{xRange[1], yRange[1]};
    for (const T_GRPH_D& point : points) {
        low.x = point.x > low.x ? low.x : point.x;
        high.x = high.x > point.x ? high.x : point.x;
        low.y = point.y > low.y ? low.y : point.y;
        high.y = high.y > point.y ? high.y : point.y;
    }
    xRange[0] = low.x;
    xRange[1] = high.x;
    yRange[0] = low.y;
    yRange[1] = high.y;
}

void makeSymmetric(double range[2]) {
    const double size = std::max(std::abs(range[0]), std::abs(range[1]));
    range[0] = -size;
    range[1] = size;
}

PixelMapping::PixelMapping(const CRect& rect, const double xRange[2], const double yRange[2])
    : valid_(std::abs(xRange[0] - xRange[1]) != 0)
    , middleX_((xRange[0] + xRange[1]) * 0.5)
    , middleY_((yRange[0] + yRange[1]) * 0.5)
    , scaleX_(extent(rect.left, rect.right) / std::abs(xRange[0] - xRange[1]))
    , scaleY_(extent(rect.top, rect.bottom) / std::abs(yRange[0] - yRange[1]))
    , centreX_(halfOf(rect.left, rect.right))
    , centreY_(halfOf(rect.top, rect.bottom)) {}

std::optional<T_GRPH_D> valueAt(CPoint pixel, const CRect& rect, const double xRange[2],
                                const double yRange[2]) {
    const double dx = std::abs(xRange[0] - xRange[1]);
    const double dy = std::abs(yRange[0] - yRange[1]);
    if (dx == 0) return {};
    const double centreX = (static_cast<double>(rect.left) + rect.right) * 0.5;
    const double centreY = (static_cast<double>(rect.top) + rect.bottom) * 0.5;
    return T_GRPH_D{
        (pixel.x - centreX) * (dx / extent(rect.left, rect.right)) + (xRange[0] + xRange[1]) * 0.5,
        -(pixel.y - centreY) * (dy / extent(rect.top, rect.bottom)) + (yRange[0] + yRange[1]) * 0.5};
}

std::optional<int> nearestPoint(std::span<const T_GRPH_D> points, double x) {
    const int count = static_cast<int>(points.size());
    const auto at = [&](int i) { return points[static_cast<std::size_t>(i)].x; };
    const auto distance = [&](int i) { return std::abs(at(i) - x); };
    if (count == 0) return {};
    if (count == 1) return 0;
    if (count == 2) return distance(1) > distance(0) ? 0 : 1;
    if (at(0) >= x) return 0;
    if (x >= at(count - 1)) return count - 1;
    int low = 0, high = count - 1, probe = 0;
    // The first lies below x. That the last lies above it is so only where the points ascend.
    do {
        probe = (low + high) / 2;
        if (distance(probe) < kSameX) return probe;
        if (at(probe) > x) {
            high = probe - 1;
            if (x >= at(probe - 1)) return distance(probe - 1) > distance(probe) ? probe : probe - 1;
        } else {
            low = probe + 1;
            if (probe + 1 < count && at(probe + 1) >= x)
                return distance(probe + 1) > distance(probe) ? probe : probe + 1;
        }
    } while (high >= low);
    return probe;
}

int segmentsUntil(std::span<const T_GRPH_D> points, double time, int segments) {
    const int most = std::min(segments, static_cast<int>(points.size()) - 1);
    int shown = 0;
    while (shown < most && points[static_cast<std::size_t>(shown)].x <= time)
        ++shown;
    return shown;
}

int segmentsOfStep(int step, int segments) {
    return step < 0 ? 0 : step < segments ? step + 1 : std::max(segments, 0);
}

} // namespace graphs
