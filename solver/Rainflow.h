#pragma once

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
/// Worked line: feeding -2 1 -3 5 -1 3 -4 4 -2 reports the whole cycle (-1, 3) once -4 has turned; finishing
/// reports the halves (-2, 1) (1, -3) (-3, 5) (5, -4) (-4, 4) (4, -2).
class Rainflow {
  public:
    /// Forgets the history; keeps the memory.
    void clear();

    /// Calls onCycle(from, to) for every whole cycle that closes, `from` being the earlier of its turning
    /// points.
    template <class OnCycle>
    void feed(std::span<const double> values, OnCycle&& onCycle);

    /// Ends the history: onCycle for whole cycles that the last value closes, onHalf(from, to) for the
    /// residue.
    template <class OnCycle, class OnHalf>
    void finish(OnCycle&& onCycle, OnHalf&& onHalf);

  private:
    /// Pieces of this length keep the stack small, however long the history is.
    static constexpr std::size_t kPiece = 4096;

    template <class OnCycle>
    void feedPiece(std::span<const double> values, OnCycle& onCycle);

    /// Puts a turning point behind the `depth` points at `points` and takes the cycles out that it closes.
    template <class OnCycle>
    static std::size_t push(double* points, std::size_t depth, double point, OnCycle& onCycle);

    std::vector<double>
        points_; ///< turning points that no whole cycle has taken; the first depth_ are in use
    std::size_t depth_ = 0;
    double last_ = 0;     ///< latest value, a turning point once the history turns
    bool moving_ = false; ///< two different values have come
    bool rising_ = false;
};

/// Replaces `cycles` by the cycles of a whole history. `counter` only lends its memory.
void countCycles(std::span<const double> history, Rainflow& counter, std::vector<Cycle>& cycles);

/// Takes out the cycles whose range is less than `fraction` of the largest one.
void dropSmallCycles(std::vector<Cycle>& cycles, double fraction);

inline void Rainflow::clear() {
    depth_ = 0;
    moving_ = false;
}

template <class OnCycle>
std::size_t Rainflow::push(double* points, std::size_t depth, double point, OnCycle& onCycle) {
    points[depth++] = point;
    while (depth >= 4) {
        const double a = points[depth - 4], b = points[depth - 3], c = points[depth - 2];
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

template <class OnCycle>
void Rainflow::feed(std::span<const double> values, OnCycle&& onCycle) {
    for (; values.size() > kPiece; values = values.subspan(kPiece))
        feedPiece(values.first(kPiece), onCycle);
    if (!values.empty()) feedPiece(values, onCycle);
}

template <class OnCycle>
void Rainflow::feedPiece(std::span<const double> values, OnCycle& onCycle) {
    if (points_.size() < depth_ + values.size() + 1) points_.resize(depth_ + values.size() + 1);
    double* const points = points_.data();
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
    double last = last_;
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

template <class OnCycle, class OnHalf>
void Rainflow::finish(OnCycle&& onCycle, OnHalf&& onHalf) {
    if (moving_) depth_ = push(points_.data(), depth_, last_, onCycle);
    for (std::size_t i = 1; i < depth_; ++i)
        onHalf(points_[i - 1], points_[i]);
    clear();
}

} // namespace solver
