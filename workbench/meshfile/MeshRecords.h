#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace workbench {

/// Elements that belong together in a mesh file: a physical group, or the cells with one number of material.
struct MeshGroup {
    std::string name;
    std::vector<std::uint32_t> elements; ///< positions
};

/// The mesh of a file, in the file's order of nodes and elements. Nodes of elements are in the host's order.
struct MeshRecords {
    std::vector<std::int64_t> nodeNumbers;
    std::vector<std::array<double, 3>> nodePositions;
    std::vector<std::int64_t> elementNumbers;
    std::vector<std::uint8_t> elementTypes;  ///< host element type codes
    std::vector<std::uint32_t> elementNodes; ///< positions, element by element; their counts go by type
    std::vector<MeshGroup> groups;
    std::vector<std::string> notes; ///< what was left out, for a person
};

/// What the rows of a field belong to.
enum class FieldPlace : std::uint8_t {
    Node,
    Element,
    Corner, ///< a row for each node of each element, in the host's order
};

/// A point or cell array of a mesh file at one time.
struct FieldHeader {
    std::string name;
    FieldPlace place = FieldPlace::Node;
    std::uint32_t components = 1;
    std::int32_t step = 0; ///< the file's count of it
    double time = 0;
};

struct FieldValues {
    /// Positions of the nodes or elements that have values, ascending; empty: all of them, in order.
    std::vector<std::uint32_t> items;
    std::vector<float> values; ///< row by row, `components` in each; missing ones are NaN
};

inline constexpr std::uint32_t kMostFieldComponents = 64;

} // namespace workbench
