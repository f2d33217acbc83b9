#include "framework/drawing/PixelPath.h"

#include "tests/support/RandomIntegers.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <string>

namespace {

using framework::pixelPath;
using framework::pixelRuns;

/// The pixels of a line as letters.
std::string drawn(const std::vector<CPoint>& points, CSize size) {
    std::vector<std::string> rows(static_cast<std::size_t>(size.cy), std::string(std::size_t(size.cx), '.'));
    for (const CRect& run : pixelRuns(points, CRect(CPoint(), size)))
        for (int y = run.top; y < run.bottom; ++y)
            for (int x = run.left; x < run.right; ++x)
                rows.at(static_cast<std::size_t>(y)).at(static_cast<std::size_t>(x)) = '#';
    std::string text;
    for (const std::string& row : rows)
        text += row + "\n";
    return text;
}

TEST(PixelPath, RunsAreThePixelsNearestToTheLine) {
    constexpr int kLeast = std::numeric_limits<int>::min(), kMost = std::numeric_limits<int>::max();
    constexpr int kFar = 1 << 30;
    const struct {
        const char* name;
        std::vector<CPoint> points;
        const char* pixels;
    } rows[] = {
        {"a line without its end", {{1, 1}, {4, 1}}, "......\n.###..\n......\n......\n"},
        {"to the left", {{4, 1}, {1, 1}}, "......\n..###.\n......\n......\n"},
        {"up", {{1, 3}, {1, 0}}, "......\n.#....\n.#....\n.#....\n"},
        {"slanted", {{0, 0}, {5, 2}}, "##....\n..##..\n....#.\n......\n"},
        {"slanted, to the left", {{5, 2}, {0, 0}}, ".#....\n..##..\n....##\n......\n"},
        {"steep", {{0, 0}, {1, 3}}, "#.....\n#.....\n.#....\n......\n"},
        {"a tie is the upper pixel", {{0, 0}, {4, 2}}, "##....\n..##..\n......\n......\n"},
        {"also on the way back", {{4, 2}, {0, 0}, {0, 0}}, ".#....\n..##..\n....#.\n......\n"},
        {"and upwards", {{0, 2}, {4, 0}}, "...#..\n.##...\n#.....\n......\n"},
        {"and the left one", {{0, 0}, {2, 4}}, "#.....\n#.....\n.#....\n.#....\n"},
        {"there and back again", {{1, 1}, {4, 1}, {2, 1}}, "......\n.####.\n......\n......\n"},
        {"a corner", {{1, 0}, {4, 2}, {1, 3}}, ".#....\n..##..\n...##.\n..#...\n"},
        {"no length", {{1, 1}, {1, 1}}, "......\n......\n......\n......\n"},
        {"far beyond", {{0, 0}, {kFar, kFar / 2}}, "##....\n..##..\n....##\n......\n"},
        {"from far beyond", {{-kFar, 1}, {kFar, 1}}, "......\n######\n......\n......\n"},
        {"past it", {{-kFar, 4}, {kFar, 4}, {6, -kFar}}, "......\n......\n......\n......\n"},
        {"all there is", {{kLeast, kLeast}, {kMost, kMost}}, "#.....\n.#....\n..#...\n...#..\n"},
        {"between the ends",
         {{kMost, 2}, {kLeast, 2}, {3, kMost}, {3, kLeast}},
         "...#..\n...#..\n######\n...#..\n"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(drawn(row.points, {6, 4}), row.pixels) << row.name;
}

TEST(PixelPath, CoversTheSamePixelsWithFewPoints) {
    constexpr int kColumns = 30, kPoints = 1000;
    const CRect seen(0, -5, kColumns, 15);
    const auto covered = [&](const std::vector<CPoint>& points) {
        std::set<std::pair<int, int>> pixels;
        for (const CRect& run : pixelRuns(points, seen))
            for (int y = run.top; y < run.bottom; ++y)
                for (int x = run.left; x < run.right; ++x)
                    pixels.insert({x, y});
        return pixels;
    };
    RandomIntegers random;
    const auto below = [&](int limit) {
        return static_cast<int>(random.below(static_cast<std::size_t>(limit)));
    };
    for (int round = 0; round < 200; ++round) {
        std::vector<CPoint> points;
        const int count = below(round < 100 ? 12 : kPoints) + 1;
        const bool ordered = round % 2 == 0;
        for (int i = 0; i < count; ++i)
            points.push_back({ordered ? i * kColumns / count : below(4), below(20) - 5});
        const auto path = pixelPath(points);
        ASSERT_EQ(covered(path), covered(points)) << random.seedText();
        ASSERT_EQ(path.front(), points.front());
        ASSERT_EQ(path.back(), points.back());
        ASSERT_GE(path.size(), 2U);
        if (ordered) {
            ASSERT_LE(path.size(), 4U * kColumns + 1);
        }
    }
    EXPECT_TRUE(pixelPath({}).empty());
}

} // namespace
