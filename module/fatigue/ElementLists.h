#pragma once

#include "module/fatigue/ResultIdTable.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace fatigue {

/// What averaging needs of a mesh: element e has the nodes nodes[offsets[e]] .. nodes[offsets[e + 1] - 1].
struct MeshView {
    std::span<const std::uint32_t> offsets; ///< element count + 1
    std::span<const std::uint32_t> nodes;   ///< value indices below nodeCount
    std::size_t nodeCount = 0;

    std::size_t elementCount() const { return offsets.empty() ? 0 : offsets.size() - 1; }
};

/// Neighbouring elements of the mesh: first .. first + count - 1.
struct ElementRun {
    std::uint32_t first;
    std::uint32_t count;
};

/// Local axes of one element: rows are unit vectors in global coordinates. Without valid axes an element's
/// values are taken as they are.
struct LocalAxes {
    double rows[3][3];
    bool valid;
};

/// The elements and nodes that take part in a run. Elements are listed group by group, ascending within a
/// group; this is also the order in which their values are added at a node.
struct ElementLists {
    MeshView mesh;
    std::array<std::vector<ElementRun>, kGroupCount> groups;
    std::array<std::vector<LocalAxes>, kGroupCount> axes; ///< one an element, for groups with local axes only
    std::vector<std::uint32_t> nodes;                     ///< value indices, ascending
    std::vector<std::uint32_t> counts;                    ///< per mesh node: values that meet there

    bool present(ElementGroup group) const { return !groups[static_cast<std::size_t>(group)].empty(); }
    int presentCount() const;
    /// Adds an element at the end of a group; elements must come in ascending order.
    void append(ElementGroup group, std::uint32_t element);
    /// Fills `nodes` and `counts` from the groups. A node that an element names twice counts twice.
    void collectNodes();
};

} // namespace fatigue
