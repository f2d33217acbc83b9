#include "host/chart/ChartPoints.h"

#include "host/chart/ChartLabels.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <unordered_set>

namespace tqx::frx {
namespace {

/// Below it every point is drawn.
constexpr std::size_t kManyPoints = 2000;
/// Pixels that stand for infinity.
constexpr double kFarPixel = 1e15;

/// A pixel from a value, with the logarithms of the range taken once.
class Scale {
  public:
    Scale(const ChartRange& range, bool log, double start, double length)
        : log_(log)
        , lower_(log ? std::log10(range.lower) : range.lower)
        , perUnit_(length / ((log ? std::log10(range.upper) : range.upper) - lower_))
        , start_(start) {}

    double operator()(double value) const {
        // The edge of a bar may lie where a logarithmic axis never comes.
        const double place = !log_ ? value : value > 0.0 ? std::log10(value) : -kLargestChartValue;
        const double pixel = start_ + (place - lower_) * perUnit_;
        return std::clamp(pixel, -kFarPixel, kFarPixel);
    }
    bool takes(double value) const { return isDrawable(value, log_); }

  private:
    bool log_;
    double lower_;
    double perUnit_;
    double start_;
};

Scale scaleX(const ChartView& view) {
    return {view.x, view.logX, view.left, view.width};
}
Scale scaleY(const ChartView& view) {
    return {view.y, view.logY, view.top + view.height, -view.height};
}

bool isInside(const ChartView& view, double x, double y) {
    constexpr double kTolerance = 0.01;
    return x >= view.left - kTolerance && x <= view.left + view.width + kTolerance &&
           y >= view.top - kTolerance && y <= view.top + view.height + kTolerance;
}

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

ChartView chartView(const ChartState& state, double left, double top, double width, double height) {
    return {left,
            top,
            std::max(0.0, width), // a window may have no room for a plot
            std::max(0.0, height),
            shownRange(state, ChartAxis::X),
            shownRange(state, ChartAxis::Y),
            isLog(state, ChartAxis::X),
            isLog(state, ChartAxis::Y)};
}

ChartPixel pixelOf(const ChartView& view, double x, double y) {
    return {scaleX(view)(x), scaleY(view)(y)};
}

std::vector<std::size_t> linePoints(const ChartSeries& series, const ChartView& view) {
    const Scale toX = scaleX(view), toY = scaleY(view);
    std::vector<std::size_t> points;
    Run run;
    for (std::size_t i = 0; i < series.y.size(); ++i) {
        const double x = series.x[i], y = series.y[i];
        if (!toX.takes(x) || !toY.takes(y)) {
            finish(run, points);
            if (!points.empty() && points.back() != kChartBreak) points.push_back(kChartBreak);
            continue;
        }
        // What lies beside the plot is one column.
        const int column = static_cast<int>(std::clamp(toX(x) - view.left + 1.0, 0.0, view.width + 2.0));
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
    const Scale toX = scaleX(view), toY = scaleY(view);
    const bool many = series.y.size() > kManyPoints;
    const double side = std::max(cell, 1.0);
    std::unordered_set<std::uint64_t> taken;
    std::vector<std::size_t> points;
    for (std::size_t i = 0; i < series.y.size(); ++i) {
        if (!toX.takes(series.x[i]) || !toY.takes(series.y[i])) continue;
        const double x = toX(series.x[i]), y = toY(series.y[i]);
        if (!isInside(view, x, y)) continue;
        if (many) {
            const auto column = static_cast<std::uint32_t>((x - view.left + 1.0) / side);
            const auto row = static_cast<std::uint32_t>((y - view.top + 1.0) / side);
            if (!taken.insert(std::uint64_t{column} << 32 | row).second) continue;
        }
        points.push_back(i);
    }
    return points;
}

std::vector<std::size_t> barPoints(const ChartSeries& series, const ChartView& view) {
    const Scale toX = scaleX(view), toY = scaleY(view);
    std::vector<std::size_t> points;
    std::unordered_map<double, std::size_t> highest, lowest;
    const bool many = series.y.size() > kManyPoints;
    const auto keep = [](auto& best, double column, std::size_t i, auto isBetter) {
        const auto [at, isNew] = best.try_emplace(column, i);
        if (!isNew && isBetter(at->second)) at->second = i;
    };
    for (std::size_t i = 0; i < series.y.size(); ++i) {
        const double y = series.y[i];
        if (!toX.takes(series.x[i]) || !toY.takes(y)) continue;
        if (!many) {
            points.push_back(i);
            continue;
        }
        const double column = std::floor(toX(series.x[i]));
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

std::optional<ChartHit> nearestPoint(const ChartState& state, const ChartView& view, double x, double y,
                                     double reach) {
    const Scale toX = scaleX(view), toY = scaleY(view);
    std::optional<ChartHit> nearest;
    double least = reach * reach;
    for (std::size_t s = 0; s < state.series.size(); ++s) {
        const ChartSeries& series = state.series[s];
        for (std::size_t i = 0; i < series.y.size(); ++i) {
            if (!toX.takes(series.x[i]) || !toY.takes(series.y[i])) continue;
            const double px = toX(series.x[i]), py = toY(series.y[i]);
            if (!isInside(view, px, py)) continue;
            const double distance = (px - x) * (px - x) + (py - y) * (py - y);
            if (distance < least || (!nearest && distance <= least)) {
                least = distance;
                nearest = ChartHit{s, i};
            }
        }
    }
    return nearest;
}

std::wstring hitText(const ChartState& state, const ChartHit& hit) {
    const ChartSeries& series = state.series[hit.series];
    return nameOf(state, hit.series) + L": " + axisText(state, ChartAxis::X, series.x[hit.point]) + L", " +
           axisText(state, ChartAxis::Y, series.y[hit.point]);
}

} // namespace tqx::frx
