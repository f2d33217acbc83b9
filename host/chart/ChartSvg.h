#pragma once

#include "host/chart/ChartLabels.h"

#include <string>

namespace tqx::frx {

/// The chart as an SVG picture of so many pixels (UTF-8, LF), the same bytes on every platform. What its user
/// could do stands on the root element: zoomAndPan, data-zoom-axes, data-menu. Tool tips are the titles of
/// points, where there are not too many.
VEXA_API std::string chartSvg(const ChartState& state, int width, int height, const ChartTexts& texts = {});

} // namespace tqx::frx
