#include "solver/LifeCurve.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numbers>
#include <string>
#include <utility>

namespace solver {
namespace {

constexpr double kEndless = std::numeric_limits<double>::infinity();

bool isPositive(double value) {
    return value > 0 && std::isfinite(value);
}

/// The power of two at or below a number that need not be one of the machine's.
int octaveOf(double logarithm) {
    constexpr double kFarthest = 1000;
    return static_cast<int>(std::clamp(std::floor(logarithm / std::numbers::ln2), -kFarthest, kFarthest));
}

} // namespace

LifeCurve::LifeCurve(std::vector<double> logCycles, std::vector<double> logAmplitudes)
    : logCycles_(std::move(logCycles))
    , logAmplitudes_(std::move(logAmplitudes)) {}

LifeCurve LifeCurve::tabulated() const {
    // Lives beyond are solved for when they come, and flat curves of many octaves are not worth more.
    constexpr double kLongestLife = 1e15;
    constexpr int kMostOctaves = 64;
    const int end = octaveOf(std::log(amplitudeAt(kFewestCycles))) + 1;
    const int first = octaveOf(std::log(amplitudeAt(kLongestLife)));
    LifeCurve curve = *this;
    curve.table_ = PieceTable([this](double amplitude) { return solveCycles(amplitude); },
                              std::max(first, end - kMostOctaves), end);
    return curve;
}

Result<LifeCurve> LifeCurve::basquin(double coefficient, double exponent) {
    if (!isPositive(coefficient)) return Error{"the coefficient of its curve must be more than 0"};
    if (!(exponent < 0 && std::isfinite(exponent)))
        return Error{"the exponent of its curve must be less than 0"};
    constexpr double kDecades = 6; // any second point serves
    const double logCycles = kDecades * std::log(10.0);
    return LifeCurve({0.0, logCycles}, {std::log(coefficient), std::log(coefficient) + exponent * logCycles});
}

Result<LifeCurve> LifeCurve::table(std::span<const CurvePoint> points) {
    if (points.size() < 2)
        return Error{"its curve has " + std::to_string(points.size()) + " points and needs two or more"};
    std::vector<double> logCycles, logAmplitudes;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const CurvePoint& point = points[i];
        const std::string which = "point " + std::to_string(i + 1) + " of its curve ";
        if (!isPositive(point.cycles) || !isPositive(point.amplitude))
            return Error{which + "must have a number of cycles and an amplitude of more than 0"};
        if (i > 0 && point.cycles <= points[i - 1].cycles)
            return Error{which + "must have more cycles than the point before it"};
        if (i > 0 && point.amplitude > points[i - 1].amplitude)
            return Error{which + "must not have a larger amplitude than the point before it"};
        logCycles.push_back(std::log(point.cycles));
        logAmplitudes.push_back(std::log(point.amplitude));
    }
    return LifeCurve(std::move(logCycles), std::move(logAmplitudes));
}

double LifeCurve::solveCycles(double amplitude) const {
    if (!(amplitude > 0)) return kEndless;
    const double x = std::log(amplitude);
    const auto& axis = logAmplitudes_;
    const auto found = std::lower_bound(axis.begin(), axis.end(), x, std::greater<>());
    const auto after = static_cast<std::size_t>(found - axis.begin());
    double logCycles = 0;
    if (after < axis.size() && axis[after] == x) {
        logCycles = logCycles_[after];
    } else {
        const std::size_t right = std::clamp<std::size_t>(after, 1, axis.size() - 1);
        const std::size_t left = right - 1;
        const double drop = axis[left] - axis[right];
        if (drop == 0) return after == 0 ? kFewestCycles : kEndless;
        logCycles = logCycles_[right] + (axis[right] - x) * ((logCycles_[right] - logCycles_[left]) / drop);
    }
    return std::max(std::exp(logCycles), kFewestCycles);
}

double LifeCurve::amplitudeAt(double cycles) const {
    const double y = std::log(cycles);
    const auto found = std::lower_bound(logCycles_.begin(), logCycles_.end(), y);
    const auto after = static_cast<std::size_t>(found - logCycles_.begin());
    const std::size_t right = std::clamp<std::size_t>(after, 1, logCycles_.size() - 1);
    const std::size_t left = right - 1;
    const double slope =
        (logAmplitudes_[left] - logAmplitudes_[right]) / (logCycles_[right] - logCycles_[left]);
    return std::exp(logAmplitudes_[right] + (logCycles_[right] - y) * slope);
}

} // namespace solver
