#include "host/ElementQuantity.h"

#include "host/ElementTypes.h"

#include <cmath>

namespace {

using Vector = std::array<double, 3>;

Vector minus(const Vector& a, const Vector& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
Vector cross(const Vector& a, const Vector& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
double triple(const Vector& a, const Vector& b, const Vector& c) {
    const Vector n = cross(b, c);
    return a[0] * n[0] + a[1] * n[1] + a[2] * n[2];
}

/// Corners of the faces of a solid, all wound to the outside or all to the inside; -1 in the fourth place of
/// a triangle.
using Face = std::array<std::int8_t, 4>;
constexpr Face kTetFaces[] = {{0, 2, 1, -1}, {0, 1, 3, -1}, {1, 2, 3, -1}, {2, 0, 3, -1}};
constexpr Face kPyramidFaces[] = {{0, 3, 2, 1}, {0, 1, 4, -1}, {1, 2, 4, -1}, {2, 3, 4, -1}, {3, 0, 4, -1}};
constexpr Face kWedgeFaces[] = {{0, 2, 1, -1}, {3, 4, 5, -1}, {0, 1, 4, 3}, {1, 2, 5, 4}, {2, 0, 3, 5}};
constexpr Face kHexFaces[] = {{0, 3, 2, 1}, {4, 5, 6, 7}, {0, 1, 5, 4},
                              {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}};

std::span<const Face> facesOf(ElementType type) {
    switch (type) {
    case ElementType::Tet4:
    case ElementType::Tet10:
        return kTetFaces;
    case ElementType::Pyramid5:
    case ElementType::Pyramid13:
        return kPyramidFaces;
    case ElementType::Wedge6:
    case ElementType::Wedge15:
        return kWedgeFaces;
    case ElementType::Hex8:
    case ElementType::Hex20:
        return kHexFaces;
    default:
        return {};
    }
}

/// Volume by the divergence theorem, from the first corner for the sake of the digits. A bilinear face halves
/// the tetrahedron of its corners, so that it counts as the mean of its two splits into triangles.
template <class Corner>
double volume(std::span<const Face> faces, const Corner& corner) {
    const Vector origin = corner(0);
    double sixfold = 0;
    for (const Face& face : faces) {
        const auto at = [&](std::size_t i) {
            return minus(corner(static_cast<std::size_t>(face[i])), origin);
        };
        const Vector a = at(0), b = at(1), c = at(2);
        if (face[3] < 0) {
            sixfold += triple(a, b, c);
            continue;
        }
        const Vector d = at(3);
        sixfold += 0.5 * (triple(a, b, c) + triple(a, c, d) + triple(a, b, d) + triple(b, c, d));
    }
    return std::fabs(sixfold) / 6;
}

} // namespace

double elementQuantity(const T_QM_MESH_D& mesh, std::size_t element) {
    const std::uint8_t code = mesh.elementTypes[element];
    if (!isPlanarElement(code) && !isSolidElement(code)) return 0;
    const auto nodes = mesh.nodesOf(element);
    const auto corner = [&](std::size_t i) { return mesh.nodePositions[nodes[i]]; };
    const auto type = static_cast<ElementType>(code);
    if (isSolidElement(code)) return volume(facesOf(type), corner);
    const bool triangle = type == ElementType::Tri3 || type == ElementType::Tri6;
    const Vector normal = triangle ? cross(minus(corner(1), corner(0)), minus(corner(2), corner(0)))
                                   : cross(minus(corner(2), corner(0)), minus(corner(3), corner(1)));
    return std::hypot(normal[0], normal[1], normal[2]) / 2;
}
