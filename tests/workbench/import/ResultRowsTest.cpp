#include "workbench/import/ResultRows.h"

#include "host/ElementTypes.h"

#include <gtest/gtest.h>

#include <numeric>

namespace {

using namespace workbench;

/// Two S4 side by side (nodes 1 to 6), a C3D4 on one of their nodes (2, 7, 8, 9), and a beam (9, 10).
struct Model {
    std::vector<std::int32_t> nodeNumbers{1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    std::vector<std::array<double, 3>> positions{10};
    std::vector<std::int32_t> elementNumbers{1, 2, 3, 4};
    std::vector<std::uint8_t> types{5, 5, 8, 3};
    std::vector<ElementFamily> families{ElementFamily::Plate, ElementFamily::Plate, ElementFamily::Solid,
                                        ElementFamily::Line};
    std::vector<std::uint32_t> offsets{0, 4, 8, 12, 14};
    std::vector<std::uint32_t> nodes{0, 1, 4, 3, 1, 2, 5, 4, 1, 6, 7, 8, 8, 9};
    std::vector<std::uint16_t> layers;

    ResultMesh mesh() const {
        ResultMesh mesh;
        mesh.nodeNumbers = nodeNumbers;
        mesh.nodePositions = positions;
        mesh.elementNumbers = elementNumbers;
        mesh.elementTypes = types;
        mesh.elementFamilies = families;
        mesh.elementNodeOffsets = offsets;
        mesh.elementNodes = nodes;
        mesh.elementLayers = layers;
        return mesh;
    }
};

/// The second plate has nodes of its own along the common edge, as at a kink.
const std::vector<std::int32_t> kFirst{21, 22, 25, 24, 31, 32, 35, 34};
const std::vector<std::int32_t> kSecond{42, 43, 46, 45, 52, 53, 56, 55};
const std::vector<std::int32_t> kBeam{61, 65, 66, 62, 63, 67, 68, 64};

ExpandedMesh expandedOf(const ResultMesh& mesh) {
    ExpandedMesh expanded(mesh);
    EXPECT_TRUE(expanded.add(0, {1, 1, kFirst}));
    EXPECT_TRUE(expanded.add(1, {2, 1, kSecond}));
    EXPECT_TRUE(expanded.add(3, {4, 1, kBeam}));
    EXPECT_TRUE(expanded.finish());
    return expanded;
}

float valueAt(const NodeRows& rows, const std::vector<float>& table, std::uint32_t position) {
    std::vector<float> space;
    const auto values = rows.valuesOf(table, space);
    const auto found = std::find(rows.positions.begin(), rows.positions.end(), position);
    if (found == rows.positions.end()) return -1;
    return values[static_cast<std::size_t>(found - rows.positions.begin())];
}

TEST(ResultRows, BringsWhatIsExpandedBack) {
    const Model model;
    const ResultMesh mesh = model.mesh();
    const ExpandedMesh expanded = expandedOf(mesh);
    // Own nodes behind the others: rows need not ascend. Each value is its node's number.
    std::vector<std::int32_t> nodes = kFirst;
    nodes.insert(nodes.end(), kSecond.begin(), kSecond.end());
    nodes.insert(nodes.end(), kBeam.begin(), kBeam.end());
    nodes.insert(nodes.end(), {2, 7, 8, 9});
    const std::vector<float> table(nodes.begin(), nodes.end());
    ResultRows rows = ResultRows::of(mesh, NumberIndex(mesh.nodeNumbers), expanded, nodes);
    EXPECT_EQ(rows.foreignNodes, 0u);
    EXPECT_EQ(valueAt(rows.means, table, 0), 26) << "mean of 21 and 31";
    EXPECT_EQ(valueAt(rows.means, table, 1), 2) << "the node itself, which the solid has";
    EXPECT_EQ(valueAt(rows.means, table, 4), 40) << "mean of 25, 35, 45 and 55";
    EXPECT_EQ(valueAt(rows.means, table, 9), 66.5) << "mean of 65, 66, 67 and 68";
    EXPECT_EQ(valueAt(rows.sums(), table, 0), 52);
    EXPECT_EQ(valueAt(rows.sums(), table, 1), 22 + 32 + 42 + 52 + 2);
    EXPECT_EQ(valueAt(rows.sums(), table, 4), 160);
    EXPECT_EQ(rows.solids().positions, (std::vector<std::uint32_t>{1, 6, 7, 8}));
    EXPECT_EQ(valueAt(rows.solids(), table, 1), 2);
    EXPECT_EQ(rows.plates.elements, (std::vector<std::uint32_t>{0, 1}));
    std::vector<float> lower, upper;
    for (const CornerRows::Pair& pair : rows.plates.pairs) {
        lower.push_back(table[pair.lower]);
        upper.push_back(table[pair.upper]);
    }
    EXPECT_EQ(lower, (std::vector<float>{21, 22, 25, 24, 42, 43, 46, 45}));
    EXPECT_EQ(upper, (std::vector<float>{31, 32, 35, 34, 52, 53, 56, 55}));
    EXPECT_EQ(rows.lines, 1u);
}

TEST(ResultRows, TakesBlocksThatLackNodes) {
    const Model model;
    const ResultMesh mesh = model.mesh();
    const ExpandedMesh expanded = expandedOf(mesh);
    struct Row {
        std::vector<std::int32_t> nodes;
        std::vector<std::uint32_t> plates, solids, means;
        std::int32_t repeated, foreign;
    };
    const Row rows[] = {
        {{}, {}, {}, {}, 0, 0},
        {{7, 8}, {}, {6, 7}, {6, 7}, 0, 0},
        {kSecond, {1}, {}, {1, 2, 4, 5}, 0, 0},
        {{21, 22, 25, 24, 31, 32, 35}, {}, {}, {0, 1, 4}, 0, 0}, // the fourth corner has one face
        {{7, 99}, {}, {6}, {6}, 0, 99},
        {{7, 8, 7}, {}, {}, {}, 7, 0},
    };
    for (const Row& row : rows) {
        ResultRows found = ResultRows::of(mesh, NumberIndex(mesh.nodeNumbers), expanded, row.nodes);
        EXPECT_EQ(found.plates.elements, row.plates) << row.nodes.size();
        EXPECT_EQ(found.solids().positions, row.solids) << row.nodes.size();
        EXPECT_EQ(found.means.positions, row.means) << row.nodes.size();
        EXPECT_EQ(found.repeatedNode, row.repeated);
        EXPECT_EQ(found.firstForeignNode, row.foreign);
    }
}

TEST(ExpandedMesh, RefusesWhatTheSolverDoesNotMake) {
    const Model model;
    const ResultMesh mesh = model.mesh();
    struct Row {
        std::size_t position;
        int type;
        std::size_t nodes;
        bool good;
    };
    const Row rows[] = {{0, 1, 8, true},  {0, 1, 7, false},  {0, 1, 0, false}, {0, 4, 20, false},
                        {0, 9, 4, true},  {0, 13, 4, false}, {0, 0, 8, false}, {3, 1, 8, true},
                        {3, 11, 2, true}, {2, 77, 0, true} /* solids are as they are */};
    for (const Row& row : rows) {
        std::vector<std::int32_t> nodes(row.nodes);
        std::iota(nodes.begin(), nodes.end(), 101);
        ExpandedMesh expanded(mesh);
        const auto added = expanded.add(row.position, {model.elementNumbers[row.position], row.type, nodes});
        EXPECT_EQ(bool(added), row.good) << row.position << " as type " << row.type << " of " << row.nodes;
    }
}

/// The outer faces of the layers are the faces of the shell; without all layers there is none.
TEST(ExpandedMesh, StacksLayers) {
    Model model;
    model.layers = {2, 0, 0, 0};
    const ResultMesh mesh = model.mesh();
    for (const int count : {1, 2, 3}) {
        ExpandedMesh expanded(mesh);
        for (int layer = 0; layer < count; ++layer) {
            std::vector<std::int32_t> nodes(8);
            std::iota(nodes.begin(), nodes.end(), 100 * (layer + 1));
            EXPECT_TRUE(expanded.addLayer({5 + layer, 1, nodes}));
        }
        EXPECT_EQ(expanded.finish(), count == 2);
        ASSERT_EQ(expanded.elements().size(), count == 2 ? 1u : 0u);
        if (count != 2) continue;
        const ExpandedMesh::Pair& corner = expanded.pairOf(expanded.elements()[0], 1);
        EXPECT_EQ(corner.node, 1u);
        EXPECT_EQ(corner.lower, 101);
        EXPECT_EQ(corner.upper, 205);
    }
}

} // namespace
