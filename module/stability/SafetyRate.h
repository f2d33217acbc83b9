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

/// What of a strength is the same for all states.
struct StrengthLine {
    explicit StrengthLine(const Strength& strength)
        : cohesion(strength.cohesion)
        , slope(std::tan(strength.frictionAngle * 0.017453292519943295))
        , length(std::sqrt(slope * slope + 1.0))
        , apex(cohesion / slope) {
        if (strength.tensileCutoff) apex = std::min(apex, strength.tensileStrength);
    }

    double cohesion;
    double slope;
    double length; ///< of the line over a unit of mean stress
    double apex;   ///< mean stress that nothing bears; infinite without friction and cut-off
};

/// Radius over strength, without a guard: infinite or undefined where the mean stress uses the strength up.
inline double stressRatio(const StrengthLine& line, double s1, double s2) {
    const double mean = 0.5 * (s1 + s2);
    const double radius = 0.5 * std::abs(s1 - s2);
    return radius / (line.cohesion - mean * line.slope);
}

/// Distance to the strength line or the apex, whichever is nearer, over the radius. 0 beyond the apex. The
/// special states are chosen last, the strongest one at the end, so that loops need no jumps.
inline double factorOfSafety(const StrengthLine& line, double s1, double s2) {
    const double mean = 0.5 * (s1 + s2);
    const double radius = 0.5 * std::abs(s1 - s2);
    const double toApex = line.apex - mean;
    const double toLine = std::abs(mean * line.slope - line.cohesion) / line.length;
    double rate = std::min(toApex, toLine) / radius;
    rate = toApex <= 0 ? kApexRate : rate;
    rate = radius < 2.2e-12 ? kUndefinedRate : rate;
    return toApex < 0 ? 0 : rate;
}

inline double safetyRate(const Strength& strength, double s1, double s2, RateMode mode) {
    const StrengthLine line(strength);
    return mode == RateMode::FactorOfSafety ? factorOfSafety(line, s1, s2) : stressRatio(line, s1, s2);
}

/// The rates of many states of one material; the three spans have the same length.
VEXA_GPS_API void safetyRates(const Strength& strength, RateMode mode, std::span<const double> s1,
                              std::span<const double> s2, std::span<double> rates);

} // namespace stability
