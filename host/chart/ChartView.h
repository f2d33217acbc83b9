#pragma once

#include "host/chart/ChartRange.h"

#include <algorithm>
#include <cmath>

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
/// Whether a pixel lies in the plot or on its edge.
inline bool isInside(const ChartView& view, const ChartPixel& pixel) {
    constexpr double kTolerance = 0.01;
    return pixel.x >= view.left - kTolerance && pixel.x <= view.left + view.width + kTolerance &&
           pixel.y >= view.top - kTolerance && pixel.y <= view.top + view.height + kTolerance;
}

/// Pixels from values, with the logarithms of the ranges taken once.
class ChartScale {
  public:
    explicit ChartScale(const ChartView& view);

    ChartPixel operator()(double x, double y) const { return {x_(x), y_(y)}; }
    double x(double value) const { return x_(value); }
    bool takes(double x, double y) const { return isDrawable(x, x_.log) && isDrawable(y, y_.log); }

  private:
    struct Axis {
        Axis(const ChartRange& range, bool isLog, double from, double length);
        double operator()(double value) const {
            constexpr double kFarPixel = 1e15; // stands for infinity
            // The edge of a bar may lie where a logarithmic axis never comes.
            const double place = !log ? value : value > 0.0 ? std::log10(value) : -kLargestChartValue;
            return std::clamp(start + (place - lower) * perUnit, -kFarPixel, kFarPixel);
        }

        bool log;
        double lower;
        double perUnit;
        double start;
    };
    Axis x_;
    Axis y_;
};

} // namespace tqx::frx
