#pragma once

#include <vector>

namespace fatigue {

/// Times closer than this (seconds, or whatever the load functions are in) are one time.
inline constexpr double kTimeTolerance = 1e-9;

/// One ascending axis of all times. Of times closer than the tolerance to the one kept before them, the first
/// stays.
std::vector<double> mergedTimeAxis(std::vector<double> times);

} // namespace fatigue
