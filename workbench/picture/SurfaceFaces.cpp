#include "workbench/picture/SurfaceFaces.h"

#include "host/ElementTypes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <string>

namespace workbench {
namespace {

constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

struct LocalEdge {
    std::uint8_t from, to;
};
struct LocalFace {
    std::uint8_t cornerCount;
    std::array<std::uint8_t, 4> corners;
};

/// A solid: its outward faces and, in the order of the mid nodes that follow the corners, its edges.
struct SolidShape {
    std::uint8_t cornerCount;
    std::span<const LocalFace> faces;
    std::span<const LocalEdge> edges;
};

constexpr LocalFace kTetFaces[] = {{3, {0, 2, 1}}, {3, {0, 1, 3}}, {3, {1, 2, 3}}, {3, {2, 0, 3}}};
constexpr LocalEdge kTetEdges[] = {{0, 1}, {1, 2}, {2, 0}, {0, 3}, {1, 3}, {2, 3}};
constexpr LocalFace kPyramidFaces[] = {
    {4, {0, 3, 2, 1}}, {3, {0, 1, 4}}, {3, {1, 2, 4}}, {3, {2, 3, 4}}, {3, {3, 0, 4}}};
constexpr LocalEdge kPyramidEdges[] = {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {0, 4}, {1, 4}, {2, 4}, {3, 4}};
constexpr LocalFace kWedgeFaces[] = {
    {3, {0, 2, 1}}, {3, {3, 4, 5}}, {4, {0, 1, 4, 3}}, {4, {1, 2, 5, 4}}, {4, {2, 0, 3, 5}}};
constexpr LocalEdge kWedgeEdges[] = {{0, 1}, {1, 2}, {2, 0}, {3, 4}, {4, 5}, {5, 3}, {0, 3}, {1, 4}, {2, 5}};
constexpr LocalFace kHexFaces[] = {{4, {0, 3, 2, 1}}, {4, {4, 5, 6, 7}}, {4, {0, 1, 5, 4}},
                                   {4, {1, 2, 6, 5}}, {4, {2, 3, 7, 6}}, {4, {3, 0, 4, 7}}};
constexpr LocalEdge kHexEdges[] = {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6},
                                   {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};

constexpr SolidShape kTet{4, kTetFaces, kTetEdges};
constexpr SolidShape kPyramid{5, kPyramidFaces, kPyramidEdges};
constexpr SolidShape kWedge{6, kWedgeFaces, kWedgeEdges};
constexpr SolidShape kHex{8, kHexFaces, kHexEdges};

const SolidShape& shapeOf(ElementType type) {
    switch (type) {
    case ElementType::Tet4:
    case ElementType::Tet10:
        return kTet;
    case ElementType::Pyramid5:
    case ElementType::Pyramid13:
        return kPyramid;
    case ElementType::Wedge6:
    case ElementType::Wedge15:
        return kWedge;
    default:
        return kHex;
    }
}

/// Faces of solids that wait for a neighbour, in lists by their smallest corner.
class OpenFaces {
  public:
    explicit OpenFaces(std::size_t nodeCount)
        : first_(nodeCount, kNone) {}

    /// Takes a face in, or takes its neighbour out. `reference` names it for forEach.
    void meet(const std::array<std::uint32_t, 4>& sortedCorners, std::uint64_t reference) {
        const std::array<std::uint32_t, 3> rest{sortedCorners[1], sortedCorners[2], sortedCorners[3]};
        std::uint32_t* link = &first_[sortedCorners[0]];
        for (; *link != kNone; link = &entries_[*link].next)
            if (entries_[*link].rest == rest) {
                const std::uint32_t gone = *link;
                *link = entries_[gone].next;
                entries_[gone].next = unused_;
                unused_ = gone;
                return;
            }
        if (unused_ == kNone) {
            unused_ = static_cast<std::uint32_t>(entries_.size());
            entries_.push_back({});
        }
        // The list may have lain in the table that just grew: find its head anew.
        Entry& entry = entries_[unused_];
        const std::uint32_t index = unused_;
        unused_ = entry.next;
        std::uint32_t& head = first_[sortedCorners[0]];
        entry = {rest, head, reference};
        head = index;
    }

    /// References of the faces left over, ascending.
    std::vector<std::uint64_t> references() const {
        std::vector<std::uint64_t> found;
        for (std::uint32_t index : first_)
            for (; index != kNone; index = entries_[index].next)
                found.push_back(entries_[index].reference);
        std::ranges::sort(found);
        return found;
    }

  private:
    struct Entry {
        std::array<std::uint32_t, 3> rest{};
        std::uint32_t next = kNone;
        std::uint64_t reference = 0;
    };
    std::vector<std::uint32_t> first_;
    std::vector<Entry> entries_;
    std::uint32_t unused_ = kNone;
};

/// The distinct corners ascending, filled up with kNone; so a quadrilateral that is collapsed to a triangle
/// meets the triangle of its neighbour.
std::array<std::uint32_t, 4> faceKey(const LocalFace& face, std::span<const std::uint32_t> nodes) {
    std::array<std::uint32_t, 4> key{kNone, kNone, kNone, kNone};
    for (std::size_t i = 0; i < face.cornerCount; ++i)
        key[i] = nodes[face.corners[i]];
    std::sort(key.begin(), key.begin() + face.cornerCount);
    const auto end = std::unique(key.begin(), key.begin() + face.cornerCount);
    std::fill(end, key.end(), kNone);
    return key;
}

SurfaceFace faceOf(const SolidShape& shape, const LocalFace& local, std::span<const std::uint32_t> nodes) {
    SurfaceFace face;
    face.cornerCount = local.cornerCount;
    face.quadratic = nodes.size() > shape.cornerCount;
    for (std::size_t i = 0; i < face.cornerCount; ++i) {
        const std::uint8_t from = local.corners[i];
        const std::uint8_t to = local.corners[(i + 1) % face.cornerCount];
        face.corners[i] = nodes[from];
        if (!face.quadratic) continue;
        const auto edge = std::ranges::find_if(shape.edges, [&](const LocalEdge& candidate) {
            return std::minmax(candidate.from, candidate.to) == std::minmax(from, to);
        });
        face.middles[i] = nodes[shape.cornerCount + static_cast<std::size_t>(edge - shape.edges.begin())];
    }
    return face;
}

SurfaceFace planarFace(ElementType type, std::span<const std::uint32_t> nodes) {
    SurfaceFace face;
    face.cornerCount = type == ElementType::Tri3 || type == ElementType::Tri6 ? 3 : 4;
    face.quadratic = nodes.size() > face.cornerCount;
    std::copy_n(nodes.begin(), face.cornerCount, face.corners.begin());
    if (face.quadratic) std::copy_n(nodes.begin() + face.cornerCount, face.cornerCount, face.middles.begin());
    return face;
}

double squaredDistance(const std::array<double, 3>& a, const std::array<double, 3>& b) {
    double sum = 0.0;
    for (std::size_t i = 0; i < 3; ++i)
        sum += (a[i] - b[i]) * (a[i] - b[i]);
    return sum;
}

void addSegments(const T_QM_MESH_D& mesh, std::uint32_t element, std::span<const std::uint32_t> nodes,
                 SurfaceFaces& surface) {
    if (nodes.size() == 2) {
        surface.segments.push_back({{nodes[0], nodes[1]}, element});
        return;
    }
    const auto distance = [&](std::size_t a, std::size_t b) {
        return squaredDistance(mesh.nodePositions[nodes[a]], mesh.nodePositions[nodes[b]]);
    };
    const double d01 = distance(0, 1), d12 = distance(1, 2), d02 = distance(0, 2);
    const std::size_t middle = d01 >= d12 && d01 >= d02 ? 2 : (d02 >= d12 ? 1 : 0);
    for (std::size_t i = 0; i < 3; ++i)
        if (i != middle) surface.segments.push_back({{nodes[i], nodes[middle]}, element});
}

void addDots(std::uint32_t element, std::span<const std::uint32_t> nodes, SurfaceFaces& surface) {
    for (const std::uint32_t node : nodes)
        surface.dots.push_back({node, element});
    if (nodes.size() == 2) surface.segments.push_back({{nodes[0], nodes[1]}, element});
}

Result<void> checkTables(const T_QM_MESH_D& mesh) {
    const std::size_t elements = mesh.elementCount();
    if (mesh.nodePositions.size() != mesh.nodeCount() || mesh.elementTypes.size() != elements ||
        mesh.elementNodeOffsets.size() != (elements == 0 ? mesh.elementNodeOffsets.size() : elements + 1))
        return Error{"the tables of the mesh differ in length: import the model anew"};
    for (std::size_t i = 0; i < mesh.nodeCount(); ++i)
        for (const double coordinate : mesh.nodePositions[i])
            if (!std::isfinite(coordinate))
                return Error{"node " + std::to_string(mesh.nodeNumbers[i]) +
                             " has a coordinate that is not a number: correct it and import the model anew"};
    return {};
}

/// The element's nodes, or nothing where offsets, node count or node indices cannot be right. A spring may
/// have any number of nodes.
std::span<const std::uint32_t> checkedNodes(const T_QM_MESH_D& mesh, std::size_t element) {
    const std::size_t begin = mesh.elementNodeOffsets[element];
    const std::size_t end = mesh.elementNodeOffsets[element + 1];
    const auto wanted = static_cast<std::size_t>(elementNodeCount(mesh.elementTypes[element]));
    if (begin >= end || end > mesh.elementNodes.size() || (wanted != 0 && end - begin != wanted)) return {};
    const auto nodes = mesh.elementNodes.subspan(begin, end - begin);
    const std::size_t nodeCount = mesh.nodeCount();
    return std::ranges::all_of(nodes, [=](std::uint32_t node) { return node < nodeCount; })
               ? nodes
               : std::span<const std::uint32_t>{};
}

} // namespace

Result<SurfaceFaces> surfaceFacesOf(const T_QM_MESH_D& mesh) {
    if (auto checked = checkTables(mesh); !checked) return checked.error();
    SurfaceFaces surface;
    OpenFaces open(mesh.nodeCount());
    for (std::size_t e = 0; e < mesh.elementCount(); ++e) {
        const std::uint8_t code = mesh.elementTypes[e];
        if (code >= kFirstSpecialElement) continue;
        const auto type = static_cast<ElementType>(code);
        const auto element = static_cast<std::uint32_t>(e);
        const auto nodes = checkedNodes(mesh, e);
        if (nodes.empty())
            return Error{
                "element " + std::to_string(mesh.elementNumbers[e]) +
                " has nodes that do not exist or not as many as its type has: import the model anew"};
        if (isPlanarElement(code)) {
            surface.faces.push_back(planarFace(type, nodes));
            surface.faces.back().element = element;
        } else if (isSolidElement(code)) {
            const auto faces = shapeOf(type).faces;
            for (std::size_t f = 0; f < faces.size(); ++f) {
                const auto key = faceKey(faces[f], nodes);
                if (key[2] != kNone) open.meet(key, e * 8 + f);
            }
        } else if (type == ElementType::Line2 || type == ElementType::Line3 || type == ElementType::Beam) {
            addSegments(mesh, element, nodes, surface);
        } else {
            addDots(element, nodes, surface);
        }
    }
    for (const std::uint64_t reference : open.references()) {
        const std::size_t element = reference / 8;
        const SolidShape& shape = shapeOf(static_cast<ElementType>(mesh.elementTypes[element]));
        surface.faces.push_back(faceOf(shape, shape.faces[reference % 8], mesh.nodesOf(element)));
        surface.faces.back().element = static_cast<std::uint32_t>(element);
    }
    return surface;
}

} // namespace workbench
