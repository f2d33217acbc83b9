#pragma once

#include <cstdint>
#include <iterator>

/// Element type codes of the host.
enum class ElementType : std::uint8_t {
    Point = 0,
    Line2 = 1,
    Line3 = 2,
    Beam = 3,
    Tri3 = 4,
    Quad4 = 5,
    Tri6 = 6,
    Quad8 = 7,
    Tet4 = 8,
    Pyramid5 = 9,
    Wedge6 = 10,
    Hex8 = 11,
    Tet10 = 12,
    Pyramid13 = 13,
    Wedge15 = 14,
    Hex20 = 15,
    Spring = 16, ///< between two nodes; springs to ground are points
};

/// Number of nodes of an element of `type`; 0 for codes that this table does not know.
constexpr int elementNodeCount(std::uint8_t type) {
    constexpr int counts[] = {1, 2, 3, 2, 3, 4, 6, 8, 4, 5, 6, 8, 10, 13, 15, 20, 2};
    return type < std::size(counts) ? counts[type] : 0;
}

constexpr bool isPlanarElement(std::uint8_t type) {
    return type >= 4 && type <= 7;
}
constexpr bool isSolidElement(std::uint8_t type) {
    return type >= 8 && type <= 15;
}
