#include "solver/MeanStress.h"

#include "resultfile/FatigueComponents.h"

#include <array>
#include <limits>

namespace solver {
namespace {

double uncorrected(double amplitude, double, const Strengths&) {
    return amplitude;
}

/// Goodman's line from the amplitude at mean 0 to the ultimate strength: J. Goodman, Mechanics Applied to
/// Engineering, 1899. A compressive mean neither helps nor harms.
double goodman(double amplitude, double mean, const Strengths& strengths) {
    if (mean <= 0) return amplitude;
    if (mean >= strengths.ultimate) return std::numeric_limits<double>::infinity();
    return amplitude / (1.0 - mean / strengths.ultimate);
}

const char* nothing(const Strengths&) {
    return nullptr;
}
const char* ultimateStrength(const Strengths& strengths) {
    return strengths.ultimate > 0 ? nullptr : "ultimate strength";
}

constexpr const auto& kNames = resultfile::fatigue::kCorrections;

constexpr std::array<MeanStressCorrection, 6> kTable{{
    {kNames[0], uncorrected, nothing},
    {kNames[1], goodman, ultimateStrength},
    {kNames[2], nullptr, nothing},
    {kNames[3], nullptr, nothing},
    {kNames[4], nullptr, nothing},
    {kNames[5], nullptr, nothing},
}};

} // namespace

std::span<const MeanStressCorrection> meanStressCorrections() {
    return kTable;
}

} // namespace solver
