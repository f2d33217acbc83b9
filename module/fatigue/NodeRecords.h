#pragma once

#include "module/fatigue/NodeMaterials.h"
#include "module/fatigue/RecordFraming.h"

namespace fatigue {

/// What the node section is written from. The arrays of a load are those of NodeTables: six, or twelve for
/// stress and strain together, one float a mesh node each.
struct NodeSection {
    std::span<const std::uint32_t> nodes;       ///< value indices in writing order
    std::span<const std::int32_t> numbers;      ///< by value index
    std::span<const std::uint32_t> keys;        ///< by value index
    std::span<const float* const* const> loads; ///< loads[load][component][value index]
    std::span<const std::int32_t> caseKeys;     ///< one a load; empty for runs over steps
    bool stressAndStrain = false;
};

/// Writes the node section: per node its numbers and counts, its material indices if any, and its components
/// for each load. Values are brought into node order in blocks of nodes that stay in the cache.
void writeNodes(RecordWriter& records, const NodeSection& section, NodeMaterials& materials);

} // namespace fatigue
