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

} // namespace
