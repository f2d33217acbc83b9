#pragma once

#include <cstddef>
#include <span>

namespace solver {

/// What mean-stress corrections take from a material.
struct Strengths {
    double ultimate = 0;
    double yield = 0;
};

/// A rule that turns amplitude and mean into the amplitude of the same damage at mean 0.
struct MeanStressCorrection {
    const char* name;
    /// The equivalent amplitude, infinite where the cycle fails at once; null when this version lacks the
    /// rule.
    double (*equivalentAmplitude)(double amplitude, double mean, const Strengths& strengths);
    /// The strength that a material must have for the rule and lacks; null when it lacks nothing.
    const char* (*missing)(const Strengths& strengths);
};

/// In the order of the interface file's output request.
std::span<const MeanStressCorrection> meanStressCorrections();

} // namespace solver
