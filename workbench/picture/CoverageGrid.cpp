#include "workbench/picture/CoverageGrid.h"

#include <algorithm>
#include <cmath>

namespace workbench {
namespace {

double edgeSide(const Pixel& a, const Pixel& b, double x, double y) {
    return (b[0] - a[0]) * (y - a[1]) - (b[1] - a[1]) * (x - a[0]);
}

} // namespace

CoverageGrid::CoverageGrid(int width, int height, double cellSize)
    : cellSize_(cellSize)
    , columns_(static_cast<int>(width / cellSize) + 1)
    , rows_(static_cast<int>(height / cellSize) + 1)
    , taken_(static_cast<std::size_t>(columns_) * rows_, 0) {}

CoverageGrid::CellRange CoverageGrid::cellsOf(const PixelBox& box) const {
    const auto cell = [this](double at, int count) {
        return static_cast<int>(std::clamp(std::floor(at / cellSize_), 0.0, count - 1.0));
    };
    return {cell(box.left, columns_), cell(box.bottom, rows_), cell(box.right, columns_),
            cell(box.top, rows_)};
}

void CoverageGrid::takeBox(const PixelBox& box) {
    const CellRange cells = cellsOf(box);
    for (int y = cells.bottom; y <= cells.top; ++y)
        for (int x = cells.left; x <= cells.right; ++x)
            taken_[static_cast<std::size_t>(y) * columns_ + x] = 1;
}

void CoverageGrid::takeTriangle(const std::array<Pixel, 3>& corners) {
    const auto [left, right] = std::minmax({corners[0][0], corners[1][0], corners[2][0]});
    const auto [bottom, top] = std::minmax({corners[0][1], corners[1][1], corners[2][1]});
    const CellRange cells = cellsOf({left, bottom, right, top});
    const bool small = cells.left == cells.right && cells.bottom == cells.top;
    for (int y = cells.bottom; y <= cells.top; ++y)
        for (int x = cells.left; x <= cells.right; ++x) {
            const double cx = (x + 0.5) * cellSize_, cy = (y + 0.5) * cellSize_;
            const double a = edgeSide(corners[0], corners[1], cx, cy);
            const double b = edgeSide(corners[1], corners[2], cx, cy);
            const double c = edgeSide(corners[2], corners[0], cx, cy);
            const bool inside = (a >= 0 && b >= 0 && c >= 0) || (a <= 0 && b <= 0 && c <= 0);
            if (small || inside) taken_[static_cast<std::size_t>(y) * columns_ + x] = 1;
        }
}

std::size_t CoverageGrid::takenIn(const PixelBox& box) const {
    const CellRange cells = cellsOf(box);
    std::size_t count = 0;
    for (int y = cells.bottom; y <= cells.top; ++y)
        for (int x = cells.left; x <= cells.right; ++x)
            count += taken_[static_cast<std::size_t>(y) * columns_ + x] != 0;
    return count;
}

} // namespace workbench
