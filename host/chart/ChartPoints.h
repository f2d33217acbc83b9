#pragma once

#include "host/chart/ChartRange.h"

#include <optional>
#include <vector>

namespace tqx::frx {

/// Where a plot stands in a picture, in pixels, y down, and what it shows.
struct ChartView {
    double left = 0.0;
    double top = 0.0;
    double width = 0.0;
    double height = 0.0;
    ChartRange x;
    ChartRange y;
    bool logX = false;
    bool logY = false;
};
/// The ranges of a chart in a rectangle.
VEXA_API ChartView chartView(const ChartState& state, double left, double top, double width, double height);

/// A point in pixels of the picture; finite, for drawable values.
struct ChartPixel {
    double x;
    double y;
};
VEXA_API ChartPixel pixelOf(const ChartView& view, double x, double y);

/// The positions of the points that a line needs to look as with all of them: of every run of points in one
/// column of pixels the first, the extremes and the last. Points that cannot be drawn stand as kChartBreak.
inline constexpr std::size_t kChartBreak = static_cast<std::size_t>(-1);
VEXA_API std::vector<std::size_t> linePoints(const ChartSeries& series, const ChartView& view);
/// The positions of the points in the plot whose markers are to be drawn: of many, one in every cell of so
/// many pixels.
VEXA_API std::vector<std::size_t> markerPoints(const ChartSeries& series, const ChartView& view, double cell);
/// The positions of the bars to be drawn: of many, the highest and the lowest of each column of pixels.
VEXA_API std::vector<std::size_t> barPoints(const ChartSeries& series, const ChartView& view);

struct ChartHit {
    std::size_t series;
    std::size_t point;
};
/// The drawable point in the plot that is nearest to a pixel and not further than `reach`; of equal ones the
/// first.
VEXA_API std::optional<ChartHit> nearestPoint(const ChartState& state, const ChartView& view, double x,
                                              double y, double reach);
/// Name of the series and both values, for a tool tip.
VEXA_API std::wstring hitText(const ChartState& state, const ChartHit& hit);

} // namespace tqx::frx
