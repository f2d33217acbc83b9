#include "module/graphs/GraphMapping.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

using namespace graphs;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
const double kNan = std::nan("");
constexpr double kLargest = std::numeric_limits<double>::max();
constexpr int kSmallest = std::numeric_limits<int>::min();

std::vector<T_GRPH_D> pointsAt(const std::vector<double>& xs) {
    std::vector<T_GRPH_D> points;
    for (const double x : xs)
        points.push_back({x, 1});
    return points;
}

TEST(GraphMapping, RangesFollowTheComparisons) {
    const struct {
        std::vector<double> values;
        double low, high;
        double size; ///< of the symmetric range
    } rows[] = {
        {{}, kLargest, -kLargest, kLargest},
        {{3}, 3, 3, 3},
        {{1, 5, 2}, 1, 5, 5},
        {{-7, 5}, -7, 5, 7},
        {{0, 0}, 0, 0, 0},
        // What is not a number replaces both ends, and the next value it.
        {{1, 5, kNan}, kNan, kNan, kNan},
        {{1, 5, kNan, 2}, 2, 2, 2},
        {{kNan, 4, 3}, 3, 4, 4},
        {{-kInfinity, 1}, -kInfinity, 1, kInfinity},
        {{kLargest}, kLargest, kLargest, kLargest},
    };
    const auto same = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        const auto& row = rows[i];
        std::vector<T_GRPH_D> points;
        for (const double value : row.values)
            points.push_back({value, value});
        double x[2], y[2];
        setEmptyRange(x);
        setEmptyRange(y);
        widenRanges(points, x, y);
        for (const double* range : {x, y}) {
            EXPECT_TRUE(same(range[0], row.low)) << i << ": " << range[0];
            EXPECT_TRUE(same(range[1], row.high)) << i << ": " << range[1];
        }
        makeSymmetric(y);
        EXPECT_TRUE(same(y[0], -row.size)) << i << ": " << y[0];
        EXPECT_TRUE(same(y[1], row.size)) << i << ": " << y[1];
    }
}

TEST(GraphMapping, PixelsAreCutTowardsTheCentre) {
    const struct {
        CRect rect;
        double xRange[2], yRange[2];
        double x, y;
        CPoint pixel;
    } rows[] = {
        // the corners: y grows upwards
        {{0, 0, 100, 50}, {0, 4}, {-3, 3}, 0, 3, {0, 0}},
        {{0, 0, 100, 50}, {0, 4}, {-3, 3}, 4, -3, {100, 50}},
        {{10, 20, 110, 70}, {0, 4}, {-3, 3}, 4, 3, {110, 20}},
        // cut towards the centre from both sides: 1.9 and -1.9 pixels
        {{0, 0, 100, 100}, {-50, 50}, {-50, 50}, 1.9, 1.9, {51, 49}},
        {{0, 0, 100, 100}, {-50, 50}, {-50, 50}, -1.9, -1.9, {49, 51}},
        {{0, 0, 100, 100}, {-50, 50}, {-50, 50}, 0.99, -0.99, {50, 50}},
        // odd sizes: the centre is 50 of 101, and what lies half a pixel beyond is cut
        {{0, 0, 101, 101}, {-1, 1}, {-1, 1}, 1, 1, {100, 0}},
        {{0, 0, 101, 101}, {-1, 1}, {-1, 1}, -1, -1, {0, 100}},
        // halves of negative sums are cut towards zero too: -3 / 2 is -1
        {{-4, -4, 1, 1}, {-1, 1}, {-1, 1}, 0, 0, {-1, -1}},
        // beyond the ranges, and beyond all pixels
        {{0, 0, 100, 100}, {0, 1}, {-1, 1}, 3, -3, {300, 200}},
        {{0, 0, 100, 100}, {0, 1}, {-1, 1}, 1e30, -1e30, {kSmallest + 50, kSmallest + 50}},
        {{0, 0, 100, 100}, {0, 1}, {-1, 1}, kNan, kInfinity, {kSmallest + 50, kSmallest + 50}},
        {{-300, -300, 100, 100}, {0, 1}, {-1, 1}, kNan, kNan, {2147483548, 2147483548}},
        // no range in y is not guarded: 0 times infinity is no number
        {{0, 0, 100, 100}, {0, 1}, {0, 0}, 1, 0, {100, kSmallest + 50}},
        {{0, 0, 100, 0}, {0, 1}, {0, 0}, 1, 0, {100, kSmallest}},
        // no range in x is
        {{0, 0, 100, 100}, {2, 2}, {-1, 1}, 2, 1, {0, 0}},
        {{50, 50, 100, 100}, {0, -0.0}, {-1, 1}, 2, 1, {0, 0}},
        // an empty rectangle is a point
        {{0, 0, 0, 0}, {0, 1}, {-1, 1}, 1, 1, {0, 0}},
        // a range that no double holds, and one that is not a number
        {{0, 0, 100, 100}, {kLargest, -kLargest}, {-kLargest, kLargest}, 5, 5, {50, 50}},
        {{0, 0, 100, 100}, {kNan, kNan}, {-1, 1}, 5, 1, {kSmallest + 50, 0}},
    };
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        const auto& row = rows[i];
        const CPoint pixel = PixelMapping(row.rect, row.xRange, row.yRange).at(row.x, row.y);
        EXPECT_EQ(pixel.x, row.pixel.x) << "row " << i;
        EXPECT_EQ(pixel.y, row.pixel.y) << "row " << i;
    }
}

TEST(GraphMapping, ValuesUnderPixelsUseHalves) {
    const double x[] = {0, 4}, y[] = {-3, 3};
    const struct {
        CRect rect;
        CPoint pixel;
        double x, y;
    } rows[] = {
        {{0, 0, 100, 50}, {0, 0}, 0, 3},
        {{0, 0, 100, 50}, {100, 50}, 4, -3},
        {{0, 0, 100, 50}, {25, 25}, 1, 0},
        {{10, 20, 110, 70}, {60, 45}, 2, 0},
        {{0, 0, 101, 51}, {50, 25}, 2 - 0.5 * (4.0 / 101), 0.5 * (6.0 / 51)},
    };
    for (const auto& row : rows) {
        const auto value = valueAt(row.pixel, row.rect, x, y);
        ASSERT_TRUE(value);
        EXPECT_DOUBLE_EQ(value->x, row.x);
        EXPECT_DOUBLE_EQ(value->y, row.y);
    }
    const double flat[] = {2, 2};
    EXPECT_FALSE(valueAt({1, 1}, {0, 0, 10, 10}, flat, y));
    EXPECT_TRUE(std::isnan(valueAt({0, 0}, {0, 0, 0, 0}, x, y)->x)) << "an empty rectangle is not guarded";
    // There and back: the same pixel where the width is even, at most one off where it is odd.
    for (const int width : {100, 101}) {
        const CRect rect(0, 0, width, width);
        int off = 0;
        for (int i = 0; i <= width; ++i) {
            const auto value = valueAt({i, i}, rect, x, y);
            // a little outwards, so that rounding does not cut a whole pixel
            const double outwards = i < width / 2 ? -1e-9 : 1e-9;
            const CPoint back = PixelMapping(rect, x, y).at(value->x + outwards, value->y - outwards);
            off += back != CPoint(i, i);
            EXPECT_LE(std::abs(back.x - i), 1);
            EXPECT_LE(std::abs(back.y - i), 1);
        }
        EXPECT_EQ(off != 0, width % 2 != 0) << width;
    }
}

TEST(GraphMapping, NearestPointGoesToTheNeighbourOfTheProbe) {
    const std::vector<double> none, one{5}, two{0, 1}, three{0, 1, 2}, eight{0, 1, 2, 3, 4, 5, 6, 7};
    const std::vector<double> close{0, 1, 1 + 5e-14, 2, 3}, equal{1, 1, 1, 1};
    const struct {
        const std::vector<double>& xs;
        double x;
        int index;
    } rows[] = {
        {one, -3, 0},
        {one, kNan, 0},
        {two, 0.5, 1}, // a tie goes to the second
        {two, 0.49, 0},
        {two, 0.51, 1},
        {two, -9, 0},
        {two, 9, 1},
        {two, kNan, 1},
        {three, -1, 0},
        {three, 0, 0},
        {three, 2, 2},
        {three, 9, 2},
        {three, 1, 1},
        {three, 0.5, 0}, // the probe is 1, the tie goes below it
        {three, 1.5, 2}, // and above it
        {three, 0.51, 1},
        {three, 1.49, 1},
        {eight, 0.5, 0}, // the probes are 3 and 1
        {eight, 2.5, 2},
        {eight, 3.5, 4},
        {eight, 4.5, 4},
        {eight, 5.5, 6},
        {eight, 6.4, 6},
        {eight, 6.6, 7},
        {close, 1 + 4e-14, 2}, // the probe 2 is near enough
        {close, 1, 2},
        {equal, 1, 0},
        {equal, 2, 3},
        {eight, kNan, 7}, // never out of the
                          // points
        {eight, kInfinity, 7},
        {eight, -kInfinity, 0},
    };
    for (const auto& row : rows) {
        const auto found = nearestPoint(pointsAt(row.xs), row.x);
        ASSERT_TRUE(found);
        EXPECT_EQ(*found, row.index) << row.x << " among " << row.xs.size();
    }
    EXPECT_FALSE(nearestPoint({}, 1));
}

/// Whatever the points are, the answer is one of them; where they ascend it is a nearest one.
TEST(GraphMapping, NearestPointIsNearest) {
    std::vector<double> xs;
    for (int i = 0; i < 40; ++i) {
        xs.push_back(i * i * 0.25);
        const auto points = pointsAt(xs);
        for (double x = -1; x < 420; x += 0.125) {
            const auto found = nearestPoint(points, x);
            double nearest = kInfinity;
            for (const double other : xs)
                nearest = std::min(nearest, std::abs(other - x));
            ASSERT_EQ(std::abs(xs[static_cast<std::size_t>(*found)] - x), nearest)
                << x << " of " << xs.size();
        }
    }
    const std::vector<std::vector<double>> disorder = {
        {3, 2, 1}, {0, 9, 1, 8, 2, 7, 5}, {kNan, 1, 2}, {0, kNan, kNan, kNan, 5}, {0, kNan, 0, kNan, 0, 9}};
    for (const auto& points : disorder)
        for (double x = -1; x < 10; x += 0.25) {
            const auto found = nearestPoint(pointsAt(points), x);
            ASSERT_TRUE(found && *found >= 0 && *found < static_cast<int>(points.size())) << x;
        }
}

TEST(GraphMapping, ReplaysCountSegments) {
    const auto points = pointsAt({0, 1, 2, 3});
    const struct {
        double time;
        int segments, shown;
    } times[] = {{-0.1, 3, 0}, {0, 3, 1},  {0.5, 3, 1}, {1, 3, 2},  {1.99, 3, 2}, {2, 3, 3},
                 {3, 3, 3},    {99, 3, 3}, {99, 2, 2},  {99, 9, 3}, {kNan, 3, 0}, {99, -1, 0}};
    for (const auto& row : times)
        EXPECT_EQ(segmentsUntil(points, row.time, row.segments), row.shown) << row.time;
    EXPECT_EQ(segmentsUntil({}, 1, -1), 0);
    EXPECT_EQ(segmentsUntil(pointsAt({0, kNan, 2, 3}), 9, 3), 1) << "what is not a number ends it";
    const struct {
        int step, segments, shown;
    } steps[] = {{-1, 3, 0},        {0, 3, 1}, {1, 3, 2},
                 {2, 3, 3},         {3, 3, 3}, {std::numeric_limits<int>::max(), 3, 3},
                 {kSmallest, 3, 0}, {0, 0, 0}, {0, -1, 0}};
    for (const auto& row : steps)
        EXPECT_EQ(segmentsOfStep(row.step, row.segments), row.shown) << row.step;
}

} // namespace
