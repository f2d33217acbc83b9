#include "host/chart/ChartView.h"

namespace tqx::frx {

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
    return ChartScale(view)(x, y);
}

ChartScale::ChartScale(const ChartView& view)
    : x_(view.x, view.logX, view.left, view.width)
    , y_(view.y, view.logY, view.top + view.height, -view.height) {}

ChartScale::Axis::Axis(const ChartRange& range, bool isLog, double from, double length)
    : log(isLog)
    , lower(isLog ? std::log10(range.lower) : range.lower)
    , perUnit(length / ((isLog ? std::log10(range.upper) : range.upper) - lower))
    , start(from) {}

} // namespace tqx::frx
