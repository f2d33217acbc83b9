#pragma once

#include "host/records/Mesh.h"

#include <array>
#include <cstdint>
#include <vector>

namespace workbench {

/// The mesh of a document as it lies in memory: the owner behind T_QM_MESH_D, with the same order.
struct MeshData {
    std::vector<std::uint32_t> nodeKeys;
    std::vector<std::int32_t> nodeNumbers;
    std::vector<std::array<double, 3>> nodePositions;

    std::vector<std::uint32_t> elementKeys;
    std::vector<std::int32_t> elementNumbers;
    std::vector<std::uint8_t> elementTypes;
    std::vector<std::uint32_t> elementPropertyKeys;
    std::vector<std::uint32_t> elementNodeOffsets{0};
    std::vector<std::uint32_t> elementNodes;

    T_QM_MESH_D view() const;
};

} // namespace workbench
