#pragma once

#include "module/Export.h"

#include <algorithm>
#include <cmath>
#include <span>

/// Local safety after Mohr-Coulomb: how far the circle of two stresses is from the strength line. Stresses
/// are positive in tension; all values share a unit of stress.
namespace stability {

/// The strength of a material.
struct Strength {
    double cohesion = 0;
    double frictionAngle = 0; ///< degrees
    bool tensileCutoff = false;
    double tensileStrength = 0; ///< bounds the mean stress where there is a cut-off
};

enum class RateMode {
    FactorOfSafety = 0,
    StressRatio = 1, ///< radius over strength at the mean stress
};

// Rates of factor of safety that are none: a state without a radius, and a circle centred on the apex.
inline constexpr double kUndefinedRate = -1.0;
inline constexpr double kApexRate = -2.0;

/// tan of the friction angle.
inline double frictionSlope(const Strength& strength) {
    return std::tan(strength.frictionAngle * 0.017453292519943295);
}

/// Radius over strength, without a guard: infinite or undefined where the mean stress uses the strength up.
inline double stressRatio(const Strength& strength, double slope, double s1, double s2) {
    const double mean = 0.5 * (s1 + s2);
    const double radius = 0.5 * std::abs(s1 - s2);
    return radius / (strength.cohesion - mean * slope);
}

/// Distance to the strength line or the apex, whichever is nearer, over the radius. 0 beyond the apex.
inline double factorOfSafety(const Strength& strength, double slope, double s1, double s2) {
    const double mean = 0.5 * (s1 + s2);
    const double radius = 0.5 * std::abs(s1 - s2);
    double apex = strength.cohesion / slope;
    if (strength.tensileCutoff) apex = std::min(apex, strength.tensileStrength);
    const double toApex = apex - mean;
    if (toApex < 0) return 0;
    const double toLine = std::abs(mean * slope - strength.cohesion) / std::sqrt(slope * slope + 1.0);
    if (radius < 2.2e-12) return kUndefinedRate;
    if (toApex <= 0) return kApexRate;
    return std::min(toApex, toLine) / radius;
}

inline double safetyRate(const Strength& strength, double s1, double s2, RateMode mode) {
    const double slope = frictionSlope(strength);
    return mode == RateMode::FactorOfSafety ? factorOfSafety(strength, slope, s1, s2)
                                            : stressRatio(strength, slope, s1, s2);
}

/// The rates of many states of one material; the three spans have the same length.
VEXA_GPS_API void safetyRates(const Strength& strength, RateMode mode, std::span<const double> s1,
                              std::span<const double> s2, std::span<double> rates);

} // namespace stability
