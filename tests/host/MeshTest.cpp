#include "host/QMMeshManager.h"
#include "host/QMMeshUtil.h"
#include "tests/support/MemoryHost.h"
#include "tests/support/RandomIntegers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace {

using support::MemoryDocument;
using support::MemoryHost;
using support::MemoryMesh;
using Keys = std::vector<ItrKey>;
using Point = std::array<double, 3>;

constexpr ItrKey kNode = MemoryMesh::kNodeKeyBase, kElement = MemoryMesh::kElementKeyBase;

/// Nodes 10, 20, ... 60 in a row of two quadrilaterals (numbers 3 and 8) with a line (number 9) at the end.
struct TwoQuads : MemoryDocument {
    TwoQuads() {
        for (int i = 0; i < 6; ++i)
            mesh.addNode(10 * (i + 1), {i / 2 - 1.0, i % 2 * 2.0, -i * 0.5});
        mesh.addElement(3, ElementType::Quad4, 1, {0, 2, 3, 1});
        mesh.addElement(8, ElementType::Quad4, 1, {2, 4, 5, 3});
        mesh.addElement(9, ElementType::Line2, 1, {4, 5});
        meshSets.put({1, L"empty", {}, {}});
        meshSets.put({2, L"first", {3}, {}});
        meshSets.put({3, L"both", {3, 8}, {10, 60}});
        meshSets.put({4, L"stale", {1, 5, 9, 77}, {5, 15, 20, 99}});
    }
};

TEST(MeshSets, AnswerTheirElementsAndNodesOnce) {
    TwoQuads doc;
    struct Row {
        Keys sets;
        Keys elements, nodes; ///< positions
        int found;
    };
    const Row rows[] = {
        {{}, {}, {}, 1},
        {{1}, {}, {}, 1},
        {{2}, {0}, {0, 1, 2, 3}, 1},
        {{3, 2, 3}, {0, 1}, {0, 1, 2, 3, 4, 5}, 1},
        {{4}, {2}, {1, 4, 5}, 1},
        {{4, 2}, {0, 2}, {0, 1, 2, 3, 4, 5}, 1},
        {{2, 5}, {}, {}, 0},
    };
    const auto keysAt = [](Keys positions, ItrKey base) {
        for (ItrKey& position : positions)
            position += base;
        return positions;
    };
    const CQMMeshManager manager(doc);
    const CQMMeshUtil util(doc.GetDBSession());
    for (const Row& row : rows) {
        SCOPED_TRACE(&row - rows);
        Keys elements{1}, fromUtil{1}, nodes{1};
        EXPECT_EQ(manager.GetElemListByMsetItrArray(row.sets, elements), row.found);
        EXPECT_EQ(util.GetElemListByMsetItrArray(row.sets, fromUtil), row.found);
        EXPECT_EQ(manager.GetNodeListByMsetItrArray(row.sets, nodes), row.found);
        EXPECT_EQ(elements, keysAt(row.elements, kElement));
        EXPECT_EQ(fromUtil, elements);
        EXPECT_EQ(nodes, keysAt(row.nodes, kNode));
    }
}

TEST(MeshSets, AreShownAndHiddenTogetherOrNotAtAll) {
    const MemoryHost host;
    TwoQuads doc;
    const CQMMeshManager manager(doc);
    EXPECT_EQ(manager.SetShowHideMset({1, 2, 3}, 0), 1);
    EXPECT_EQ(manager.SetShowHideMset({2}, 1), 1);
    EXPECT_EQ(manager.SetShowHideMset({1, 99}, 1), 0);
    EXPECT_EQ(doc.hiddenMeshSets, (std::set<ItrKey>{1, 3}));
}

TEST(MeshManager, BoundingBoxHoldsAllNodes) {
    TwoQuads doc;
    Point lower{9, 9, 9}, upper{9, 9, 9};
    ASSERT_EQ(CQMMeshManager(doc).GetNodeBoundingBox(lower, upper), 1);
    EXPECT_EQ(lower, (Point{-1, 0, -2.5}));
    EXPECT_EQ(upper, (Point{1, 2, 0}));
    MemoryDocument empty;
    EXPECT_EQ(CQMMeshManager(empty).GetNodeBoundingBox(lower, upper), 0);
    EXPECT_EQ(upper, (Point{1, 2, 0}));
}

/// Elements that name a node twice or leave nodes out, against a search through all elements.
TEST(MeshManager, ElementsAtANodeAreThoseThatNameIt) {
    RandomIntegers random;
    for (int round = 0; round < 20; ++round) {
        MemoryDocument doc;
        const std::size_t nodes = 1 + random.below(12);
        for (std::size_t i = 0; i < nodes; ++i)
            doc.mesh.addNode(static_cast<std::int32_t>(3 * i + 1));
        for (std::size_t e = random.below(15); e-- > 0;) {
            std::vector<std::uint32_t> corners(4);
            for (auto& corner : corners)
                corner = static_cast<std::uint32_t>(random.below(nodes));
            doc.mesh.addElement(100 - static_cast<std::int32_t>(e), ElementType::Tet4, 1, corners);
        }
        CQMMeshManager manager(doc);
        const T_QM_MESH_D mesh = doc.mesh.view();
        for (std::uint32_t node = 0; node < nodes; ++node) {
            std::vector<std::uint32_t> expected;
            for (std::size_t e = 0; e < mesh.elementCount(); ++e)
                if (const auto at = mesh.nodesOf(e); std::ranges::count(at, node) > 0)
                    expected.push_back(mesh.elementKeys[e]);
            const auto found = manager.GetElemListByNodeItr(kNode + node);
            EXPECT_EQ(std::vector(found.begin(), found.end()), expected) << random.seedText();
        }
        for (const ItrKey key : {ItrKey{0}, kNode - 1, kNode + nodes, ItrKey{1} << 40})
            EXPECT_TRUE(manager.GetElemListByNodeItr(key).empty()) << key;
    }
}

TEST(MeshManager, FindsKeysThatAreNotInARow) {
    TwoQuads doc;
    doc.mesh.nodeKeys = {5000, 5002, 5003, 6000, 6001, 9000};
    CQMMeshManager manager(doc);
    struct Row {
        ItrKey node;
        std::size_t elements;
    };
    const Row rows[] = {{5000, 1}, {5001, 0}, {5002, 1}, {5003, 2}, {6000, 2},
                        {6001, 2}, {7000, 0}, {9000, 2}, {9001, 0}};
    for (const Row& row : rows)
        EXPECT_EQ(manager.GetElemListByNodeItr(row.node).size(), row.elements) << row.node;
}

TEST(MeshUtil, QuantityIsAreaOrVolumeByCorners) {
    const std::vector<Point> square{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    const auto cube = [](double raised) {
        return std::vector<Point>{{0, 0, 0}, {1, 0, 0}, {1, 1, 0},      {0, 1, 0},
                                  {0, 0, 1}, {1, 0, 1}, {1, 1, raised}, {0, 1, 1}};
    };
    const auto with = [](std::vector<Point> points, std::size_t between) {
        points.resize(points.size() + between, {50, -60, 70});
        return points;
    };
    const std::vector<Point> tet{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    const std::vector<Point> turned{{0, 0, 0}, {0, 1, 0}, {1, 0, 0}, {0, 0, 1}};
    const std::vector<Point> pyramid{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 3}};
    const std::vector<Point> wedge{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 2}, {1, 0, 2}, {0, 1, 5}};
    struct Row {
        const char* name;
        ElementType type;
        std::vector<Point> nodes;
        double quantity;
    };
    const Row rows[] = {
        {"line", ElementType::Line2, {{0, 0, 0}, {3, 0, 0}}, 0},
        {"point", ElementType::Point, {{0, 0, 0}}, 0},
        {"tilted triangle", ElementType::Tri3, {{0, 0, 0}, {0, 4, 3}, {2, 0, 0}}, 5},
        {"triangle without width", ElementType::Tri3, {{0, 0, 0}, {1, 1, 1}, {2, 2, 2}}, 0},
        {"triangle of 6", ElementType::Tri6, with({{0, 0, 0}, {0, 4, 3}, {2, 0, 0}}, 3), 5},
        {"square", ElementType::Quad4, square, 1},
        {"square of 8", ElementType::Quad8, with(square, 4), 1},
        {"warped square",
         ElementType::Quad4,
         {{0, 0, 0}, {1, 0, 0}, {1, 1, 1}, {0, 1, 0}},
         std::sqrt(6.0) / 2},
        {"tetrahedron", ElementType::Tet4, tet, 1.0 / 6},
        {"tetrahedron, turned inside out", ElementType::Tet4, turned, 1.0 / 6},
        {"tetrahedron of 10", ElementType::Tet10, with(tet, 6), 1.0 / 6},
        {"pyramid", ElementType::Pyramid5, pyramid, 1},
        {"pyramid of 13", ElementType::Pyramid13, with(pyramid, 8), 1},
        {"wedge with a slanting top", ElementType::Wedge6, wedge, 1.5}, // 0.5 x mean height
        {"wedge of 15", ElementType::Wedge15, with(wedge, 9), 1.5},
        {"cube", ElementType::Hex8, cube(1), 1},
        {"cube under the surface z = 1 + xy", ElementType::Hex8, cube(2), 1.25},
        {"cube of 20", ElementType::Hex20, with(cube(2), 12), 1.25},
    };
    for (const double shift : {0.0, 1e6})
        for (const Row& row : rows) {
            MemoryDocument doc;
            std::vector<std::uint32_t> nodes;
            for (const Point& p : row.nodes)
                nodes.push_back(doc.mesh.addNode(static_cast<std::int32_t>(nodes.size() + 1),
                                                 {p[0] + shift, p[1] - shift, p[2] + shift}));
            doc.mesh.addElement(4, ElementType::Point, 1, {0});
            doc.mesh.addElement(5, row.type, 1, nodes);
            const CQMMeshUtil util(doc.GetDBSession());
            EXPECT_NEAR(util.GetElemQuantity(kElement + 1), row.quantity, 1e-8)
                << row.name << " at " << shift;
            EXPECT_EQ(util.GetElemQuantity(kElement + 2), 0);
        }
}

} // namespace
