#pragma once

#include "base/Result.h"
#include "workbench/picture/ContourPicture.h"

#include <span>
#include <string>
#include <vector>

namespace workbench {

/// Smallest and largest finite value, those that a logarithmic scale can show, and how many there are.
struct ValueExtent {
    double low = 0.0;
    double high = 0.0;
    double lowPositive = 0.0; ///< 0 when no value is positive
    std::size_t finiteCount = 0;
};
ValueExtent extentOf(std::span<const float> values);

/// The scale bar: its round values, ascending, the first and last being its ends.
class ScaleLevels {
  public:
    /// Fails when the range is empty or not finite, or when a logarithmic scale meets no positive value.
    static Result<ScaleLevels> make(const ValueExtent& extent, ValueScale scale,
                                    const std::optional<ValueRange>& range);

    const std::vector<double>& values() const { return values_; }
    std::size_t bandCount() const { return values_.size() - 1; }
    ValueScale scale() const { return scale_; }
    bool isGiven() const { return given_; } ///< by a range, so that values may lie outside
    double low() const { return values_.front(); }
    double high() const { return values_.back(); }

    /// Where a value lies: 0 at the low end, 1 at the high one, also beyond them. NaN stays NaN. What has no
    /// place (infinite; not positive on a logarithmic scale) lies at the nearer end, or one length of the bar
    /// beyond it when the range was given.
    double positionOf(double value) const;

    /// The band of a position; those beyond the ends belong to the outermost bands.
    std::size_t bandOf(double position) const;

    /// One text a value, with the fewest digits that tell them apart.
    std::vector<std::string> labels() const;

  private:
    ScaleLevels(std::vector<double> values, ValueScale scale, bool given);

    std::vector<double> values_;
    std::vector<double> positions_;
    ValueScale scale_;
    bool given_;
    double origin_ = 0.0; ///< the low end and the length of the bar, in logarithms where the scale is one
    double length_ = 1.0;
};

/// A value in four significant digits.
std::string shortNumber(double value);

} // namespace workbench
