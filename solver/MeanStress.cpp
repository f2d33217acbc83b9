#include "solver/MeanStress.h"

#include "resultfile/FatigueComponents.h"

#include <array>
#include <cmath>
#include <limits>

namespace solver {
namespace {

constexpr double kFailsAtOnce = std::numeric_limits<double>::infinity();

double uncorrected(double amplitude, double, const Strengths&) {
    return amplitude;
}

/// A straight line from the amplitude at mean 0 to `intercept` on the axis of means. A compressive mean
/// neither helps nor harms.
double straightLine(double amplitude, double mean, double intercept) {
    if (mean <= 0) return amplitude;
    if (mean >= intercept) return kFailsAtOnce;
    return amplitude / (1.0 - mean / intercept);
}

/// J. Goodman, Mechanics Applied to Engineering, 1899.
double goodman(double amplitude, double mean, const Strengths& strengths) {
    return straightLine(amplitude, mean, strengths.ultimate);
}

/// The parabola of W. Gerber, Z. bayer. Arch. Ing.-Ver. 6 (1874) 101.
double gerber(double amplitude, double mean, const Strengths& strengths) {
    if (mean <= 0) return amplitude;
    if (mean >= strengths.ultimate) return kFailsAtOnce;
    const double share = mean / strengths.ultimate;
    return amplitude / ((1.0 - share) * (1.0 + share));
}

/// C. R. Soderberg, Trans. ASME 52 (1930) APM-52-2.
double soderberg(double amplitude, double mean, const Strengths& strengths) {
    return straightLine(amplitude, mean, strengths.yield);
}

/// J. Morrow, in Fatigue Design Handbook, SAE AE-4, 1968, sec. 3.2.
double morrow(double amplitude, double mean, const Strengths& strengths) {
    return straightLine(amplitude, mean, strengths.fatigueCoefficient);
}

/// K. N. Smith, P. Watson, T. H. Topper, J. Materials 5 (1970) 767. Without tension there is no damage.
double smithWatsonTopper(double amplitude, double mean, const Strengths&) {
    const double largest = mean + amplitude;
    return largest > 0 ? std::sqrt(largest) * std::sqrt(amplitude) : 0.0;
}

const char* nothing(const Strengths&) {
    return nullptr;
}
const char* ultimateStrength(const Strengths& strengths) {
    return strengths.ultimate > 0 ? nullptr : "ultimate strength above 0";
}
const char* yieldStrength(const Strengths& strengths) {
    return strengths.yield > 0 ? nullptr : "yield strength above 0";
}
const char* parametricCurve(const Strengths& strengths) {
    return strengths.fatigueCoefficient > 0
               ? nullptr
               : "parametric curve, which states the fatigue strength coefficient";
}

constexpr const auto& kNames = resultfile::fatigue::kCorrections;

constexpr std::array<MeanStressCorrection, 6> kTable{{
    {kNames[0], uncorrected, nothing},
    {kNames[1], goodman, ultimateStrength},
    {kNames[2], gerber, ultimateStrength},
    {kNames[3], soderberg, yieldStrength},
    {kNames[4], morrow, parametricCurve},
    {kNames[5], smithWatsonTopper, nothing},
}};

} // namespace

std::span<const MeanStressCorrection> meanStressCorrections() {
    return kTable;
}

} // namespace solver
