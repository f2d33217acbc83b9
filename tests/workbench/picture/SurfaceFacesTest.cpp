#include "workbench/picture/SurfaceFaces.h"

#include "tests/workbench/picture/PictureMesh.h"
#include "workbench/picture/ContourSurface.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

using namespace workbench;

namespace {

using Point = std::array<double, 3>;
using Edge = std::array<int, 2>;

Point middleOf(const Point& a, const Point& b) {
    return {(a[0] + b[0]) / 2, (a[1] + b[1]) / 2, (a[2] + b[2]) / 2};
}

/// Six times the volume between the origin and a triangle, positive when the origin lies behind it.
double sixfoldVolume(const Point& a, const Point& b, const Point& c) {
    return a[0] * (b[1] * c[2] - b[2] * c[1]) + a[1] * (b[2] * c[0] - b[0] * c[2]) +
           a[2] * (b[0] * c[1] - b[1] * c[0]);
}

struct SolidRow {
    const char* name;
    ElementType type;
    std::vector<Point> corners;
    std::vector<Edge> edges; ///< of the mid nodes in the order of CalculiX decks; empty for a linear element
    std::size_t faces;
    double volume;
};

const std::vector<Point> kTetCorners{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
const std::vector<Point> kPyramidCorners{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0.5, 0.5, 1}};
const std::vector<Point> kWedgeCorners{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {0, 1, 1}};
const std::vector<Point> kHexCorners{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                                     {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};

const SolidRow kSolids[] = {
    {"tet4", ElementType::Tet4, kTetCorners, {}, 4, 1.0 / 6},
    {"pyramid5", ElementType::Pyramid5, kPyramidCorners, {}, 5, 1.0 / 3},
    {"wedge6", ElementType::Wedge6, kWedgeCorners, {}, 5, 0.5},
    {"hex8", ElementType::Hex8, kHexCorners, {}, 6, 1.0},
    // Corners first, then edges, as the CalculiX manual draws C3D10, C3D15 and C3D20.
    {"tet10", ElementType::Tet10, kTetCorners, {{0, 1}, {1, 2}, {0, 2}, {0, 3}, {1, 3}, {2, 3}}, 4, 1.0 / 6},
    {"pyramid13",
     ElementType::Pyramid13,
     kPyramidCorners,
     {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {0, 4}, {1, 4}, {2, 4}, {3, 4}},
     5,
     1.0 / 3},
    {"wedge15",
     ElementType::Wedge15,
     kWedgeCorners,
     {{0, 1}, {1, 2}, {2, 0}, {3, 4}, {4, 5}, {5, 3}, {0, 3}, {1, 4}, {2, 5}},
     5,
     0.5},
    {"hex20",
     ElementType::Hex20,
     kHexCorners,
     {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6}, {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}},
     6,
     1.0},
};

PictureMesh meshOf(const SolidRow& row) {
    PictureMesh mesh;
    std::vector<std::uint32_t> nodes;
    for (const Point& corner : row.corners)
        nodes.push_back(mesh.addNode(corner));
    for (const Edge& edge : row.edges)
        nodes.push_back(mesh.addNode(middleOf(row.corners[edge[0]], row.corners[edge[1]])));
    mesh.addElement(row.type, nodes);
    return mesh;
}

} // namespace

TEST(SurfaceFaces, ASolidIsClosedOutwardAndKeepsItsMidNodes) {
    for (const SolidRow& row : kSolids) {
        SCOPED_TRACE(row.name);
        const PictureMesh mesh = meshOf(row);
        const auto surface = surfaceFacesOf(mesh.view());
        ASSERT_TRUE(surface);
        ASSERT_EQ(surface->faces.size(), row.faces);
        double volume = 0.0;
        for (const SurfaceFace& face : surface->faces) {
            const auto at = [&](std::size_t i) { return mesh.positions[face.corners[i % face.cornerCount]]; };
            for (std::size_t i = 2; i < face.cornerCount; ++i)
                volume += sixfoldVolume(at(0), at(i - 1), at(i)) / 6;
            ASSERT_EQ(face.quadratic, !row.edges.empty());
            for (std::size_t i = 0; face.quadratic && i < face.cornerCount; ++i)
                EXPECT_EQ(mesh.positions[face.middles[i]], middleOf(at(i), at(i + 1)));
        }
        EXPECT_NEAR(volume, row.volume, 1e-12);
    }
}

TEST(SurfaceFaces, OnlyOuterFacesRemain) {
    for (const std::uint32_t n : {1u, 2u, 5u}) {
        const auto surface = surfaceFacesOf(PictureMesh::cube(n).view());
        ASSERT_TRUE(surface);
        EXPECT_EQ(surface->faces.size(), 6 * n * n) << n;
    }
}

TEST(SurfaceFaces, ACollapsedHexahedronMeetsAWedge) {
    PictureMesh mesh;
    for (const Point& corner : kWedgeCorners)
        mesh.addNode(corner);
    mesh.addNode({0, 0, 2});
    mesh.addNode({1, 0, 2});
    mesh.addNode({0, 1, 2});
    mesh.addElement(ElementType::Wedge6, {0, 1, 2, 3, 4, 5});
    mesh.addElement(ElementType::Hex8, {3, 4, 5, 5, 6, 7, 8, 8});
    const auto surface = surfaceFacesOf(mesh.view());
    ASSERT_TRUE(surface);
    EXPECT_EQ(surface->faces.size(), 8u); // five each without the common one
}

TEST(SurfaceFaces, AThreeNodeLineIsDrawnThroughItsMiddleWhereverThatIsListed) {
    for (const std::vector<std::uint32_t>& order :
         {std::vector<std::uint32_t>{0, 2, 1}, {0, 1, 2}, {1, 0, 2}}) {
        PictureMesh mesh;
        for (const double x : {0.0, 1.0, 2.0})
            mesh.addNode({x, 0, 0});
        mesh.addElement(ElementType::Line3, order);
        const auto surface = surfaceFacesOf(mesh.view());
        ASSERT_TRUE(surface);
        ASSERT_EQ(surface->segments.size(), 2u);
        for (const auto& [ends, element] : surface->segments)
            EXPECT_DOUBLE_EQ(std::abs(mesh.positions[ends[0]][0] - mesh.positions[ends[1]][0]), 1.0);
    }
}

TEST(SurfaceFaces, PointsAndSpringsAreDotsAndSpecialElementsAreLeftOut) {
    struct Row {
        int type;
        std::vector<std::uint32_t> nodes;
        std::size_t dots, segments;
    };
    const Row rows[] = {{0, {1}, 1, 0},        {16, {0, 1}, 2, 1},       {20, {0, 2}, 2, 1},
                        {30, {0, 1, 2}, 3, 0}, {31, {0, 1, 2, 3}, 0, 0}, {255, {0}, 0, 0}};
    for (const Row& row : rows) {
        PictureMesh mesh;
        for (const double x : {0.0, 1.0, 2.0, 3.0})
            mesh.addNode({x, 0, 0});
        mesh.addElement(ElementType::Line2, {2, 3});
        mesh.addElement(static_cast<ElementType>(row.type), row.nodes);
        const auto surface = surfaceFacesOf(mesh.view());
        ASSERT_TRUE(surface) << row.type;
        EXPECT_EQ(surface->dots.size(), row.dots) << row.type;
        EXPECT_EQ(surface->segments.size(), 1 + row.segments) << row.type;
        for (const SurfaceDot& dot : surface->dots)
            EXPECT_EQ(dot.element, 1u) << row.type;
    }
    PictureMesh mesh;
    mesh.addNode({0, 0, 0});
    mesh.addElement(static_cast<ElementType>(20), {0, 7});
    EXPECT_FALSE(surfaceFacesOf(mesh.view()));
}

TEST(ContourSurface, TheMiddleOfAFaceLiesBetweenItsNodes) {
    PictureMesh mesh;
    for (const Point& at :
         {Point{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}, {1, 0, 0}, {2, 1, 0}, {1, 2, 0}, {0, 1, 0}})
        mesh.addNode(at);
    mesh.addElement(ElementType::Quad8, {0, 1, 2, 3, 4, 5, 6, 7});
    const auto faces = surfaceFacesOf(mesh.view());
    ASSERT_TRUE(faces);
    const struct {
        std::vector<float> values; ///< corners, mid nodes
        double middle;
    } rows[] = {
        {{0, 2, 6, 4, 1, 4, 5, 2}, 3},           // along a plane
        {{1000, 2, 2, 2, 3, 2, 2, 3}, 2},        // the shape functions say -246.5
        {{0, 0, 0, 0, 100, 100, 100, 100}, 100}, // 200
    };
    for (const auto& row : rows) {
        const auto levels = ScaleLevels::make(extentOf(row.values), ValueScale::Linear, std::nullopt);
        ASSERT_TRUE(levels);
        const auto surface = contourSurfaceOf(*faces, {mesh.positions, {}, row.values, {}, {}}, *levels);
        EXPECT_NEAR(surface.scalePositions.back(), levels->positionOf(row.middle), 1e-6) << row.middle;
    }
}

TEST(SurfaceFaces, AMeshThatContradictsItselfIsRefused) {
    struct Row {
        const char* fault;
        void (*spoil)(PictureMesh&);
        const char* message;
    };
    const Row rows[] = {
        {"node beyond the table", [](PictureMesh& m) { m.nodes[3] = 999; }, "element 1 has nodes"},
        {"offsets descend", [](PictureMesh& m) { m.offsets[1] = 20; }, "element 1 has nodes"},
        {"offset beyond the table", [](PictureMesh& m) { m.offsets[8] = 4000000000u; },
         "element 8 has nodes"},
        {"other type", [](PictureMesh& m) { m.types[2] = static_cast<std::uint8_t>(ElementType::Tet10); },
         "element 3 has nodes"},
        {"no last offset", [](PictureMesh& m) { m.offsets.pop_back(); }, "differ in length"},
        {"no last position", [](PictureMesh& m) { m.positions.pop_back(); }, "differ in length"},
        {"coordinate", [](PictureMesh& m) { m.positions[4][1] = std::numeric_limits<double>::quiet_NaN(); },
         "node 5 has a coordinate"},
    };
    for (const Row& row : rows) {
        PictureMesh mesh = PictureMesh::cube(2);
        row.spoil(mesh);
        const auto surface = surfaceFacesOf(mesh.view());
        ASSERT_FALSE(surface) << row.fault;
        EXPECT_NE(surface.error().message.find(row.message), std::string::npos)
            << row.fault << ": " << surface.error().message;
    }
}
