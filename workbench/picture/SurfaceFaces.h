#pragma once

#include "base/Result.h"
#include "host/records/Mesh.h"

#include <array>
#include <cstdint>
#include <vector>

namespace workbench {

/// A face that can be seen. Node i of the corners is followed by corner i+1; mid node i lies between them.
struct SurfaceFace {
    std::array<std::uint32_t, 4> corners{}; ///< value indices; counter-clockwise seen from outside a solid
    std::array<std::uint32_t, 4> middles{}; ///< only of a quadratic face
    std::uint8_t cornerCount = 0;           ///< 3 or 4
    bool quadratic = false;
};

/// What can be seen of a mesh: the outer faces of its solids, its planar elements and its lines.
struct SurfaceFaces {
    std::vector<SurfaceFace> faces;
    std::vector<std::array<std::uint32_t, 2>> segments; ///< of line elements, value indices
};

/// A face of a solid is an outer one when no other solid has the same corners; collapsed faces are left out.
/// Node orders are those of CalculiX decks, which for the quadratic elements are also those of VTK. Where a
/// three-node line has its middle node differs between programs: its ends are the two nodes farthest apart.
/// Point elements and unknown type codes are left out. Fails, naming the element, where the mesh's tables
/// contradict each other. One pass; memory is 24 bytes for each face that still waits for its
/// neighbour and 4 for each node.
Result<SurfaceFaces> surfaceFacesOf(const T_QM_MESH_D& mesh);

} // namespace workbench
