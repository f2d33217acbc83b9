#pragma once

#include <cstddef>
#include <span>

namespace solver {

/// What mean-stress corrections take from a stress-life material; 0 for what it lacks.
struct Strengths {
    double ultimate = 0;
    double yield = 0;
    double fatigueCoefficient = 0; ///< amplitude at one reversal (half a cycle), of a parametric curve
};

/// A rule of stress-life that turns amplitude and mean into the amplitude of the same damage at mean 0. It
/// never falls when the amplitude grows, the mean or the largest stress being held, nor when the mean grows.
struct MeanStressCorrection {
    const char* name;
    /// The equivalent amplitude, infinite where the cycle fails at once.
    double (*equivalentAmplitude)(double amplitude, double mean, const Strengths& strengths);
    /// The strength that a material must have for the rule and lacks; null when it lacks nothing.
    const char* (*missing)(const Strengths& strengths);
};

/// In the order of the interface file's output request: None, Goodman, Gerber, Soderberg, Morrow, SWT.
std::span<const MeanStressCorrection> meanStressCorrections();

} // namespace solver
