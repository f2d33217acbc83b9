#pragma once

#include "framework/Export.h"
#include "host/chart/ChartState.h"

#include <string>

namespace tqx::frx {

/// The data of a chart as CSV (UTF-8, LF): a heading, then series, abscissa or label, and ordinate of every
/// point in the shortest digits that read back as the same value. Values that are not finite are empty.
VEXA_API std::string chartTable(const ChartState& state);

} // namespace tqx::frx
