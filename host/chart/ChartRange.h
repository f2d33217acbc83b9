#pragma once

#include "framework/Export.h"
#include "host/chart/ChartState.h"

namespace tqx::frx {

/// Values of a larger magnitude are not drawn, so that differences of values stay finite.
inline constexpr double kLargestChartValue = 1e200;

/// Finite, not beyond kLargestChartValue, and on a logarithmic axis not below its inverse.
VEXA_API bool isDrawable(double value, bool log);
/// Whether a chart can show it: both ends drawable and, at their magnitude, apart.
VEXA_API bool isShowable(const ChartRange& range, bool log);

/// The range that an axis shows: the user's, the program's, or the data's with round ends. A log axis passes
/// over ranges that it cannot show.
VEXA_API ChartRange shownRange(const ChartState& state, int axis);

/// The value at a position in a range, whose ends are at 0 and 1.
VEXA_API double valueAt(double fraction, const ChartRange& range, bool log);

/// Whether the x axis counts categories; it is linear then.
VEXA_API bool hasCategories(const ChartState& state);
VEXA_API bool isLog(const ChartState& state, int axis);

/// Width of the place that the bars of one x share, in units of x: 0.8 of the least distance of two places.
VEXA_API double barPlaceWidth(const ChartState& state);

/// Ticks of an axis in ascending order; labels go with the major ones.
struct ChartTicks {
    std::vector<double> major;
    std::vector<double> minor;
    std::vector<std::wstring> labels; ///< empty where there is no room for one
};
/// For an axis that is so many pixels long. `lineHeight` is the height of a line of labels.
VEXA_API ChartTicks chartTicks(const ChartState& state, int axis, const ChartRange& range, double pixels,
                               double lineHeight);
} // namespace tqx::frx
