#pragma once

#include "host/chart/ChartView.h"
#include "workbench/desktop/ChartPlot.h"

namespace workbench::desktop {

// What the plotting library draws of the series, the same as their SVG picture, thinned to the pixels of a
// view. The first plottable of each series has its name, for the legend; others have none.
void addLines(QCustomPlot& plot, const tqx::frx::ChartState& state, const tqx::frx::ChartView& view);
void addBars(QCustomPlot& plot, const tqx::frx::ChartState& state, const tqx::frx::ChartView& view);

/// Of texts in the plot, and how many pixels the em has.
inline constexpr int kChartText = 11;

} // namespace workbench::desktop
