#include "host/chart/ChartPoints.h"

#include <unordered_set>

namespace tqx::frx {
namespace {

/// A run of points in one column of pixels.
struct Run {
    int column = 0; ///< from the left of the plot; rounded towards zero, which none is below
    std::size_t first = kChartBreak;
    std::size_t last = kChartBreak;
    std::size_t lowest = kChartBreak;
    std::size_t highest = kChartBreak;
};

void finish(Run& run, std::vector<std::size_t>& points) {
    if (run.first == kChartBreak) return;
    const auto [one, other] = std::minmax(run.lowest, run.highest);
    for (const std::size_t point : {run.first, one, other, run.last})
        if (points.empty() || points.back() != point) points.push_back(point);
    run.first = kChartBreak;
}

} // namespace

std::vector<std::size_t> linePoints(const ChartSeries& series, const ChartView& view) {
    const ChartScale scale(view);
    std::vector<std::size_t> points;
    Run run;
    for (std::size_t i = 0; i < series.y.size(); ++i) {
        const double x = series.x[i], y = series.y[i];
        if (!scale.takes(x, y)) {
            finish(run, points);
            if (!points.empty() && points.back() != kChartBreak) points.push_back(kChartBreak);
            continue;
        }
        // What lies beside the plot is one column.
        const int column = static_cast<int>(std::clamp(scale.x(x) - view.left + 1.0, 0.0, view.width + 2.0));
        if (run.first == kChartBreak || column != run.column) {
            finish(run, points);
            run = {column, i, i, i, i};
            continue;
        }
        run.last = i;
        if (y < series.y[run.lowest]) run.lowest = i;
        if (y > series.y[run.highest]) run.highest = i;
    }
    finish(run, points);
    if (!points.empty() && points.back() == kChartBreak) points.pop_back();
    return points;
}

std::vector<std::size_t> markerPoints(const ChartSeries& series, const ChartView& view, double cell) {
    const ChartScale scale(view);
    const bool many = series.y.size() > kManyPoints;
    const double side = std::max(cell, 1.0);
    std::unordered_set<std::uint64_t> taken;
    std::vector<std::size_t> points;
    for (std::size_t i = 0; i < series.y.size(); ++i) {
        if (!scale.takes(series.x[i], series.y[i])) continue;
        const ChartPixel at = scale(series.x[i], series.y[i]);
        if (!isInside(view, at)) continue;
        if (many) {
            const auto column = static_cast<std::uint32_t>((at.x - view.left + 1.0) / side);
            const auto row = static_cast<std::uint32_t>((at.y - view.top + 1.0) / side);
            if (!taken.insert(std::uint64_t{column} << 32 | row).second) continue;
        }
        points.push_back(i);
    }
    return points;
}

} // namespace tqx::frx
