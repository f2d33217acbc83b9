#include "workbench/picture/Pick.h"

#include "tests/workbench/picture/PictureMesh.h"
#include "workbench/picture/ContourDrawing.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace workbench;

/// A model of 3 x 3 x 3 hexahedra in a picture of 900 x 700 without fonts.
class PickTest : public testing::Test {
  protected:
    void show(const std::string& view, const PictureZoom& zoom = {}) {
        drawing->show({900, 700, view, zoom, {}});
    }
    std::optional<PickedPart> pick(const Pixel& at) const {
        return pickAt(*drawing->faces(), drawing->positions(), drawing->surface(), drawing->camera(), at,
                      6.0);
    }
    Pixel seen(const std::array<double, 3>& position) const {
        return drawing->camera().project(drawing->surface().toSurface(position));
    }

    PictureMesh mesh = PictureMesh::cube(3);
    std::vector<float> values = std::vector<float>(mesh.positions.size(), 1.0f);
    std::unique_ptr<ContourDrawing> drawing = [this] {
        ContourPicture picture;
        picture.mesh = mesh.view();
        values[0] = 2.0f;
        picture.values = values;
        auto made = ContourDrawing::make(picture, nullptr, [](const std::string& text, double size, bool) {
            return 0.5 * size * static_cast<double>(text.size());
        });
        EXPECT_TRUE(made) << made.error().message;
        return std::move(*made);
    }();
};

/// Every node of the side that faces the viewer is picked where it is seen, never one behind it, and the
/// element is one of the front row.
TEST_F(PickTest, TheFrontmostPartIsPicked) {
    struct Row {
        const char* view;
        std::size_t axis; ///< across the side that faces the viewer
        double side;
    };
    for (const Row& row : {Row{"front", 1, 0.0}, Row{"back", 1, 1.0}, Row{"left", 0, 0.0},
                           Row{"right", 0, 1.0}, Row{"top", 2, 1.0}, Row{"bottom", 2, 0.0}})
        for (const PictureZoom& zoom : {PictureZoom{}, PictureZoom{3.0, 0.2, -0.1}}) {
            SCOPED_TRACE(row.view);
            show(row.view, zoom);
            for (std::uint32_t node = 0; node < mesh.positions.size(); ++node) {
                if (mesh.positions[node][row.axis] != row.side) continue;
                // A little towards the middle of the side, so that no edge decides.
                auto inside = mesh.positions[node];
                for (std::size_t c = 0; c < 3; ++c)
                    if (c != row.axis) inside[c] += 0.02 * (0.5 - inside[c]);
                const auto part = pick(seen(inside));
                ASSERT_TRUE(part);
                EXPECT_EQ(part->node, node);
                const auto nodes = mesh.view().nodesOf(part->element);
                EXPECT_NE(std::ranges::find(nodes, node), nodes.end());
            }
        }
}

TEST_F(PickTest, BesideTheModelIsNothing) {
    show("front");
    EXPECT_FALSE(pick({5, 5}));
    const Pixel corner = seen({1, 0, 1});
    EXPECT_FALSE(pick({corner[0] + 3, corner[1]}));
}

TEST(Pick, LinesAndDotsHaveAReach) {
    PictureMesh mesh;
    mesh.addNode({0, 0, 0});
    mesh.addNode({10, 0, 0});
    mesh.addNode({5, 0, 8});
    mesh.addElement(ElementType::Line2, {0, 1});
    const auto faces = surfaceFacesOf(mesh.view());
    ASSERT_TRUE(faces && faces->segments.size() == 1);
    ContourSurface surface;
    const ViewCamera camera{{1, 0, 0}, {0, 0, 1}, {0, -1, 0}, 10.0, {100, 100}};
    const auto at = [&](double x, double y) {
        return pickAt(*faces, mesh.positions, surface, camera, {x, y}, 6.0);
    };
    EXPECT_TRUE(at(150, 105));
    EXPECT_EQ(at(190, 100)->node, 1u);
    EXPECT_EQ(at(110, 100)->node, 0u);
    EXPECT_FALSE(at(150, 107));
    EXPECT_FALSE(at(208, 100));
}

/// Angles go back and forth; from them a picture file shows what the window does.
TEST(Angles, OfACameraAreThoseItWasMadeFrom) {
    for (const auto& [text, around, upwards] :
         {std::tuple{"0,0", 0.0, 0.0}, std::tuple{"30,20", 30.0, 20.0}, std::tuple{"-120,-45", -120.0, -45.0},
          std::tuple{"179,89", 179.0, 89.0}, std::tuple{"75,90", 75.0, 90.0},
          std::tuple{"-20,-90", -20.0, -90.0}, std::tuple{"top", 0.0, 90.0},
          std::tuple{"right", 90.0, 0.0}}) {
        const auto angles = anglesOf(*viewAxes(text, {1, 1, 1}));
        EXPECT_NEAR(angles[0], around, 1e-9) << text;
        EXPECT_NEAR(angles[1], upwards, 1e-9) << text;
    }
}

} // namespace
