#pragma once

#include "workbench/picture/ScaleLevels.h"
#include "workbench/picture/SurfaceFaces.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace workbench {

using Vector3 = std::array<double, 3>;

/// The mesh as it is drawn.
struct SurfaceInput {
    std::span<const std::array<double, 3>> positions;     ///< one a node, deformed or not
    std::span<const std::array<double, 3>> restPositions; ///< of the undeformed model; empty where it is that
    std::span<const float> values;                        ///< one a node; NaN = no value
    std::span<const std::uint8_t> valuedElements;         ///< 0 = without a value; empty: by the nodes alone
    std::span<const std::uint32_t> markedElements;        ///< indices into the mesh, ascending
    bool meshEdges = false;                               ///< keep the edges of all elements
    bool restOutline = false;                             ///< the undeformed edges are drawn too
};

/// A visible face or line of an element that is marked.
struct MarkedPart {
    std::uint32_t element = 0;
    Vector3 middle{};  ///< surface coordinates
    Vector3 outward{}; ///< unit normal; zero for a line
};

/// What is drawn: triangles, lines and dots over vertices of their own, placed around the middle of the model
/// in units of half its longest extent, so that single precision suffices for every size and place.
struct ContourSurface {
    Vector3 center{};
    double unit = 1.0; ///< length of one surface unit in the model
    Vector3 extent{};  ///< edge lengths of the box around the vertices, in surface units
    std::vector<std::array<float, 3>> positions;
    std::vector<std::array<float, 3>> restPositions; ///< of the vertices before deformation; or empty
    bool restOutline = false;                        ///< the feature edges are drawn there too
    std::vector<float> scalePositions; ///< a vertex: place of its value on the scale bar; NaN without a value
    std::vector<std::array<std::uint32_t, 3>> triangles;     ///< all three vertices have a value
    std::vector<std::array<std::uint32_t, 3>> greyTriangles; ///< of faces where a node has none
    std::vector<std::array<std::uint32_t, 2>> segments;      ///< line elements with values at both ends
    std::vector<std::array<std::uint32_t, 2>> greySegments;
    std::vector<std::array<std::uint32_t, 1>> dots; ///< nodes of point elements and springs
    std::vector<std::array<std::uint32_t, 1>> greyDots;
    std::vector<std::array<std::uint32_t, 2>> featureEdges; ///< borders, and edges where the surface bends
    std::vector<std::array<std::uint32_t, 2>> meshEdges;    ///< the other edges of elements, when wanted
    std::vector<std::array<std::uint32_t, 2>> markedEdges;  ///< around the parts of marked elements
    std::vector<MarkedPart> markedParts;                    ///< in no order

    bool hasGrey() const { return !greyTriangles.empty() || !greySegments.empty() || !greyDots.empty(); }

    /// Surface coordinates of a place in the model.
    Vector3 toSurface(const std::array<double, 3>& position) const;
};

/// Triangles of the faces, quadratic ones with their mid nodes. A quadrilateral gets a vertex in its middle,
/// valued by its shape functions between the values of its nodes, so that no diagonal shows in the contour. A
/// mid node without a value takes the mean of its corners. Where the surface bends is found on the undeformed
/// model.
ContourSurface contourSurfaceOf(const SurfaceFaces& faces, const SurfaceInput& input,
                                const ScaleLevels& levels);

} // namespace workbench
