#pragma once

#include "host/ElementTypes.h"
#include "tests/support/MemoryPools.h"

#include <array>
#include <cmath>

namespace support {

/// The tables of a mesh. Keys differ from numbers and indices, so that a test notices when they are mixed up.
class MemoryMesh {
  public:
    static constexpr std::uint32_t kNodeKeyBase = 5000;
    static constexpr std::uint32_t kElementKeyBase = 7000;

    /// Numbers must ascend. Answers the value index.
    std::uint32_t addNode(std::int32_t number, std::array<double, 3> position = {}) {
        const auto index = static_cast<std::uint32_t>(nodeNumbers.size());
        nodeKeys.push_back(kNodeKeyBase + index);
        nodeNumbers.push_back(number);
        nodePositions.push_back(position);
        return index;
    }
    void addElement(std::int32_t number, ElementType type, ItrKey property,
                    const std::vector<std::uint32_t>& nodes) {
        elementKeys.push_back(kElementKeyBase + static_cast<std::uint32_t>(elementNumbers.size()));
        elementNumbers.push_back(number);
        elementTypes.push_back(static_cast<std::uint8_t>(type));
        elementPropertyKeys.push_back(static_cast<std::uint32_t>(property));
        elementNodes.insert(elementNodes.end(), nodes.begin(), nodes.end());
        elementNodeOffsets.push_back(static_cast<std::uint32_t>(elementNodes.size()));
    }
    T_QM_MESH_D view() const {
        return {nodeKeys,     nodeNumbers,         nodePositions,      elementKeys, elementNumbers,
                elementTypes, elementPropertyKeys, elementNodeOffsets, elementNodes};
    }

    std::vector<std::uint32_t> nodeKeys;
    std::vector<std::int32_t> nodeNumbers;
    std::vector<std::array<double, 3>> nodePositions;
    std::vector<std::uint32_t> elementKeys;
    std::vector<std::int32_t> elementNumbers;
    std::vector<std::uint8_t> elementTypes;
    std::vector<std::uint32_t> elementPropertyKeys;
    std::vector<std::uint32_t> elementNodeOffsets{0};
    std::vector<std::uint32_t> elementNodes;
};

/// The element pool of a MemoryMesh: local x along the first edge, z normal to the first three nodes.
class MemoryElemPool : public MemoryPool<DPoolElem> {
  public:
    explicit MemoryElemPool(const MemoryMesh& mesh)
        : mesh_(mesh) {}

    int Calc2DElemLocalVector(const tagTElem& elem, double axes[3][3]) const override {
        if (!isPlanarElement(elem.type)) return 0;
        const auto edge = [&](int to) {
            std::array<double, 3> d{};
            for (std::size_t i = 0; i < 3; ++i)
                d[i] = mesh_.nodePositions[elem.nodes[static_cast<std::size_t>(to)]][i] -
                       mesh_.nodePositions[elem.nodes[0]][i];
            return d;
        };
        const std::array<double, 3> x = edge(1);
        const std::array<double, 3> z = cross(x, edge(2));
        const std::array<double, 3> y = cross(z, x);
        const std::array<std::array<double, 3>, 3> rows{x, y, z};
        for (std::size_t r = 0; r < 3; ++r) {
            const double length = std::hypot(rows[r][0], rows[r][1], rows[r][2]);
            if (length == 0) return 0;
            for (std::size_t i = 0; i < 3; ++i)
                axes[r][i] = rows[r][i] / length;
        }
        return 1;
    }
    std::vector<ItrKey> GetItrSetByItrPropSet(const std::vector<ItrKey>&) const override { return {}; }

  private:
    static std::array<double, 3> cross(const std::array<double, 3>& a, const std::array<double, 3>& b) {
        return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
    }
    const MemoryMesh& mesh_;
};

} // namespace support
