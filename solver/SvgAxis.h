#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace solver {

/// An axis with round ticks. All that it says is in units of 10 to the power of `exponent`, so that neither
/// huge nor tiny values make long labels.
struct SvgAxis {
    int exponent = 0;          ///< a multiple of 3; 0 for everyday numbers
    double step = 1;           ///< 1, 2 or 5 times a power of ten
    std::vector<double> ticks; ///< ascending, `step` apart; the ends of the axis are the first and the last

    /// Where a value lies: 0 at the first tick, 1 at the last.
    double fraction(double value) const;
    /// The gap between two ticks in which a value lies, from 0; a value on a tick belongs to the gap above
    /// it, on the last one to that below.
    std::size_t gap(double value) const;
    std::string label(std::size_t tick) const;
    /// "quantity", with the power of ten when there is one.
    std::string title(const std::string& quantity) const;
    /// Pixels of the widest label.
    double labelWidth(double size) const;
};

/// The axis that holds `low` .. `high` (finite, in this order) with at most `most` gaps (2 or more) between
/// its ticks. A range too small to tell from its values is widened.
SvgAxis makeAxis(double low, double high, std::size_t most);

} // namespace solver
