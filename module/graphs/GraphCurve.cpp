#include "module/graphs/GraphCurve.h"

#include <algorithm>
#include <array>

namespace graphs {
namespace {

/// Points that are handed over at a time: few, so that the processor fetches the next while it copies these.
constexpr std::size_t kPiece = 128;

} // namespace

void drawCurve(CDC& dc, const CArray<T_GRPH_D, T_GRPH_D&>& points, int segments,
               const PixelMapping& mapping) {
    if (segments < 1) return;
    const T_GRPH_D& first = points.GetAt(0);
    const std::size_t wanted = static_cast<std::size_t>(segments) + 1;
    const std::size_t count = std::min(wanted, points.GetSize());
    dc.ExpectPoints(count);
    dc.MoveTo(mapping.at(first.x, first.y));
    std::array<CPoint, kPiece> piece;
    for (std::size_t done = 1; done < count;) {
        const std::size_t size = std::min(kPiece, count - done);
        std::transform(points.GetData() + done, points.GetData() + done + size, piece.begin(),
                       [&](const T_GRPH_D& point) { return mapping.at(point.x, point.y); });
        dc.PolylineTo(piece.data(), static_cast<int>(size));
        done += size;
    }
    if (count < wanted) points.GetAt(count);
}

void drawDots(CDC& dc, const CArray<T_GRPH_D, T_GRPH_D&>& points, int radius, COLORREF color,
              const PixelMapping& mapping) {
    CBrush brush(color);
    CBrush* before = dc.SelectObject(&brush);
    for (const auto& point : points) {
        const CPoint centre = mapping.at(point.x, point.y);
        dc.Ellipse(wrappedSum(centre.x, -radius), wrappedSum(centre.y, -radius), wrappedSum(centre.x, radius),
                   wrappedSum(centre.y, radius));
    }
    dc.SelectObject(before);
}

} // namespace graphs
