#pragma once

#include "host/chart/ChartView.h"

#include <vector>

namespace tqx::frx {

/// Of fewer points every one is drawn.
inline constexpr std::size_t kManyPoints = 2000;

/// The positions of the points that a line needs to look as with all of them: of every run of points in one
/// column of pixels the first, the extremes and the last. Points that cannot be drawn stand as kChartBreak.
inline constexpr std::size_t kChartBreak = static_cast<std::size_t>(-1);
VEXA_API std::vector<std::size_t> linePoints(const ChartSeries& series, const ChartView& view);
/// The positions of the points in the plot whose markers are to be drawn: of many, one in every cell of so
/// many pixels.
VEXA_API std::vector<std::size_t> markerPoints(const ChartSeries& series, const ChartView& view, double cell);

} // namespace tqx::frx
