#include "module/fatigue/TensorRotation.h"
#include "tests/module/fatigue/FatigueModel.h"

#include <gtest/gtest.h>

namespace {

using Tensor = std::array<double, 6>;

TEST(TensorRotation, TurnsIntoGlobalAxes) {
    const double h = 0.70710678118654752440;
    const struct {
        const char* what;
        double axes[3][3];
        Tensor local;
        Tensor global;
    } rows[] = {
        {"identity", {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}, {1, 2, 3, 4, 5, 6}, {1, 2, 3, 4, 5, 6}},
        {"swap of x and y", {{0, 1, 0}, {1, 0, 0}, {0, 0, 1}}, {1, 2, 3, 4, 5, 6}, {2, 1, 3, 4, 6, 5}},
        // Local x lies along global y, y along z, z along x: only transpose(A) S A answers this.
        {"cyclic", {{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}, {1, 2, 3, 4, 5, 6}, {3, 1, 2, 6, 4, 5}},
        {"uniaxial at 45 degrees",
         {{h, h, 0}, {-h, h, 0}, {0, 0, 1}},
         {2, 0, 0, 0, 0, 0},
         {1, 1, 0, 1, 0, 0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Tensor turned = row.local;
        fatigue::turnToGlobal(turned.data(), row.axes);
        for (std::size_t c = 0; c < 6; ++c)
            EXPECT_NEAR(turned[c], row.global[c], 1e-15) << c;
    }
}

TEST(TensorRotation, LeavesAnElementWithoutAxesAsItIs) {
    FatigueModel model;
    FatigueProbe solver;
    ASSERT_TRUE(solver.prepare(model.doc, model.definition));
    tagTElem tet{0, 0, static_cast<std::uint8_t>(ElementType::Tet4), 0, {}};
    Tensor in{1, 2, 3, 4, 5, 6};
    Tensor out{};
    EXPECT_EQ(solver.CalcTransformDataElem(tet, in.data(), out.data()), 0);
    EXPECT_EQ(out, in);

    // A triangle whose local x points along global y, and y along z.
    const std::uint32_t a = model.doc.mesh.addNode(100, {0, 0, 0});
    const std::uint32_t b = model.doc.mesh.addNode(101, {0, 2, 0});
    const std::uint32_t c = model.doc.mesh.addNode(102, {0, 0, 3});
    const std::uint32_t nodes[] = {a, b, c};
    tagTElem triangle{0, 0, static_cast<std::uint8_t>(ElementType::Tri3), 0, nodes};
    EXPECT_EQ(solver.CalcTransformDataElem(triangle, in.data(), out.data()), 1);
    EXPECT_EQ(out, (Tensor{3, 1, 2, 6, 4, 5}));
}

/// A triangle on the tetrahedra's first three nodes, local x along global y, y along z.
struct PlateModel : FatigueModel {
    PlateModel() {
        doc.mesh.nodePositions[1] = {0, 2, 0};
        doc.mesh.nodePositions[2] = {0, 0, 3};
        doc.properties.put({83, 3, L"Plate", PropertyType::Shell, 0, 1, {kSteel}});
        doc.mesh.addElement(13, ElementType::Tri3, 83, {0, 1, 2});
        for (support::MemoryStep* step : steps)
            for (const unsigned family : {412100u, 411100u})
                for (const unsigned c : {1u, 2u, 4u, 14u, 51u, 52u, 54u, 64u})
                    step->add(family + c, ResultLocation::ElementCorner, {1.0f * static_cast<float>(c), 2, 3},
                              {2});
        // The solids' tables cover the solids only, now that there are more elements.
        for (support::MemoryStep* step : steps)
            for (const unsigned family : {312100u, 311100u})
                for (const unsigned c : {1u, 2u, 3u, 4u, 5u, 6u, 14u})
                    step->add(family + c, ResultLocation::ElementCorner, {9, 8, 7, 6, 5, 4, 3, 2}, {0, 1});
    }
};

TEST(NodeValues, ReadThePlatesTopFaceAndMeetTheSolids) {
    PlateModel model;
    FatigueProbe solver;
    ASSERT_TRUE(solver.prepare(model.doc, model.definition));
    ASSERT_TRUE(solver.CheckData() && solver.MakeWriteNodeElem());
    fatigue::NodeTables tables(2, 6, 5);
    ASSERT_TRUE(solver.GetStressValue(model.steps[0]->GetCase(), model.steps[0], tables.load(0)));
    const auto at = [&](std::size_t node) {
        Tensor tensor{};
        for (std::size_t c = 0; c < 6; ++c)
            tensor[c] = static_cast<double>(tables.load(0)[c][node]);
        return tensor;
    };
    EXPECT_EQ(at(0), (Tensor{4.5, 5, 5.5, 4.5, 6.5, 4.5})); // plate xx 1, yy 2, xy 4; solid 9
    EXPECT_EQ(at(4), (Tensor{2, 2, 2, 2, 2, 2}));
    for (support::MemoryStep* step : model.steps)
        EXPECT_EQ(dynamic_cast<support::MemoryResult*>(step->GetVResult(412101))->users, 0)
            << "a table is still held";

    model.steps[0]->remove(411104);
    EXPECT_FALSE(solver.GetStrainValue(model.steps[0]->GetCase(), model.steps[0], tables.load(1)));
    // A case without a named step is read at its last one.
    model.steps[3]->remove(412104);
    EXPECT_FALSE(solver.GetStressValue(model.steps[3]->GetCase(), nullptr, tables.load(1)));
}

} // namespace
