#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <vector>

namespace solver {

/// A counted cycle: half of one, or a whole one.
struct Cycle {
    double range = 0; ///< positive
    double mean = 0;
    double count = 0; ///< 0.5 or 1
};

/// Rainflow counting by the four-point rule, with the counts of ASTM E1049-85, 5.4.4: a range that lies
/// within both of its neighbours is a whole cycle; what is left at the end (the residue) counts as half
/// cycles.
///
/// A history may be fed in pieces of any size, down to single values; the counts are those of the whole.
/// Values between turning points and repeated values are left out. Values must be finite.
///
/// A `Point` is what a history consists of: a number, or a record that turns into the number that is counted
/// and brings along what else is known at that time.
///
/// Worked line: feeding -2 1 -3 5 -1 3 -4 4 -2 reports the whole cycle (-1, 3) once -4 has turned; finishing
/// reports the halves (-2, 1) (1, -3) (-3, 5) (5, -4) (-4, 4) (4, -2).
template <class Point>
class RainflowOf {
  public:
    /// Forgets the history; keeps the memory.
    void clear();

    /// Calls onCycle(from, to) for every whole cycle that closes, `from` being the earlier of its turning
    /// points.
    template <class OnCycle>
    void feed(std::span<const Point> values, OnCycle&& onCycle);

    /// Ends the history: onCycle for whole cycles that the last value closes, onHalf(from, to) for the
    /// residue.
    template <class OnCycle, class OnHalf>
    void finish(OnCycle&& onCycle, OnHalf&& onHalf);

  private:
    /// Pieces of this length keep the stack small, however long the history is.
    static constexpr std::size_t kPiece = 4096;

    template <class OnCycle>
    void feedPiece(std::span<const Point> values, OnCycle& onCycle);

    /// Puts a turning point behind the `depth` points at `points` and takes the cycles out that it closes.
    template <class OnCycle>
    static std::size_t push(Point* points, std::size_t depth, Point point, OnCycle& onCycle);

    std::vector<Point> points_; ///< turning points that no whole cycle has taken; the first depth_ are in use
    std::size_t depth_ = 0;
    Point last_{};        ///< latest value, a turning point once the history turns
    bool moving_ = false; ///< two different values have come
    bool rising_ = false;
};

using Rainflow = RainflowOf<double>;

/// Replaces `cycles` by the cycles of a whole history. `counter` only lends its memory.
void countCycles(std::span<const double> history, Rainflow& counter, std::vector<Cycle>& cycles);

/// Takes out the cycles whose range is less than `fraction` of the largest one. Any record with a range will
/// do.
template <class AnyCycle>
void dropSmallCycles(std::vector<AnyCycle>& cycles, double fraction) {
    double largest = 0;
    for (const AnyCycle& cycle : cycles)
        largest = std::max(largest, cycle.range);
    std::erase_if(cycles,
                  [limit = fraction * largest](const AnyCycle& cycle) { return cycle.range < limit; });
}

template <class Point>
void RainflowOf<Point>::clear() {
    depth_ = 0;
    moving_ = false;
}

template <class Point>
template <class OnCycle>
std::size_t RainflowOf<Point>::push(Point* points, std::size_t depth, Point point, OnCycle& onCycle) {
    points[depth++] = point;
    while (depth >= 4) {
        const Point a = points[depth - 4], b = points[depth - 3], c = points[depth - 2];
        // Turning points alternate: with b above c, the range b - c lies within both neighbours when a is not
        // above c and `point` is not below b; the other way round with b below c.
        const bool inside = b > c ? a <= c && point >= b : a >= c && point <= b;
        if (!inside) break;
        onCycle(b, c);
        points[depth - 3] = point;
        depth -= 2;
    }
    return depth;
}

template <class Point>
template <class OnCycle>
void RainflowOf<Point>::feed(std::span<const Point> values, OnCycle&& onCycle) {
    for (; values.size() > kPiece; values = values.subspan(kPiece))
        feedPiece(values.first(kPiece), onCycle);
    if (!values.empty()) feedPiece(values, onCycle);
}

template <class Point>
template <class OnCycle>
void RainflowOf<Point>::feedPiece(std::span<const Point> values, OnCycle& onCycle) {
    if (points_.size() < depth_ + values.size() + 1) points_.resize(depth_ + values.size() + 1);
    Point* const points = points_.data();
    std::size_t depth = depth_;
    auto value = values.begin();
    if (depth == 0) {
        last_ = points[depth++] = *value++;
    }
    if (!moving_) {
        while (value != values.end() && *value == last_)
            ++value;
        if (value != values.end()) {
            moving_ = true;
            rising_ = *value > last_;
            last_ = *value++;
        }
    }
    Point last = last_;
    bool rising = rising_;
    for (; value != values.end(); ++value) {
        if (rising ? *value < last : *value > last) {
            depth = push(points, depth, last, onCycle);
            rising = !rising;
        }
        last = *value;
    }
    last_ = last;
    rising_ = rising;
    depth_ = depth;
}

template <class Point>
template <class OnCycle, class OnHalf>
void RainflowOf<Point>::finish(OnCycle&& onCycle, OnHalf&& onHalf) {
    if (moving_) depth_ = push(points_.data(), depth_, last_, onCycle);
    for (std::size_t i = 1; i < depth_; ++i)
        onHalf(points_[i - 1], points_[i]);
    clear();
}

} // namespace solver
