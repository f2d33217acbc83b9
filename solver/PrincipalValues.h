#pragma once

#include "solver/Definition.h"

#include <span>

namespace solver {

/// Largest and smallest principal value.
struct PrincipalExtremes {
    double largest = 0;
    double smallest = 0;
};

/// Those of each tensor; both spans are of one length. Closed form for symmetric tensors: trigonometric
/// solution of the characteristic cubic (e.g. O. K. Smith, Comm. ACM 4 (1961) 168), of the scaled deviator,
/// its cosines from a polynomial that is good to 1e-14, so that several tensors go through at a time.
/// Relative accuracy 1e-8 of the largest component at worst, near twofold values. Tensors below the normal
/// range of numbers count as 0.
void principalExtremes(std::span<const Tensor> tensors, std::span<PrincipalExtremes> extremes);

PrincipalExtremes principalExtremes(const Tensor& tensor);

} // namespace solver
