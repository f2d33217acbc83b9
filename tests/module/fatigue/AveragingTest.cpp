#include "module/fatigue/LoadAverage.h"
#include "tests/support/RandomIntegers.h"

#include <gtest/gtest.h>

using namespace fatigue;

namespace {

/// A mesh of triangles and its arrays; groups are given element by element.
struct Patch {
    std::vector<std::uint32_t> offsets;
    std::vector<std::uint32_t> nodes;
    ElementLists lists;
    std::vector<float> values;
    std::array<float*, 6> arrays{};

    Patch(std::vector<std::uint32_t> connectivity, std::size_t nodeCount, std::vector<ElementGroup> groups)
        : nodes(std::move(connectivity))
        , values(6 * nodeCount) {
        for (std::uint32_t offset = 0; offset <= nodes.size(); offset += 3)
            offsets.push_back(offset);
        lists.mesh = {offsets, nodes, nodeCount};
        for (std::uint32_t e = 0; e < groups.size(); ++e) {
            lists.append(groups[e], e);
            if (hasLocalAxes(groups[e])) lists.axes[static_cast<std::size_t>(groups[e])].push_back(kTurned);
        }
        lists.collectNodes();
        for (std::size_t c = 0; c < 6; ++c)
            arrays[c] = values.data() + c * nodeCount;
    }
    std::vector<float> array(int c) const {
        return {arrays[static_cast<std::size_t>(c)],
                arrays[static_cast<std::size_t>(c)] + lists.mesh.nodeCount};
    }
    /// Local x along global y, y along z, z along x.
    static constexpr LocalAxes kTurned{{{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}, true};
};

using Floats = std::vector<float>;
using Items = std::vector<std::uint32_t>;
constexpr ElementGroup kSolid = ElementGroup::Solid, kPlate = ElementGroup::Plate;

// Elements 0 = nodes 0 1 2 and 1 = nodes 1 2 3; node 4 belongs to nobody.
TEST(LoadAverage, MeansOverTheElementsAtANode) {
    const struct {
        const char* what;
        bool atNodes;
        Floats values;
        Items items;
        bool works;
        Floats means;
    } rows[] = {
        {"corners", false, {1, 2, 3, 10, 20, 30}, {}, true, {1, 6, 11.5f, 30, 0}},
        {"corners of listed elements", false, {1, 2, 3, 10, 20, 30}, {0, 1}, true, {1, 6, 11.5f, 30, 0}},
        {"an element without values leaves its own node empty", false, {1, 2, 3}, {0}, false, {}},
        {"nodes", true, {1, 2, 3, 4, 5}, {}, true, {1, 2, 3, 4, 0}},
        {"listed nodes", true, {1, 2, 3, 4}, {0, 1, 2, 3}, true, {1, 2, 3, 4, 0}},
        {"a listed node is missing", true, {1, 2, 4}, {0, 1, 3}, false, {}},
        {"too few corners", false, {1, 2, 3, 10, 20}, {}, false, {}},
        {"too many nodes", true, {1, 2, 3, 4, 5, 6}, {}, false, {}},
        {"an item beyond the mesh", false, {1, 2, 3, 10, 20, 30}, {0, 2}, false, {}},
        {"items out of order", false, {1, 2, 3, 10, 20, 30}, {1, 0}, false, {}},
        {"an item twice", true, {1, 2, 3, 4}, {0, 1, 1, 3}, false, {}},
        {"values that no item owns", false, {1, 2, 3, 10, 20, 30, 40}, {0, 1}, false, {}},
        {"no values", true, {}, {}, false, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Patch patch({0, 1, 2, 1, 2, 3}, 5, {kSolid, kSolid});
        LoadAverage average(patch.lists, patch.arrays.data());
        const bool works = average.add(kSolid, YY, {row.atNodes, row.values, row.items}) && average.finish();
        EXPECT_EQ(works, row.works);
        if (works) {
            EXPECT_EQ(patch.array(YY), row.means);
        }
    }
}

TEST(LoadAverage, LeavesOutElementsThatAreNotListed) {
    Patch patch({0, 1, 2, 1, 2, 3, 2, 3, 4}, 5, {kSolid, kSolid, kSolid});
    patch.lists.groups[0] = {{0, 1}, {2, 1}};
    patch.lists.collectNodes();
    EXPECT_EQ(patch.lists.nodes, (Items{0, 1, 2, 3, 4}));
    const Floats values{1, 2, 3, 1e9f, 1e9f, 1e9f, 5, 6, 7};
    LoadAverage average(patch.lists, patch.arrays.data());
    ASSERT_TRUE(average.add(kSolid, ZX, {false, values, {}}));
    // The second table covers other elements: no count would serve both.
    EXPECT_FALSE(average.add(kSolid, XX, {false, Floats{1, 2, 3, 4, 5, 6}, Items{0, 2}}));
    ASSERT_TRUE(average.finish());
    EXPECT_EQ(patch.array(ZX), (Floats{1, 2, 4, 6, 7}));
}

TEST(LoadAverage, TurnsPlatesAndMixesThemWithSolids) {
    Patch patch({0, 1, 2, 1, 2, 3}, 4, {kPlate, kSolid});
    LoadAverage average(patch.lists, patch.arrays.data());
    // In the solid all components are the same field; the plate's xx, yy, xy become yy, zz, yz.
    const Floats solid{9, 9, 9, 10, 20, 30};
    for (const TensorComponent c : {XX, YY, ZZ, XY, YZ, ZX})
        ASSERT_TRUE(average.add(kSolid, c, {false, solid, {}}));
    const Floats xx{1, 2, 3}, yy{4, 5, 6}, xy{7, 8, 9};
    const Items plate{0};
    const auto table = [&](const Floats& values) { return TableView{false, values, plate}; };
    ASSERT_TRUE(average.addTurned(kPlate, {table(xx), table(yy), table(xy)}));
    ASSERT_TRUE(average.finish());
    EXPECT_EQ(patch.array(XX), (Floats{0, 5, 10, 30}));
    EXPECT_EQ(patch.array(YY), (Floats{1, 6, 11.5f, 30}));
    EXPECT_EQ(patch.array(ZZ), (Floats{4, 7.5f, 13, 30}));
    EXPECT_EQ(patch.array(YZ), (Floats{7, 9, 14.5f, 30}));
    EXPECT_EQ(patch.array(ZX), (Floats{0, 5, 10, 30}));
}

TEST(LoadAverage, TakesAPlateWithoutAxesAsItIs) {
    Patch patch({0, 1, 2}, 3, {kPlate});
    patch.lists.axes[static_cast<std::size_t>(kPlate)][0].valid = false;
    LoadAverage average(patch.lists, patch.arrays.data());
    const Floats xx{1, 2, 3}, yy{4, 5, 6}, xy{7, 8, 9};
    ASSERT_TRUE(average.addTurned(
        kPlate, {TableView{true, xx, {}}, TableView{true, yy, {}}, TableView{true, xy, {}}}));
    ASSERT_TRUE(average.finish());
    EXPECT_EQ(patch.array(XX), xx);
    EXPECT_EQ(patch.array(XY), xy);
    EXPECT_EQ(patch.array(ZZ), (Floats{0, 0, 0}));
}

TEST(LoadAverage, TurnsEachPlateByItsOwnAxes) {
    // Two plates on the same nodes, the first of them without values.
    Patch patch({0, 1, 2, 0, 1, 2}, 3, {kPlate, kPlate});
    patch.lists.axes[static_cast<std::size_t>(kPlate)][1].valid = false;
    LoadAverage average(patch.lists, patch.arrays.data());
    const Floats xx{1, 2, 3}, yy{4, 5, 6}, xy{7, 8, 9};
    const Items second{1};
    const auto table = [&](const Floats& values) { return TableView{false, values, second}; };
    ASSERT_TRUE(average.addTurned(kPlate, {table(xx), table(yy), table(xy)}) && average.finish());
    EXPECT_EQ(patch.array(XX), xx);
    EXPECT_EQ(patch.array(ZZ), (Floats{0, 0, 0}));
}

TEST(LoadAverage, MixesNodeTablesOfTwoGroups) {
    Patch patch({0, 1, 2, 1, 2, 3}, 4, {kSolid, ElementGroup::PlaneStress});
    LoadAverage average(patch.lists, patch.arrays.data());
    const Floats solid{1, 2, 3, 1e9f}, plane{1e9f, 20, 30, 40};
    ASSERT_TRUE(average.add(kSolid, XX, {true, solid, {}}));
    ASSERT_TRUE(average.add(ElementGroup::PlaneStress, XX, {true, plane, {}}) && average.finish());
    EXPECT_EQ(patch.array(XX), (Floats{1, 11, 16.5f, 40}));
}

/// Element after element, as the definition of the mean reads.
Floats plainMeans(const Patch& patch, const Floats& nodal) {
    Floats sums(patch.lists.mesh.nodeCount), counts(patch.lists.mesh.nodeCount);
    for (const std::uint32_t node : patch.nodes) {
        sums[node] += nodal[node];
        counts[node] += 1;
    }
    for (std::size_t n = 0; n < sums.size(); ++n)
        if (counts[n] > 0) sums[n] /= counts[n];
    return sums;
}

// Seven equal floats divided by seven need not be the float: the short cut for node tables must add too.
TEST(LoadAverage, AddsNodeValuesAsOftenAsElementsMeet) {
    RandomIntegers random;
    SCOPED_TRACE(random.seedText());
    std::vector<std::uint32_t> nodes;
    for (int i = 0; i < 3 * 700; ++i)
        nodes.push_back(static_cast<std::uint32_t>(random.below(200)));
    Patch patch(nodes, 201, std::vector<ElementGroup>(700, kSolid));
    Floats nodal(201);
    for (float& value : nodal)
        value = static_cast<float>(random.below(1u << 30)) / 7.0f;
    LoadAverage average(patch.lists, patch.arrays.data());
    ASSERT_TRUE(average.add(kSolid, XX, {true, nodal, {}}) && average.finish());
    EXPECT_EQ(patch.array(XX), plainMeans(patch, nodal));
    EXPECT_EQ(patch.array(XX)[200], 0.0f);
}

} // namespace
