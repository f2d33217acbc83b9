#include "workbench/picture/LabelPlacer.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace workbench {
namespace {

// What covering costs, by how much it hurts: a label on a label, on a mark, a line through a label, through a
// mark or another line; a cell of the model; the distance counts 1 a unit.
constexpr double kLabelCost = 1e7, kMarkCost = 2e5, kThroughCost = 1e5, kCrossingCost = 2e4, kModelCost = 6.0;

constexpr double kDistances[] = {2.0, 4.0, 7.0, 11.0, 16.0, 22.0, 30.0};
constexpr int kDirections = 24;

bool contains(const PixelBox& outer, const PixelBox& inner) {
    return inner.left >= outer.left && inner.right <= outer.right && inner.bottom >= outer.bottom &&
           inner.top <= outer.top;
}

bool overlap(const PixelBox& a, const PixelBox& b) {
    return a.left < b.right && b.left < a.right && a.bottom < b.top && b.bottom < a.top;
}

PixelBox grown(const PixelBox& box, double by) {
    return {box.left - by, box.bottom - by, box.right + by, box.top + by};
}

double side(const Pixel& a, const Pixel& b, const Pixel& p) {
    return (b[0] - a[0]) * (p[1] - a[1]) - (b[1] - a[1]) * (p[0] - a[0]);
}

bool cross(const Pixel& a, const Pixel& b, const Pixel& c, const Pixel& d) {
    return side(a, b, c) * side(a, b, d) < 0.0 && side(c, d, a) * side(c, d, b) < 0.0;
}

bool passes(const Pixel& from, const Pixel& to, const PixelBox& box) {
    return cross(from, to, {box.left, box.bottom}, {box.right, box.top}) ||
           cross(from, to, {box.left, box.top}, {box.right, box.bottom});
}

} // namespace

Pixel nearestPoint(const PixelBox& box, const Pixel& to) {
    return {std::clamp(to[0], box.left, box.right), std::clamp(to[1], box.bottom, box.top)};
}

LabelPlacer::LabelPlacer(const PixelBox& area, const CoverageGrid& model, std::span<const Pixel> marks,
                         double radius, double unit)
    : area_(area)
    , model_(model)
    , marks_(marks)
    , radius_(radius)
    , unit_(unit) {}

double LabelPlacer::costOf(std::size_t mark, const PixelBox& box) const {
    const Pixel& from = marks_[mark];
    const Pixel to = nearestPoint(box, from);
    double cost = kModelCost * static_cast<double>(model_.takenIn(box)) +
                  std::hypot(to[0] - from[0], to[1] - from[1]) / unit_;
    const PixelBox spaced = grown(box, 0.2 * unit_);
    for (const PixelBox& label : labels_) {
        if (overlap(spaced, label)) cost += kLabelCost;
        if (passes(from, to, label)) cost += kThroughCost;
    }
    for (const auto& [start, end] : leaders_) {
        if (passes(start, end, box)) cost += kThroughCost;
        if (cross(from, to, start, end)) cost += kCrossingCost;
    }
    const PixelBox aroundMark = grown(box, radius_);
    for (const Pixel& other : marks_) // its own too
        if (contains(aroundMark, {other[0], other[1], other[0], other[1]})) cost += kMarkCost;
    for (std::size_t i = 0; i < marks_.size(); ++i) {
        const Pixel& other = marks_[i];
        if (i != mark && passes(from, to, grown({other[0], other[1], other[0], other[1]}, radius_)))
            cost += kCrossingCost;
    }
    return cost;
}

PixelBox LabelPlacer::place(std::size_t mark, double width, double height) {
    const Pixel& at = marks_[mark];
    const double x = std::clamp(at[0], area_.left + width / 2, std::max(area_.left, area_.right - width / 2));
    const double y =
        std::clamp(at[1], area_.bottom + height / 2, std::max(area_.bottom, area_.top - height / 2));
    PixelBox best{x - width / 2, y - height / 2, x + width / 2, y + height / 2};
    double bestCost = std::numeric_limits<double>::infinity();
    for (const double distance : kDistances)
        for (int d = 0; d < kDirections; ++d) {
            // Up and to the right first: between equal places the earlier one stays.
            const double angle = std::numbers::pi * (0.25 + 2.0 * d / kDirections);
            const double left = at[0] + std::cos(angle) * (distance * unit_ + width / 2) - width / 2;
            const double bottom = at[1] + std::sin(angle) * (distance * unit_ + height / 2) - height / 2;
            const PixelBox box{left, bottom, left + width, bottom + height};
            if (!contains(area_, box)) continue;
            const double cost = costOf(mark, box);
            if (cost < bestCost) {
                best = box;
                bestCost = cost;
            }
        }
    labels_.push_back(best);
    leaders_.push_back({at, nearestPoint(best, at)});
    return best;
}

} // namespace workbench
