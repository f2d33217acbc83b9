#include "workbench/meshfile/CellKinds.h"

#include <algorithm>

namespace workbench {
namespace {

using Order = std::uint8_t;

constexpr Order kAsItStands[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19};
constexpr Order kPixel[] = {0, 1, 3, 2};
constexpr Order kVoxel[] = {0, 1, 3, 2, 4, 5, 7, 6};
/// The host has the node in the middle of a line between its ends.
constexpr Order kLine3[] = {0, 2, 1};

/// gmsh orders the nodes on edges by the edge's corners: (0 1), (0 3), (0 4), (1 2), ... of a hexahedron.
constexpr Order kGmshTet10[] = {0, 1, 2, 3, 4, 5, 6, 7, 9, 8};
constexpr Order kGmshHex20[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 11, 13, 9, 16, 18, 19, 17, 10, 12, 14, 15};
constexpr Order kGmshWedge15[] = {0, 1, 2, 3, 4, 5, 6, 9, 7, 12, 14, 13, 8, 10, 11};
constexpr Order kGmshPyramid13[] = {0, 1, 2, 3, 4, 5, 8, 10, 6, 7, 9, 11, 12};

constexpr Order kTurnedWedge15[] = {3, 4, 5, 0, 1, 2, 9, 10, 11, 6, 7, 8, 12, 13, 14};

constexpr auto first(std::size_t count) {
    return std::span<const Order>(kAsItStands).first(count);
}

using enum ElementType;

/// Polygons with as few corners are triangles and quadrilaterals.
const CellKind kVtk[] = {
    {1, 1, Point, first(1)},      {3, 2, Line2, first(2)},        {4, 2, Line2, first(2)},
    {5, 3, Tri3, first(3)},       {7, 3, Tri3, first(3)},         {7, 4, Quad4, first(4)},
    {8, 4, Quad4, kPixel},        {9, 4, Quad4, first(4)},        {10, 4, Tet4, first(4)},
    {11, 8, Hex8, kVoxel},        {12, 8, Hex8, first(8)},        {13, 6, Wedge6, first(6)},
    {14, 5, Pyramid5, first(5)},  {21, 3, Line3, kLine3},         {22, 6, Tri6, first(6)},
    {23, 8, Quad8, first(8)},     {24, 10, Tet10, first(10)},     {25, 20, Hex20, first(20)},
    {26, 15, Wedge15, first(15)}, {27, 13, Pyramid13, first(13)}, {28, 9, Quad8, first(8)},
    {29, 27, Hex20, first(20)},   {32, 18, Wedge15, first(15)},   {33, 24, Hex20, first(20)},
    {34, 7, Tri6, first(6)},
};

const CellKind kGmsh[] = {
    {15, 1, Point, first(1)},
    {1, 2, Line2, first(2)},
    {8, 3, Line3, kLine3},
    {2, 3, Tri3, first(3)},
    {9, 6, Tri6, first(6)},
    {3, 4, Quad4, first(4)},
    {16, 8, Quad8, first(8)},
    {10, 9, Quad8, first(8)},
    {4, 4, Tet4, first(4)},
    {11, 10, Tet10, kGmshTet10},
    {5, 8, Hex8, first(8)},
    {17, 20, Hex20, kGmshHex20},
    {12, 27, Hex20, kGmshHex20},
    {6, 6, Wedge6, first(6)},
    {18, 15, Wedge15, kGmshWedge15},
    {13, 18, Wedge15, kGmshWedge15},
    {7, 5, Pyramid5, first(5)},
    {19, 13, Pyramid13, kGmshPyramid13},
    {14, 14, Pyramid13, kGmshPyramid13},
};

} // namespace

const CellKind* findVtkCell(int code, std::size_t nodes) {
    const auto row = std::find_if(std::begin(kVtk), std::end(kVtk), [&](const CellKind& kind) {
        return kind.code == code && kind.nodes == nodes;
    });
    return row == std::end(kVtk) ? nullptr : row;
}

const CellKind* findGmshCell(int code) {
    const auto row = std::ranges::find(kGmsh, code, &CellKind::code);
    return row == std::end(kGmsh) ? nullptr : row;
}

std::span<const std::uint8_t> turnedWedge(ElementType type) {
    return std::span<const Order>(kTurnedWedge15).first(type == Wedge6 ? 6 : 15);
}

} // namespace workbench
