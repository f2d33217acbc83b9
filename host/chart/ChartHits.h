#pragma once

#include "host/chart/ChartView.h"

#include <optional>

namespace tqx::frx {

/// What is under the mouse.
struct ChartHit {
    std::size_t series;
    std::size_t point;
    ChartPixel at; ///< the point, or the middle of the end of its bar
};
/// The bar at a pixel, of several the last one; of lines the drawable point in the plot that is nearest and
/// not further than `reach`, of equal ones the first.
VEXA_API std::optional<ChartHit> hitAt(const ChartState& state, const ChartView& view, double x, double y,
                                       double reach);
/// Name of the series and both values, for a tool tip.
VEXA_API std::wstring hitText(const ChartState& state, std::size_t series, std::size_t point);

} // namespace tqx::frx
