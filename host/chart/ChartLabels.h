#pragma once

#include "host/chart/ChartRange.h"

#include <string>

namespace tqx::frx {

/// A value as an axis writes it: its category, or a number in the axis' format.
VEXA_API std::wstring axisText(const ChartState& state, int axis, double value);

/// Empties labels that would touch their neighbours on an axis of so many pixels.
void thinLabels(ChartTicks& ticks, bool across, double pixels, double lineHeight);

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

} // namespace tqx::frx
