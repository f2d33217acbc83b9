#include "workbench/picture/ViewCamera.h"

#include "tests/workbench/picture/PictureMesh.h"
#include "workbench/picture/ContourPicture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using namespace workbench;

namespace {

ContourSurface surfaceOf(const PictureMesh& mesh) {
    const std::vector<float> values(mesh.positions.size(), 1.0f);
    const auto levels = ScaleLevels::make(extentOf(values), ValueScale::Linear, {});
    const auto faces = surfaceFacesOf(mesh.view());
    SurfaceInput input;
    input.positions = mesh.positions;
    input.values = values;
    return contourSurfaceOf(*faces, input, *levels);
}

} // namespace

TEST(ViewCamera, TheModelFillsItsBoxOneWayAndStaysInItTheOther) {
    struct Row {
        const char* name;
        Vector3 size;
    };
    const Row rows[] = {{"cube", {1, 1, 1}},        {"plate", {40, 30, 1}},  {"wall", {40, 1, 30}},
                        {"side wall", {1, 40, 30}}, {"plane", {40, 30, 0}},  {"standing plane", {0, 40, 30}},
                        {"beam", {100, 2, 3}},      {"column", {2, 3, 100}}, {"line", {0, 0, 7}},
                        {"point", {0, 0, 0}}};
    const PixelBox box{20, 30, 500, 330};
    for (const Row& row : rows)
        for (const std::string_view view : viewNames()) {
            SCOPED_TRACE(std::string(row.name) + " " + std::string(view));
            PictureMesh mesh = PictureMesh::cube(1);
            for (auto& position : mesh.positions)
                for (std::size_t i = 0; i < 3; ++i)
                    position[i] *= row.size[i];
            const ContourSurface surface = surfaceOf(mesh);
            ViewCamera camera = *viewAxes(view, surface.extent);
            fitInto(camera, surface, box);
            Pixel low{1e9, 1e9}, high{-1e9, -1e9};
            for (const auto& position : mesh.positions) {
                const Pixel at = camera.project(surface.toSurface(position));
                for (std::size_t i = 0; i < 2; ++i) {
                    low[i] = std::min(low[i], at[i]);
                    high[i] = std::max(high[i], at[i]);
                }
            }
            EXPECT_GE(low[0], box.left - 1e-3);
            EXPECT_GE(low[1], box.bottom - 1e-3);
            EXPECT_LE(high[0], box.right + 1e-3);
            EXPECT_LE(high[1], box.top + 1e-3);
            const double filled =
                std::max((high[0] - low[0]) / box.width(), (high[1] - low[1]) / box.height());
            const bool visible = filled > 0.0; // a line along the view is a point
            EXPECT_NEAR(filled, visible ? 1.0 : 0.0, 1e-5);
            EXPECT_TRUE(visible || view != "iso" || std::string_view(row.name) == "point");
        }
}

TEST(ViewCamera, AnglesGoFromTheFrontToTheRightAndUpwards) {
    const std::pair<const char*, const char*> rows[] = {
        {"0,0", "front"},  {"90,0", "right"}, {"180,0", "back"}, {"-180,0", "back"},
        {"-90,0", "left"}, {"270,0", "left"}, {"0,90", "top"},   {"180,-90", "bottom"}};
    for (const auto& [angles, name] : rows) {
        const auto camera = viewAxes(angles, {1, 1, 1});
        const auto expected = viewAxes(name, {1, 1, 1});
        ASSERT_TRUE(camera) << angles;
        for (std::size_t c = 0; c < 3; ++c) {
            EXPECT_NEAR(camera->toViewer[c], expected->toViewer[c], 1e-12) << angles;
            EXPECT_NEAR(camera->right[c], expected->right[c], 1e-12) << angles;
            EXPECT_NEAR(camera->up[c], expected->up[c], 1e-12) << angles;
        }
    }
    const auto slanted = viewAxes("30,20", {1, 1, 1});
    EXPECT_GT(slanted->toViewer[0], 0.4);
    EXPECT_NEAR(slanted->toViewer[2], 0.342020143, 1e-9);
    EXPECT_GT(slanted->up[2], 0.9);
    for (const char* wrong :
         {"", ",", "30", "30,", "30,95", "400,0", "nan,0", "30,20,10", "3x,1", "isometric"})
        EXPECT_FALSE(viewAxes(wrong, {1, 1, 1})) << wrong;
}

TEST(ViewCamera, ANodeBehindTheModelIsHidden) {
    struct Row {
        const char* view;
        Vector3 node; ///< in the unit cube
        bool hidden;
    };
    const Row rows[] = {{"front", {0.5, 0, 0.5}, false},  {"front", {0.5, 1, 0.5}, true},
                        {"front", {0.5, 0.5, 0.5}, true}, {"back", {0.5, 1, 0.5}, false},
                        {"top", {0.25, 0.25, 1}, false},  {"top", {0.25, 0.25, 0}, true},
                        {"left", {0, 0.25, 0.25}, false}, {"right", {0, 0.25, 0.25}, true},
                        {"iso", {1, 0, 1}, false},        {"iso", {0, 1, 0}, true}};
    const PictureMesh mesh = PictureMesh::cube(4);
    const ContourSurface surface = surfaceOf(mesh);
    for (const Row& row : rows) {
        ViewCamera camera = *viewAxes(row.view, surface.extent);
        fitInto(camera, surface, {0, 0, 100, 100});
        EXPECT_EQ(isHidden(camera, surface, surface.toSurface(row.node)), row.hidden)
            << row.view << " " << row.node[0] << " " << row.node[1] << " " << row.node[2];
    }
}

TEST(ViewCamera, TheMarkOfAVisibleCurvedElementIsNotHidden) {
    // A quadratic shell bent into an arch and a flat one; seen from above neither hides its own middle.
    for (const double rise : {0.0, 0.4})
        for (const ElementType type : {ElementType::Quad8, ElementType::Tri6}) {
            PictureMesh mesh;
            const auto height = [&](double x) { return rise * 4 * x * (1 - x); };
            for (const auto& [x, y] : {std::pair{0.0, 0.0},
                                       {1.0, 0.0},
                                       {1.0, 1.0},
                                       {0.0, 1.0},
                                       {0.5, 0.0},
                                       {1.0, 0.5},
                                       {0.5, 1.0},
                                       {0.0, 0.5},
                                       {0.5, 0.5}})
                mesh.addNode({x, y, height(x)});
            const bool quad = type == ElementType::Quad8;
            mesh.addElement(type, quad ? std::vector<std::uint32_t>{0, 1, 2, 3, 4, 5, 6, 7}
                                       : std::vector<std::uint32_t>{0, 1, 2, 4, 5, 8});
            const std::vector<float> values(mesh.positions.size(), 1.0f);
            const std::vector<std::uint32_t> marked{0};
            SurfaceInput input;
            input.positions = mesh.positions;
            input.values = values;
            input.markedElements = marked;
            const ContourSurface surface =
                contourSurfaceOf(*surfaceFacesOf(mesh.view()), input,
                                 *ScaleLevels::make(extentOf(values), ValueScale::Linear, {}));
            ASSERT_EQ(surface.markedParts.size(), 1u);
            ViewCamera camera = *viewAxes("top", surface.extent);
            fitInto(camera, surface, {0, 0, 100, 100});
            EXPECT_FALSE(isHidden(camera, surface, surface.markedParts[0].middle)) << rise << " " << quad;
        }
}
