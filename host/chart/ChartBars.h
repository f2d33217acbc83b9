#pragma once

#include "host/chart/ChartView.h"

#include <vector>

namespace tqx::frx {

/// A bar in values of the axes.
struct ChartBar {
    std::size_t series;
    std::size_t point;
    double left;
    double right;
    double base; ///< where it stands
    double top;  ///< where it ends, which may be below
};
/// The bars to be drawn, series by series; of many, the highest and the lowest of each column of pixels.
/// Stacks stand on zero, as all bars on a linear axis unless they are to stand on the end of the range.
VEXA_API std::vector<ChartBar> chartBars(const ChartState& state, const ChartView& view);

/// In pixels, at least one wide, and not far beyond any picture.
struct ChartBox {
    double left;
    double top;
    double right;
    double bottom;
};
VEXA_API ChartBox boxOf(const ChartView& view, const ChartBar& bar);

} // namespace tqx::frx
