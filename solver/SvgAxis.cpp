#include "solver/SvgAxis.h"

#include "solver/SvgPicture.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace solver {
namespace {

/// Smaller values are drawn as 0.
constexpr double kSmallestValue = 1e-290;
/// Labels tell ranges apart down to this part of the largest value.
constexpr double kSmallestRange = 1e-6;
/// A value this close to a tick, in steps, is on it.
constexpr double kOnTick = 1e-9;

/// Power of ten, a multiple of 3, that turns `largest` into an everyday number.
int exponentFor(double largest) {
    if (largest == 0 || (largest >= 0.01 && largest < 1e5)) return 0;
    return 3 * static_cast<int>(std::floor(std::log10(largest) / 3));
}

/// The smallest of 1, 2, 5 times a power of ten that is not below `least`.
double roundStep(double least) {
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0})
        if (factor * power >= least * (1 - kOnTick)) return factor * power;
    return 10 * power;
}

std::string superscript(int number) {
    constexpr std::string_view kDigits[] = {"⁰", "¹", "²", "³", "⁴", "⁵", "⁶", "⁷", "⁸", "⁹"};
    std::string text = number < 0 ? "⁻" : "";
    for (const char c : std::to_string(std::abs(number)))
        text += kDigits[c - '0'];
    return text;
}

} // namespace

double SvgAxis::fraction(double value) const {
    return (value / std::pow(10.0, exponent) - ticks.front()) / (ticks.back() - ticks.front());
}

std::size_t SvgAxis::gap(double value) const {
    const double steps = (value / std::pow(10.0, exponent) - ticks.front()) / step;
    return static_cast<std::size_t>(
        std::clamp(std::floor(steps + kOnTick), 0.0, static_cast<double>(ticks.size() - 2)));
}

std::string SvgAxis::label(std::size_t tick) const {
    const int decimals = std::max(0, -static_cast<int>(std::floor(std::log10(step) + kOnTick)));
    const double value = std::abs(ticks[tick]) < 0.5 * step ? 0.0 : ticks[tick]; // no "-0"
    char text[64];
    return {text, std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, decimals).ptr};
}

std::string SvgAxis::title(const std::string& quantity) const {
    return exponent == 0 ? quantity : quantity + " × 10" + superscript(exponent);
}

double SvgAxis::labelWidth(double size) const {
    double widest = 0;
    for (std::size_t i = 0; i < ticks.size(); ++i)
        widest = std::max(widest, svgTextWidth(label(i), size));
    return widest;
}

SvgAxis makeAxis(double low, double high, std::size_t most) {
    if (std::max(std::abs(low), std::abs(high)) < kSmallestValue) low = high = 0;
    SvgAxis axis;
    axis.exponent = exponentFor(std::max(std::abs(low), std::abs(high)));
    const double unit = std::pow(10.0, axis.exponent);
    low /= unit;
    high /= unit;
    const double largest = std::max(std::abs(low), std::abs(high));
    if (!(high - low > kSmallestRange * largest)) {
        const double around = largest > 0 ? 0.1 * largest : 1.0;
        low -= around;
        high += around;
    }
    // Rounding the ends outwards can add a gap; then the next round step is taken.
    double least = (high - low) / static_cast<double>(most);
    for (;;) {
        axis.step = roundStep(least);
        const double first = std::floor(low / axis.step + kOnTick);
        const double last = std::ceil(high / axis.step - kOnTick);
        if (last - first <= static_cast<double>(most)) {
            for (double i = first; i <= last; ++i)
                axis.ticks.push_back(i * axis.step);
            return axis;
        }
        least = axis.step * 1.5;
    }
}

} // namespace solver
