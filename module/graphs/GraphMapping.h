#pragma once

#include "framework/drawing/Geometry.h"

#include <limits>
#include <optional>
#include <span>

/// A point of a graph: x is a time, a frequency or a step as its owner chooses, y a result value.
struct T_GRPH_D {
    double x = 0;
    double y = 0;
};

/// What a graph computes, without its window.
namespace graphs {

/// {minimum, maximum} of nothing yet: any value replaces both.
void setEmptyRange(double range[2]);
/// Takes points into both ranges. What is not a number replaces both ends, and any next value it in turn.
void widenRanges(std::span<const T_GRPH_D> points, double xRange[2], double yRange[2]);
/// {-M, +M} for the larger size M of both ends.
void makeSymmetric(double range[2]);

/// A real cut to an integer; the smallest integer for what is not finite or out of range.
inline int truncated(double value) {
    constexpr double kBelow = -2147483649.0, kAbove = 2147483648.0;
    return value > kBelow && value < kAbove ? static_cast<int>(value) : std::numeric_limits<int>::min();
}

/// With wrap-around: pixels of what is out of range are at the ends of the integers.
constexpr int wrappedSum(int a, int b) {
    return static_cast<int>(static_cast<unsigned>(a) + static_cast<unsigned>(b));
}

/// From values to pixels of a rectangle: the ends of the ranges fall on its edges, y grows upwards. The
/// centre of the rectangle is that of whole pixels.
class PixelMapping {
  public:
    PixelMapping(const CRect& rect, const double xRange[2], const double yRange[2]);
    /// False when all x are equal; every point is then at (0, 0).
    bool isValid() const { return valid_; }
    CPoint at(double x, double y) const {
        if (!valid_) return {};
        return {wrappedSum(truncated((x - middleX_) * scaleX_), centreX_),
                wrappedSum(truncated(scaleY_ * -(y - middleY_)), centreY_)};
    }

  private:
    bool valid_;
    double middleX_, middleY_, scaleX_, scaleY_;
    int centreX_, centreY_;
};

/// The point of a graph under a pixel, with the centre of the rectangle in halves of pixels: there and back
/// may differ by one pixel where the width is odd. Nothing when all x are equal.
std::optional<T_GRPH_D> valueAt(CPoint pixel, const CRect& rect, const double xRange[2],
                                const double yRange[2]);

/// The point whose x is nearest, by halving; `points` ascend by x, which is not checked. Nothing without
/// points. Of two that are equally near it is the neighbour of the one that the halving came to, and of just
/// two points the second.
std::optional<int> nearestPoint(std::span<const T_GRPH_D> points, double x);

/// How many of the first `segments` segments a replay up to `time` shows: those that begin until then, so
/// that the last may reach beyond.
int segmentsUntil(std::span<const T_GRPH_D> points, double time, int segments);
/// How many a replay up to `step` shows: `step` + 1, none before step 0, `segments` at most.
int segmentsOfStep(int step, int segments);

} // namespace graphs
