#include "workbench/picture/Deformation.h"

#include "tests/workbench/picture/PictureMesh.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace workbench;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

std::vector<std::array<float, 3>> movesOf(const PictureMesh& mesh, float largest) {
    std::vector<std::array<float, 3>> moves(mesh.positions.size(), {0, 0, 0});
    moves[3] = {0.6f * largest, 0, -0.8f * largest};
    return moves;
}

} // namespace

TEST(Deformation, TheFactorMakesTheLargestDisplacementVisibleAndRound) {
    struct Row {
        float largest; ///< on a cube of edge length 1
        double factor;
    };
    const Row rows[] = {{0, 1},        {kNaN, 1},      {0.99e-3f, 100},   {0.003f, 20},
                        {4e-5f, 2000}, {0.0999f, 1},   {0.2f, 1},         {1.9f, 1},
                        {30, 0.002},   {1e-30f, 1e29}, {0.99e30f, 1e-31}, {kInfinity, 1}};
    const PictureMesh mesh = PictureMesh::cube(2);
    for (const Row& row : rows) {
        const double factor = automaticDeformation(mesh.view(), movesOf(mesh, row.largest));
        EXPECT_NEAR(factor, row.factor, 1e-9 * row.factor) << row.largest;
    }
}

TEST(Deformation, NodesMoveByTheFactorAndThoseWithoutAValueStay) {
    const PictureMesh mesh = PictureMesh::cube(2);
    auto moves = movesOf(mesh, 0.5f);
    moves[5] = {1, kNaN, 1};
    const auto places = deformedPositions(mesh.view(), moves, -4.0);
    ASSERT_TRUE(places);
    EXPECT_NEAR((*places)[3][0], mesh.positions[3][0] - 1.2, 1e-6);
    EXPECT_NEAR((*places)[3][2], mesh.positions[3][2] + 1.6, 1e-6);
    EXPECT_EQ((*places)[5], mesh.positions[5]);
    const auto beyond = deformedPositions(mesh.view(), movesOf(mesh, 1e30f), 1e300);
    ASSERT_FALSE(beyond);
    EXPECT_NE(beyond.error().message.find("node 4 "), std::string::npos) << beyond.error().message;
}
