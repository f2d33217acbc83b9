#pragma once

#include "host/chart/ChartView.h"

#include <functional>
#include <string>

namespace tqx::frx {

/// A value as an axis writes it: its category, or a number in the axis' format.
VEXA_API std::wstring axisText(const ChartState& state, int axis, double value);

/// Empties labels that would touch their neighbours on an axis of so many pixels.
void thinLabels(ChartTicks& ticks, bool across, double pixels, double lineHeight);

/// How far the labels of the x axis reach beyond a picture of so many pixels, beside its left and right end;
/// 0 where making room would take more than half of the plot. `widthOf` measures a label in pixels.
struct ChartOverhang {
    double left;
    double right;
};
VEXA_API ChartOverhang overhangOf(const ChartTicks& ticks, const ChartView& view, double width,
                                  const std::function<double(const std::wstring&)>& widthOf);

/// A text cut to so many pixels, with "..." at its end where it was.
VEXA_API std::wstring shortenedText(const std::wstring& text, double pixels, double textPixels);
/// Pixels that a text takes at a size of so many pixels to the em.
double chartTextWidth(const std::wstring& text, double textPixels);

/// Texts of a chart that are not the program's own. Arguments in the order that is said.
struct ChartTexts {
    std::wstring summary = L"%s: %d points, minimum %s, maximum %s"; ///< name, points, two numbers
    std::wstring more = L"... and %d more";
};

/// A line for a series: its points that can be drawn, and the extremes of their ordinates.
VEXA_API std::wstring summaryLine(const ChartState& state, std::size_t series, const ChartTexts& texts);

/// The most series that a legend or a summary lists.
inline constexpr std::size_t kMostListedSeries = 20;
/// How many series a list of so many lines names; where that is not all, its last line says how many more
/// there are.
VEXA_API std::size_t listedSeries(const ChartState& state, double lines);
VEXA_API std::wstring moreSeries(const ChartState& state, std::size_t listed, const ChartTexts& texts);

} // namespace tqx::frx
