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
    std::uint32_t element = 0;              ///< whose face it is, as an index into the mesh
    std::uint8_t cornerCount = 0;           ///< 3 or 4
    bool quadratic = false;
};

/// A straight piece of a line element or a spring.
struct SurfaceSegment {
    std::array<std::uint32_t, 2> nodes{}; ///< value indices
    std::uint32_t element = 0;
};

/// A node of an element without extent.
struct SurfaceDot {
    std::uint32_t node = 0; ///< value index
    std::uint32_t element = 0;
};

/// What can be seen of a mesh: the outer faces of its solids, its planar elements, its lines and its points.
struct SurfaceFaces {
    std::vector<SurfaceFace> faces;
    std::vector<SurfaceSegment> segments;
    std::vector<SurfaceDot> dots;

    bool empty() const { return faces.empty() && segments.empty() && dots.empty(); }
};

/// Element type codes from here on belong to interface and special elements.
inline constexpr std::uint8_t kFirstSpecialElement = 31;

/// A face of a solid is an outer one when no other solid has the same corners; collapsed faces are left out.
/// Node orders are those of CalculiX decks, which for the quadratic elements are also those of VTK. Where a
/// three-node line has its middle node differs between programs: its ends are the two nodes farthest apart.
/// Points and springs (the codes below kFirstSpecialElement without a shape) are a dot at each node, and a
/// line where they have two; interface and special elements are left out. Fails, naming the element, where
/// the mesh's tables contradict each other. One pass; memory is 24 bytes for each face that still waits for
/// its neighbour and 4 for each node.
Result<SurfaceFaces> surfaceFacesOf(const T_QM_MESH_D& mesh);

} // namespace workbench
