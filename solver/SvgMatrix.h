#pragma once

#include <span>
#include <string>

namespace solver {

/// Counted cycles as a rainflow matrix shows them.
struct MatrixEntry {
    double amplitude = 0;
    double mean = 0;
    double count = 0;
    double damage = 0;
};

struct MatrixPlot {
    std::string title;
    std::string subtitle;
    std::string quantity; ///< what amplitude and mean are of
    std::span<const MatrixEntry> entries;
};

/// Counts in bins of mean (across) and amplitude (upwards), as SVG; the colour of a bin is its share of the
/// damage.
std::string matrixPicture(const MatrixPlot& plot);

} // namespace solver
