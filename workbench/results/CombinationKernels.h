#pragma once

#include "workbench/results/Catalogue.h"

#include <array>
#include <span>

/// The arithmetic of combinations, over whole blocks of values. Spans of one call have the same length; none
/// overlaps another.
namespace workbench::kernels {

/// sums = factor x values, and sums += factor x values. Sums are kept in 64 bits, so that the order of the
/// items does not show in the 32 bits that are stored.
void setScaled(std::span<double> sums, std::span<const float> values, double factor);
void addScaled(std::span<double> sums, std::span<const float> values, double factor);
void round(std::span<float> rounded, std::span<const double> sums);

/// The derived measure at each place. `sources` are those of a DerivedComponent in its order; an empty span
/// counts as zeros.
void derive(std::span<float> derived, DerivedMeasure measure,
            const std::array<std::span<const float>, 6>& sources);

enum class Envelope {
    Maximum,
    Minimum,
    AbsoluteMaximum,       ///< the largest magnitude, without its sign
    SignedAbsoluteMaximum, ///< the value of the largest magnitude
};

/// Begins an envelope with the first item: extremes are its values, scaled, and it governs them all.
void beginEnvelope(Envelope kind, std::span<float> extremes, std::span<float> governing,
                   std::span<const float> values, double factor, float number);
/// Takes another item in. It governs where it is beyond what came before: of equals the first governs.
void extendEnvelope(Envelope kind, std::span<float> extremes, std::span<float> governing,
                    std::span<const float> values, double factor, float number);

} // namespace workbench::kernels
