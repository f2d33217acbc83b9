#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace solver {

struct HistoryPlot {
    std::string title;
    std::string subtitle;
    std::string abscissa;              ///< "time" or "step"
    std::string ordinate;              ///< what the values are
    std::span<const double> positions; ///< ascending, one for each value
    std::span<const double> values;    ///< finite, at least one
};

/// A line over the load with its turning points marked, as SVG. Long histories keep their outline: of the
/// values that share a column of pixels only the first, smallest, largest and last are drawn, and beyond
/// some hundred turning points only the two extremes are marked.
std::string historyPicture(const HistoryPlot& plot);

/// Positions in `values` where the history starts, turns and ends; of equal values in a row the first.
/// Empty when nothing changes.
std::vector<std::size_t> turningPoints(std::span<const double> values);

} // namespace solver
