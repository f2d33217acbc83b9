#include "workbench/picture/ContourSurface.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace workbench {
namespace {

constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

/// Two faces that meet at a larger angle than 30 degrees show their edge.
constexpr double kFeatureCosine = 0.8660254037844387;

/// Values further off the scale bar are drawn as if they were here, where floats still interpolate.
constexpr double kFarthestPlace = 1e6;

using Float3 = std::array<float, 3>;

Float3 difference(const Float3& a, const Float3& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

/// Unit normal of a face by its diagonals; zero for a face without area.
Float3 normalOf(const Float3& a, const Float3& b, const Float3& c, const Float3& d) {
    const Float3 u = difference(c, a);
    const Float3 v = difference(d, b);
    Float3 n{u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
    const float length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
    if (length > 0.0f)
        for (float& component : n)
            component /= length;
    return n;
}

/// One side of a face, to be paired with the same side of its neighbour.
struct FaceSide {
    std::uint32_t low, high; ///< vertices of the corners
    std::uint32_t middle;    ///< kNone on a linear face
    std::uint32_t face;
    bool reversed; ///< the face runs from high to low

    bool sameEdge(const FaceSide& other) const { return low == other.low && high == other.high; }
};

class Builder {
  public:
    Builder(const SurfaceInput& input, const ScaleLevels& levels)
        : input_(input)
        , levels_(levels)
        , vertexOfNode_(input.positions.size(), kNone) {}

    ContourSurface build(const SurfaceFaces& surface) {
        result_.restOutline = input_.restOutline && !input_.restPositions.empty();
        placeCenter(surface);
        const std::size_t faceCount = surface.faces.size();
        result_.triangles.reserve(faceCount * 4);
        normals_.reserve(faceCount);
        sides_.reserve(faceCount * 4);
        for (const SurfaceFace& face : surface.faces)
            addFace(face);
        for (const SurfaceSegment& segment : surface.segments)
            addSegment(segment);
        for (const SurfaceDot& dot : surface.dots)
            addDot(dot);
        addEdges();
        return std::move(result_);
    }

  private:
    void placeCenter(const SurfaceFaces& surface) {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        Vector3 low{infinity, infinity, infinity}, high{-infinity, -infinity, -infinity};
        const auto includePlace = [&](const std::array<double, 3>& place) {
            for (std::size_t i = 0; i < 3; ++i) {
                low[i] = std::min(low[i], place[i]);
                high[i] = std::max(high[i], place[i]);
            }
        };
        const auto include = [&](std::uint32_t node) {
            includePlace(input_.positions[node]);
            if (result_.restOutline) includePlace(input_.restPositions[node]);
        };
        for (const SurfaceFace& face : surface.faces)
            for (std::size_t i = 0; i < face.cornerCount; ++i) {
                include(face.corners[i]);
                if (face.quadratic) include(face.middles[i]);
            }
        for (const SurfaceSegment& segment : surface.segments)
            for (const std::uint32_t node : segment.nodes)
                include(node);
        for (const SurfaceDot& dot : surface.dots)
            include(dot.node);
        if (low[0] > high[0]) return;
        Vector3 half;
        for (std::size_t i = 0; i < 3; ++i) {
            result_.center[i] = 0.5 * low[i] + 0.5 * high[i];
            half[i] = 0.5 * high[i] - 0.5 * low[i];
        }
        const double longest = std::ranges::max(half);
        if (longest > 0.0) result_.unit = longest;
        for (std::size_t i = 0; i < 3; ++i)
            result_.extent[i] = 2.0 * (half[i] / result_.unit);
    }

    Float3 placed(const std::array<double, 3>& position) const {
        const Vector3 at = result_.toSurface(position);
        return {static_cast<float>(at[0]), static_cast<float>(at[1]), static_cast<float>(at[2])};
    }

    std::uint32_t vertexOf(std::uint32_t node) {
        std::uint32_t& vertex = vertexOfNode_[node];
        if (vertex != kNone) return vertex;
        const double place =
            std::clamp(levels_.positionOf(input_.values[node]), -kFarthestPlace, kFarthestPlace);
        if (!input_.restPositions.empty())
            result_.restPositions.push_back(placed(input_.restPositions[node]));
        vertex = addVertex(placed(input_.positions[node]), static_cast<float>(place));
        return vertex;
    }

    std::uint32_t addVertex(const Float3& position, float scalePosition) {
        result_.positions.push_back(position);
        result_.scalePositions.push_back(scalePosition);
        return static_cast<std::uint32_t>(result_.positions.size() - 1);
    }

    /// Where the model's own shape is seen.
    const std::vector<Float3>& restPlaces() const {
        return result_.restPositions.empty() ? result_.positions : result_.restPositions;
    }

    void addFace(const SurfaceFace& face) {
        const std::size_t n = face.cornerCount;
        std::array<std::uint32_t, 8>
            ring; ///< corners and, where there are, mid nodes as they follow round it
        const std::size_t stride = face.quadratic ? 2 : 1;
        for (std::size_t i = 0; i < n; ++i) {
            ring[i * stride] = vertexOf(face.corners[i]);
            if (face.quadratic) ring[i * stride + 1] = vertexOf(face.middles[i]);
        }
        const auto rim = std::span(ring).first(n * stride);
        if (face.quadratic) fillMiddles(rim);
        addSides(rim, stride);
        auto& triangles = hasValues(face.element, rim) ? result_.triangles : result_.greyTriangles;
        if (n == 4) {
            const std::uint32_t middle = addMiddleOf(rim, face.quadratic);
            for (std::size_t i = 0; i < rim.size(); ++i)
                triangles.push_back({rim[i], rim[(i + 1) % rim.size()], middle});
            markFace(face.element, rim, std::span(&middle, 1));
        } else if (face.quadratic) {
            triangles.push_back({rim[0], rim[1], rim[5]});
            triangles.push_back({rim[1], rim[2], rim[3]});
            triangles.push_back({rim[3], rim[4], rim[5]});
            const std::array<std::uint32_t, 3> inner{rim[1], rim[3], rim[5]};
            triangles.push_back(inner);
            markFace(face.element, rim, inner);
        } else {
            triangles.push_back({rim[0], rim[1], rim[2]});
            markFace(face.element, rim, rim);
        }
    }

    void fillMiddles(std::span<const std::uint32_t> rim) {
        auto& places = result_.scalePositions;
        for (std::size_t i = 1; i < rim.size(); i += 2)
            if (std::isnan(places[rim[i]]))
                places[rim[i]] = 0.5f * (places[rim[i - 1]] + places[rim[(i + 1) % rim.size()]]);
    }

    bool hasValues(std::uint32_t element, std::span<const std::uint32_t> vertices) const {
        if (!input_.valuedElements.empty() && input_.valuedElements[element] == 0) return false;
        return std::ranges::none_of(
            vertices, [this](std::uint32_t vertex) { return std::isnan(result_.scalePositions[vertex]); });
    }

    /// Shape functions of the four- and eight-node quadrilateral in their middle: 1/4 a corner; or -1/4 a
    /// corner and 1/2 a mid node. The value stays between those of the nodes: beside a very large one the
    /// shape functions overshoot, and colours would show values that no node has.
    std::uint32_t addMiddleOf(std::span<const std::uint32_t> rim, bool quadratic) {
        Float3 position{}, rest{};
        float place = 0.0f, low = result_.scalePositions[rim[0]], high = low;
        for (std::size_t i = 0; i < rim.size(); ++i) {
            const float weight = !quadratic ? 0.25f : (i % 2 == 0 ? -0.25f : 0.5f);
            for (std::size_t c = 0; c < 3; ++c) {
                position[c] += weight * result_.positions[rim[i]][c];
                rest[c] += weight * restPlaces()[rim[i]][c];
            }
            const float own = result_.scalePositions[rim[i]];
            place += weight * own;
            low = std::min(low, own);
            high = std::max(high, own);
        }
        if (!result_.restPositions.empty()) result_.restPositions.push_back(rest);
        return addVertex(position, std::clamp(place, low, high));
    }

    void addSides(std::span<const std::uint32_t> rim, std::size_t stride) {
        const auto face = static_cast<std::uint32_t>(normals_.size());
        const auto corner = [&](std::size_t i) { return rim[i * stride % rim.size()]; };
        const auto& at = restPlaces();
        const bool triangle = rim.size() == 3 * stride;
        normals_.push_back(triangle ? normalOf(at[corner(0)], at[corner(0)], at[corner(1)], at[corner(2)])
                                    : normalOf(at[corner(0)], at[corner(1)], at[corner(2)], at[corner(3)]));
        for (std::size_t i = 0; i < rim.size() / stride; ++i) {
            const std::uint32_t a = corner(i), b = corner(i + 1);
            if (a == b) continue;
            const std::uint32_t middle = stride == 2 ? rim[i * 2 + 1] : kNone;
            sides_.push_back({std::min(a, b), std::max(a, b), middle, face, a > b});
        }
    }

    void addSegment(const SurfaceSegment& segment) {
        const std::array<std::uint32_t, 2> ends{vertexOf(segment.nodes[0]), vertexOf(segment.nodes[1])};
        if (isMarked(segment.element)) addMarkedPart(segment.element, ends);
        (hasValues(segment.element, ends) ? result_.segments : result_.greySegments).push_back(ends);
    }

    void addDot(const SurfaceDot& dot) {
        const std::array<std::uint32_t, 1> vertex{vertexOf(dot.node)};
        if (isMarked(dot.element)) addMarkedPart(dot.element, vertex);
        (hasValues(dot.element, vertex) ? result_.dots : result_.greyDots).push_back(vertex);
    }

    bool isMarked(std::uint32_t element) const {
        return !input_.markedElements.empty() && std::ranges::binary_search(input_.markedElements, element);
    }

    /// Keeps the middle of the `center` vertices, which lies on the surface, also of a curved face.
    void addMarkedPart(std::uint32_t element, std::span<const std::uint32_t> center) {
        MarkedPart part{element, {}, {}};
        for (const std::uint32_t vertex : center)
            for (std::size_t c = 0; c < 3; ++c)
                part.middle[c] += result_.positions[vertex][c] / static_cast<double>(center.size());
        result_.markedParts.push_back(part);
    }

    void markFace(std::uint32_t element, std::span<const std::uint32_t> rim,
                  std::span<const std::uint32_t> center) {
        if (!isMarked(element)) return;
        addMarkedPart(element, center);
        const Float3& n = normals_.back();
        result_.markedParts.back().outward = {n[0], n[1], n[2]};
        for (std::size_t i = 0; i < rim.size(); ++i)
            result_.markedEdges.push_back({rim[i], rim[(i + 1) % rim.size()]});
    }

    bool bends(const FaceSide& a, const FaceSide& b) const {
        const Float3& m = normals_[a.face];
        const Float3& n = normals_[b.face];
        const double cosine = m[0] * n[0] + m[1] * n[1] + m[2] * n[2];
        // Neighbours that run along their common side in opposite ways face the same way.
        return (a.reversed != b.reversed ? cosine : -cosine) < kFeatureCosine;
    }

    void addEdges() {
        std::ranges::sort(sides_, [](const FaceSide& a, const FaceSide& b) {
            return a.low != b.low ? a.low < b.low : a.high < b.high;
        });
        for (std::size_t i = 0; i < sides_.size();) {
            std::size_t end = i + 1;
            while (end < sides_.size() && sides_[end].sameEdge(sides_[i]))
                ++end;
            if (end - i != 2 || bends(sides_[i], sides_[i + 1]))
                addEdge(sides_[i], result_.featureEdges);
            else if (input_.meshEdges)
                addEdge(sides_[i], result_.meshEdges);
            i = end;
        }
    }

    static void addEdge(const FaceSide& side, std::vector<std::array<std::uint32_t, 2>>& edges) {
        if (side.middle == kNone) {
            edges.push_back({side.low, side.high});
        } else {
            edges.push_back({side.low, side.middle});
            edges.push_back({side.middle, side.high});
        }
    }

    const SurfaceInput& input_;
    const ScaleLevels& levels_;
    std::vector<std::uint32_t> vertexOfNode_;
    std::vector<Float3> normals_;
    std::vector<FaceSide> sides_;
    ContourSurface result_;
};

} // namespace

Vector3 ContourSurface::toSurface(const std::array<double, 3>& position) const {
    return {(position[0] - center[0]) / unit, (position[1] - center[1]) / unit,
            (position[2] - center[2]) / unit};
}

ContourSurface contourSurfaceOf(const SurfaceFaces& faces, const SurfaceInput& input,
                                const ScaleLevels& levels) {
    return Builder(input, levels).build(faces);
}

} // namespace workbench
