#include "workbench/picture/ScaleLevels.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace workbench {
namespace {

/// Values closer together than this share of their size differ by the rounding of floats only.
constexpr double kSmallestRelativeSpan = 1e-6;
constexpr double kFewestBands = 7.5;

/// How close to a round number a value is taken for it: what rounding to floats leaves.
constexpr double kRoundness = 1e-6;

std::string printed(double value, std::chars_format format, int precision) {
    std::array<char, 400> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value, format, precision).ptr;
    return {text.data(), end};
}

double parsed(const std::string& text) {
    double value = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

/// The nearest double to mantissa x 10^exponent; repeated products would drift off the round number.
double decimal(double mantissa, int exponent) {
    return parsed(shortNumber(mantissa) + "e" + std::to_string(exponent));
}

int decadeBelow(double value) {
    return static_cast<int>(std::floor(std::log10(value) + kRoundness));
}
int decadeAbove(double value) {
    return static_cast<int>(std::ceil(std::log10(value) - kRoundness));
}

/// The largest of 1, 2, 2.5 and 5 times a power of ten that is not above `limit`.
double roundStep(double limit) {
    const int decade = decadeBelow(limit);
    for (const double mantissa : {5.0, 2.5, 2.0})
        if (decimal(mantissa, decade) <= limit * (1.0 + kRoundness)) return decimal(mantissa, decade);
    return decimal(1.0, decade);
}

/// Multiples of a round step, from the last one not above `low` to the first one not below `high`.
std::vector<double> roundValues(double low, double high) {
    const double step = roundStep((high - low) / kFewestBands);
    const double first = std::floor(low / step + kRoundness);
    const double last = std::ceil(high / step - kRoundness);
    std::vector<double> values;
    for (double i = first; i <= last; ++i)
        values.push_back(i == 0.0 ? 0.0 : i * step);
    return values;
}

/// Round values of a logarithmic scale around `low` to `high`, both positive.
std::vector<double> roundLogValues(double low, double high) {
    if (high < 4.0 * low) return roundValues(low, high);
    int first = decadeBelow(low);
    const int last = decadeAbove(high);
    const int decades = last - first;
    std::vector<double> values;
    if (decades > 3) {
        const int stride = static_cast<int>(std::ceil(decades / 15.0));
        first -= (stride - decades % stride) % stride;
        for (int d = first; d <= last; d += stride)
            values.push_back(decimal(1.0, d));
        return values;
    }
    for (int d = first; d <= last; ++d)
        for (const double mantissa : {1.0, 2.0, 5.0})
            values.push_back(decimal(mantissa, d));
    const auto begin = std::ranges::upper_bound(values, low * (1.0 + kRoundness)) - 1;
    const auto end = std::ranges::lower_bound(values, high * (1.0 - kRoundness)) + 1;
    return {begin, end};
}

/// The round values inside a given range, and its two ends. A round value that nearly meets an end yields.
std::vector<double> valuesWithin(const ValueRange& range, ValueScale scale) {
    const bool log = scale == ValueScale::Logarithmic;
    const auto rounded = log ? roundLogValues(range.low, range.high) : roundValues(range.low, range.high);
    const auto place = [log](double value) { return log ? std::log(value) : value; };
    const double room = 0.5 * (place(range.high) - place(range.low)) /
                        static_cast<double>(std::max<std::size_t>(rounded.size(), 2));
    std::vector<double> values{range.low};
    for (const double value : rounded)
        if (value > range.low && value < range.high && place(value) - place(range.low) > room &&
            place(range.high) - place(value) > room)
            values.push_back(value);
    values.push_back(range.high);
    return values;
}

/// As many digits as four significant ones need.
std::string shortScientific(double value) {
    constexpr int kMostDigits = 3;
    int digits = 0;
    const double wanted = parsed(printed(value, std::chars_format::scientific, kMostDigits));
    while (digits < kMostDigits && parsed(printed(value, std::chars_format::scientific, digits)) != wanted)
        ++digits;
    return printed(value, std::chars_format::scientific, digits);
}

/// True when the texts are the values to within a hundredth of their distance.
bool tellsApart(const std::vector<double>& values, std::chars_format format, int precision) {
    double gap = std::numeric_limits<double>::infinity();
    for (std::size_t i = 1; i < values.size(); ++i)
        gap = std::min(gap, values[i] - values[i - 1]);
    return std::ranges::all_of(values, [&](double value) {
        return std::abs(parsed(printed(value, format, precision)) - value) <= 0.01 * gap;
    });
}

} // namespace

std::string shortNumber(double value) {
    return printed(value, std::chars_format::general, 4);
}

ValueExtent extentOf(std::span<const float> values) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    ValueExtent extent{infinity, -infinity, infinity, 0};
    for (const float single : values) {
        if (!std::isfinite(single)) continue;
        const double value = single;
        extent.low = std::min(extent.low, value);
        extent.high = std::max(extent.high, value);
        if (value > 0.0) extent.lowPositive = std::min(extent.lowPositive, value);
        ++extent.finiteCount;
    }
    if (extent.finiteCount == 0) return {};
    if (extent.lowPositive == infinity) extent.lowPositive = 0.0;
    return extent;
}

Result<ScaleLevels> ScaleLevels::make(const ValueExtent& extent, ValueScale scale,
                                      const std::optional<ValueRange>& range) {
    const bool log = scale == ValueScale::Logarithmic;
    if (range) {
        if (!std::isfinite(range->low) || !std::isfinite(range->high) || !(range->low < range->high) ||
            !std::isfinite(range->high - range->low))
            return Error{"the value range of the picture is empty: give a lower and a higher value"};
        if (log && range->low <= 0.0)
            return Error{
                "a logarithmic scale begins above zero: give a positive lower value, or draw it linear"};
        return ScaleLevels(valuesWithin(*range, scale), scale, true);
    }
    if (log && extent.lowPositive == 0.0)
        return Error{"no value is above zero, which a logarithmic scale needs: draw it linear"};
    double low = log ? extent.lowPositive : extent.low;
    double high = extent.high;
    const double size = std::max(std::abs(low), std::abs(high));
    if (high - low <= kSmallestRelativeSpan * size) {
        const double margin = size > 0.0 ? 0.05 * size : 1.0;
        low -= margin;
        high += margin;
    }
    return ScaleLevels(log ? roundLogValues(low, high) : roundValues(low, high), scale, false);
}

ScaleLevels::ScaleLevels(std::vector<double> values, ValueScale scale, bool given)
    : values_(std::move(values))
    , scale_(scale)
    , given_(given) {
    const bool log = scale_ == ValueScale::Logarithmic;
    origin_ = log ? std::log(low()) : low();
    length_ = (log ? std::log(high()) : high()) - origin_;
    for (const double value : values_)
        positions_.push_back(positionOf(value));
}

double ScaleLevels::positionOf(double value) const {
    if (std::isnan(value)) return value;
    const double beyond = given_ ? 1.0 : 0.0;
    if (std::isinf(value)) return value > 0.0 ? 1.0 + beyond : -beyond;
    if (scale_ == ValueScale::Linear) return (value - origin_) / length_;
    return value > 0.0 ? (std::log(value) - origin_) / length_ : -beyond;
}

std::size_t ScaleLevels::bandOf(double position) const {
    const auto inner = std::span(positions_).subspan(1, positions_.size() - 2);
    return static_cast<std::size_t>(std::ranges::upper_bound(inner, position) - inner.begin());
}

std::vector<std::string> ScaleLevels::labels() const {
    constexpr int kMostDigits = 8;
    std::vector<std::string> texts;
    if (scale_ == ValueScale::Logarithmic && high() >= 4.0 * low()) {
        // One way for all: 0.01 beside 1e-06 would hide that the distances are equal.
        const bool plain = low() >= 1e-3 && high() < 1e5;
        for (const double value : values_)
            texts.push_back(plain ? shortNumber(value) : shortScientific(value));
        return texts;
    }
    const double size = std::max(std::abs(low()), std::abs(high()));
    const bool fixed = size < 1e5 && size >= 1e-2;
    const auto format = fixed ? std::chars_format::fixed : std::chars_format::scientific;
    int digits = 0;
    while (digits < kMostDigits && !tellsApart(values_, format, digits))
        ++digits;
    for (const double value : values_)
        texts.push_back(value == 0.0 ? "0" : printed(value, format, digits));
    return texts;
}

} // namespace workbench
