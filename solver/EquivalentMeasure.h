#pragma once

#include "solver/Definition.h"

#include <span>

namespace solver {

/// Largest and smallest principal value.
struct PrincipalExtremes {
    double largest = 0;
    double smallest = 0;
};

/// Closed form for symmetric tensors: trigonometric solution of the characteristic cubic (e.g. O. K. Smith,
/// Comm. ACM 4 (1961) 168), of the scaled deviator; exact forms for diagonal and plane tensors. Relative
/// accuracy 1e-8 of the largest component at worst, near twofold values.
PrincipalExtremes principalExtremes(const Tensor& tensor);

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
