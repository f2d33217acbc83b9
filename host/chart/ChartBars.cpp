#include "host/chart/ChartBars.h"

#include "host/chart/ChartPoints.h"

#include <unordered_map>

namespace tqx::frx {
namespace {

/// The positions of the bars to be drawn: of many, the highest and the lowest of each column of pixels.
std::vector<std::size_t> barPoints(const ChartSeries& series, const ChartView& view) {
    const ChartScale scale(view);
    std::vector<std::size_t> points;
    std::unordered_map<double, std::size_t> highest, lowest;
    const bool many = series.y.size() > kManyPoints;
    const auto keep = [](auto& best, double column, std::size_t i, auto isBetter) {
        const auto [at, isNew] = best.try_emplace(column, i);
        if (!isNew && isBetter(at->second)) at->second = i;
    };
    for (std::size_t i = 0; i < series.y.size(); ++i) {
        const double y = series.y[i];
        if (!scale.takes(series.x[i], y)) continue;
        if (!many) {
            points.push_back(i);
            continue;
        }
        const double column = std::floor(scale.x(series.x[i]));
        keep(highest, column, i, [&](std::size_t other) { return y > series.y[other]; });
        keep(lowest, column, i, [&](std::size_t other) { return y < series.y[other]; });
    }
    for (const auto* best : {&highest, &lowest})
        for (const auto& [column, point] : *best)
            points.push_back(point);
    if (many) {
        std::ranges::sort(points);
        points.erase(std::ranges::unique(points).begin(), points.end());
    }
    return points;
}

} // namespace

std::vector<ChartBar> chartBars(const ChartState& state, const ChartView& view) {
    const bool stacked = state.arrangement == ChartBars::Stacked;
    const bool hasZero = !view.logY && (stacked || state.fromZero);
    const double ground = hasZero ? 0.0 : view.y.lower;
    const double place = barPlaceWidth(state);
    const double width = place / (stacked ? 1.0 : static_cast<double>(state.series.size()));
    std::unordered_map<double, double> above, below; // ends of the stacks, by place
    std::vector<ChartBar> bars;
    for (std::size_t s = 0; s < state.series.size(); ++s) {
        const ChartSeries& series = state.series[s];
        const double offset = (stacked ? 0.0 : static_cast<double>(s) * width) - 0.5 * place;
        for (const std::size_t point : barPoints(series, view)) {
            const double left = series.x[point] + offset, value = series.y[point];
            ChartBar& bar = bars.emplace_back(ChartBar{s, point, left, left + width, ground, value});
            if (!stacked) continue;
            const auto [end, isFirst] = (value < 0.0 ? below : above).try_emplace(series.x[point], 0.0);
            if (!isFirst) bar.base = end->second;
            bar.top = end->second += value;
        }
    }
    return bars;
}

ChartBox boxOf(const ChartView& view, const ChartBar& bar) {
    const auto near = [](double pixel) { return std::clamp(pixel, -1e4, 1e5); };
    const ChartPixel base = pixelOf(view, bar.left, bar.base), top = pixelOf(view, bar.right, bar.top);
    const double left = near(base.x);
    return {left, near(std::min(base.y, top.y)), std::max(left + 1.0, near(top.x)),
            near(std::max(base.y, top.y))};
}

} // namespace tqx::frx
