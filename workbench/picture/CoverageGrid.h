#pragma once

#include "workbench/picture/ViewCamera.h"

#include <vector>

namespace workbench {

/// Which parts of a picture are taken, in square cells.
class CoverageGrid {
  public:
    CoverageGrid(int width, int height, double cellSize);

    void takeBox(const PixelBox& box);
    void takeTriangle(const std::array<Pixel, 3>& corners);

    /// Number of taken cells that the box touches.
    std::size_t takenIn(const PixelBox& box) const;

  private:
    struct CellRange {
        int left, bottom, right, top; ///< inclusive
    };
    CellRange cellsOf(const PixelBox& box) const;

    double cellSize_;
    int columns_;
    int rows_;
    std::vector<char> taken_;
};

} // namespace workbench
