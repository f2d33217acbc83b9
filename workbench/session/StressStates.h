#pragma once

#include "base/Result.h"
#include "workbench/session/Document.h"

#include <cstdint>
#include <map>
#include <vector>

namespace workbench {

/// Largest and smallest principal value.
struct ExtremePrincipals {
    double major, minor;
};
/// Of a symmetric tensor xx, yy, zz, xy, yz, zx.
ExtremePrincipals extremePrincipals(const double (&tensor)[6]);

/// Stress states that share a property, in columns.
struct StressStates {
    std::vector<std::uint32_t> nodes; ///< mesh positions
    std::vector<double> major, minor;
};

/// The stress states of a step by property: at the corners of elements, or at a node once for each property
/// of the family that meets there. Of planar families the principal stresses in the plane, of solids the
/// largest and the smallest; from the principal stresses of the step where it has them, else from the tensor.
Result<std::map<ItrKey, StressStates>> stressStates(Document& document, CPOHVCase& step);

} // namespace workbench
