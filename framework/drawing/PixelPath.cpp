#include "framework/drawing/PixelPath.h"

#include <algorithm>

namespace framework {

std::vector<CPoint> pixelPath(std::span<const CPoint> points) {
    std::vector<CPoint> path;
    const CPoint* next = points.data();
    const CPoint* const end = next + points.size();
    while (next != end) {
        const CPoint first = *next;
        int low = first.y, high = first.y;
        const CPoint* at = next + 1;
        for (; at != end && at->x == first.x; ++at) {
            low = std::min(low, at->y);
            high = std::max(high, at->y);
        }
        const CPoint last = at[-1];
        path.push_back(first);
        if (low < std::min(first.y, last.y)) path.push_back({first.x, low});
        if (high > std::max(first.y, last.y)) path.push_back({first.x, high});
        if (last.y != path.back().y) path.push_back(last);
        next = at;
    }
    if (path.size() == 1) path.push_back(path.front());
    return path;
}

void leaveOutLastPixel(std::vector<CPoint>& path) {
    if (path.size() < 2) return;
    const auto shift = [](CPoint from, CPoint to) {
        return CPoint(from.y == to.y && to.x < from.x, from.x == to.x && to.y < from.y);
    };
    const CPoint first = shift(path[0], path[1]), last = shift(path[path.size() - 2], path.back());
    path.front() = path.front() + first;
    path.back() = path.back() + last;
}

} // namespace framework
