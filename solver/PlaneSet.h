#pragma once

#include "solver/TensorColumns.h"

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace solver {

/// The planes that a critical-plane search looks at first: 181 unit normals, evenly spread over the half
/// sphere. They are the vertices of an icosahedron whose faces are divided into 36 triangles each, moved out
/// onto the sphere; of two opposite vertices one stays. Neighbours are 0.16 to 0.22 rad apart, and no
/// direction is more than 0.13 rad from the nearest one.
class PlaneSet {
  public:
    /// The set, computed once.
    static const PlaneSet& instance();

    std::span<const Vector3> normals() const { return normals_; }

  private:
    PlaneSet();

    std::vector<Vector3> normals_;
};

/// Of a normal and its opposite, the one whose last component that is not 0 is positive.
Vector3 withStatedSign(const Vector3& normal);

} // namespace solver
