#pragma once

#include "solver/PrincipalValues.h"

#include <span>

namespace solver {

/// A scalar that stands for a tensor in cycle counting.
struct EquivalentMeasure {
    const char* name;
    /// The measure of each tensor of a path; null for the critical plane, which is searched for a whole
    /// history. Both spans are of one length.
    void (*evaluate)(std::span<const Tensor> path, std::span<double> values);
    /// Made of differences of principal values: of a strain tensor, it takes 1 / (1 + Poisson's ratio) to
    /// give the axial strain of a uniaxial test.
    bool ofShear;
};

/// By the option of the interface file, which counts from 1: absolute maximum principal, signed von Mises,
/// signed Tresca, critical plane.
std::span<const EquivalentMeasure> equivalentMeasures();

} // namespace solver
