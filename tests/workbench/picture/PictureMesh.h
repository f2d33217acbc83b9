#pragma once

#include "host/ElementTypes.h"
#include "host/records/Mesh.h"

#include <array>
#include <cstdint>
#include <vector>

/// A mesh that owns its tables.
struct PictureMesh {
    std::vector<std::uint32_t> nodeKeys, elementKeys, propertyKeys, offsets{0}, nodes;
    std::vector<std::int32_t> nodeNumbers, elementNumbers;
    std::vector<std::array<double, 3>> positions;
    std::vector<std::uint8_t> types;

    std::uint32_t addNode(const std::array<double, 3>& position) {
        const auto index = static_cast<std::uint32_t>(positions.size());
        nodeKeys.push_back(index + 1);
        nodeNumbers.push_back(static_cast<std::int32_t>(index + 1));
        positions.push_back(position);
        return index;
    }

    void addElement(ElementType type, const std::vector<std::uint32_t>& elementNodes) {
        elementKeys.push_back(static_cast<std::uint32_t>(types.size() + 1));
        elementNumbers.push_back(static_cast<std::int32_t>(types.size() + 1));
        propertyKeys.push_back(1);
        types.push_back(static_cast<std::uint8_t>(type));
        nodes.insert(nodes.end(), elementNodes.begin(), elementNodes.end());
        offsets.push_back(static_cast<std::uint32_t>(nodes.size()));
    }

    T_QM_MESH_D view() const {
        return {nodeKeys, nodeNumbers,  positions, elementKeys, elementNumbers,
                types,    propertyKeys, offsets,   nodes};
    }

    /// n x n x n hexahedra in a cube of edge length 1 with a corner at the origin.
    static PictureMesh cube(std::uint32_t n) {
        PictureMesh mesh;
        for (std::uint32_t k = 0; k <= n; ++k)
            for (std::uint32_t j = 0; j <= n; ++j)
                for (std::uint32_t i = 0; i <= n; ++i)
                    mesh.addNode({double(i) / n, double(j) / n, double(k) / n});
        for (std::uint32_t k = 0; k < n; ++k)
            for (std::uint32_t j = 0; j < n; ++j)
                for (std::uint32_t i = 0; i < n; ++i) {
                    const auto at = [&](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
                        return i + x + (n + 1) * (j + y + (n + 1) * (k + z));
                    };
                    mesh.addElement(ElementType::Hex8, {at(0, 0, 0), at(1, 0, 0), at(1, 1, 0), at(0, 1, 0),
                                                        at(0, 0, 1), at(1, 0, 1), at(1, 1, 1), at(0, 1, 1)});
                }
        return mesh;
    }
};
