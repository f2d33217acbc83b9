#pragma once

#include "workbench/picture/ScaleLevels.h"
#include "workbench/picture/SurfaceFaces.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace workbench {

using Vector3 = std::array<double, 3>;

/// What is drawn: triangles and lines over vertices of their own, placed around the middle of the model in
/// units of half its longest extent, so that single precision suffices for every size and place.
struct ContourSurface {
    Vector3 center{};
    double unit = 1.0; ///< length of one surface unit in the model
    Vector3 extent{};  ///< edge lengths of the box around the vertices, in surface units
    std::vector<std::array<float, 3>> positions;
    std::vector<float> scalePositions; ///< a vertex: place of its value on the scale bar; NaN without a value
    std::vector<std::array<std::uint32_t, 3>> triangles;     ///< all three vertices have a value
    std::vector<std::array<std::uint32_t, 3>> greyTriangles; ///< of faces where a node has none
    std::vector<std::array<std::uint32_t, 2>> segments;      ///< line elements with values at both ends
    std::vector<std::array<std::uint32_t, 2>> greySegments;
    std::vector<std::array<std::uint32_t, 2>> featureEdges; ///< borders, and edges where the surface bends

    /// Surface coordinates of a place in the model.
    Vector3 toSurface(const std::array<double, 3>& position) const;
};

/// Triangles of the faces, quadratic ones with their mid nodes. A quadrilateral gets a vertex in its middle,
/// valued by its shape functions, so that no diagonal shows in the contour. A mid node without a value takes
/// the mean of its corners. `values` has one entry a node.
ContourSurface contourSurfaceOf(const SurfaceFaces& faces,
                                std::span<const std::array<double, 3>> nodePositions,
                                std::span<const float> values, const ScaleLevels& levels);

} // namespace workbench
