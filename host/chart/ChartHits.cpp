#include "host/chart/ChartHits.h"

#include "host/chart/ChartBars.h"
#include "host/chart/ChartLabels.h"

namespace tqx::frx {
namespace {

std::optional<ChartHit> barAt(const ChartState& state, const ChartView& view, double x, double y) {
    std::optional<ChartHit> found;
    if (!isInside(view, {x, y})) return found;
    for (const ChartBar& bar : chartBars(state, view)) {
        const ChartBox box = boxOf(view, bar);
        if (x < box.left || x > box.right || y < box.top || y > box.bottom) continue;
        const double end = bar.top < bar.base ? box.bottom : box.top;
        found = {bar.series,
                 bar.point,
                 {(box.left + box.right) / 2.0, std::clamp(end, view.top, view.top + view.height)}};
    }
    return found;
}

std::optional<ChartHit> nearestPoint(const ChartState& state, const ChartView& view, double x, double y,
                                     double reach) {
    const ChartScale scale(view);
    std::optional<ChartHit> nearest;
    double least = reach * reach;
    for (std::size_t s = 0; s < state.series.size(); ++s) {
        const ChartSeries& series = state.series[s];
        for (std::size_t i = 0; i < series.y.size(); ++i) {
            if (!scale.takes(series.x[i], series.y[i])) continue;
            const ChartPixel at = scale(series.x[i], series.y[i]);
            if (!isInside(view, at)) continue;
            const double distance = (at.x - x) * (at.x - x) + (at.y - y) * (at.y - y);
            if (distance < least || (!nearest && distance <= least)) {
                least = distance;
                nearest = ChartHit{s, i, at};
            }
        }
    }
    return nearest;
}

} // namespace

std::optional<ChartHit> hitAt(const ChartState& state, const ChartView& view, double x, double y,
                              double reach) {
    return state.form == ChartForm::Bars ? barAt(state, view, x, y) : nearestPoint(state, view, x, y, reach);
}

std::wstring hitText(const ChartState& state, std::size_t series, std::size_t point) {
    const ChartSeries& own = state.series[series];
    return nameOf(state, series) + L": " + axisText(state, ChartAxis::X, own.x[point]) + L", " +
           axisText(state, ChartAxis::Y, own.y[point]);
}

} // namespace tqx::frx
