#pragma once

#include "host/records/ItrKey.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// One node, as the node pool answers for a key. Coordinates in database units.
struct tagTNode {
    ItrKey key = 0;
    std::int32_t number = 0;
    std::uint32_t indexWord = 0; ///< low 29 bits: position of the node's value in every node table
    std::array<double, 3> position{};
};

/// The bits of tagTNode::indexWord that hold the value index.
inline constexpr std::uint32_t kNodeIndexMask = 0x1FFFFFFFu;

/// One element. `nodes` looks into the host's mesh table and lives as long as the document is unchanged.
struct tagTElem {
    ItrKey key = 0;
    std::int32_t number = 0;
    std::uint8_t type = 0; ///< element type code, see ElementTypes.h
    ItrKey propertyKey = 0;
    std::span<const std::uint32_t> nodes; ///< value indices of the nodes, in connectivity order
};

/// A named set of elements and nodes.
struct tagTMset {
    ItrKey key = 0;
    std::wstring name;
    std::vector<std::int32_t> elementNumbers; ///< ascending
    std::vector<std::int32_t> nodeNumbers;    ///< ascending
};

/// The whole mesh as bulk tables. Everything is owned by the host and lives as long as the document is
/// unchanged. Node i of every span is the node with value index i; element e likewise.
struct T_QM_MESH_D {
    std::span<const std::uint32_t> nodeKeys;   ///< strictly ascending
    std::span<const std::int32_t> nodeNumbers; ///< strictly ascending
    std::span<const std::array<double, 3>> nodePositions;

    std::span<const std::uint32_t> elementKeys;   ///< strictly ascending
    std::span<const std::int32_t> elementNumbers; ///< strictly ascending
    std::span<const std::uint8_t> elementTypes;
    std::span<const std::uint32_t> elementPropertyKeys;
    std::span<const std::uint32_t> elementNodeOffsets; ///< element count + 1; element e has nodes [e, e+1)
    std::span<const std::uint32_t> elementNodes;       ///< value indices, all elements one after another

    std::size_t nodeCount() const { return nodeNumbers.size(); }
    std::size_t elementCount() const { return elementNumbers.size(); }
    std::span<const std::uint32_t> nodesOf(std::size_t element) const {
        return elementNodes.subspan(elementNodeOffsets[element],
                                    elementNodeOffsets[element + 1] - elementNodeOffsets[element]);
    }
};
