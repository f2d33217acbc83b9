#include "workbench/picture/Pick.h"

#include <algorithm>
#include <cmath>

namespace workbench {
namespace {

/// A node in the picture.
struct Seen {
    Pixel at{};
    double depth = 0.0;
    std::uint32_t node = 0;
};

double side(const Pixel& a, const Pixel& b, const Pixel& p) {
    return (b[0] - a[0]) * (p[1] - a[1]) - (b[1] - a[1]) * (p[0] - a[0]);
}

double distance(const Pixel& a, const Pixel& b) {
    return std::hypot(a[0] - b[0], a[1] - b[1]);
}

/// Depth of a triangle at a point; nothing beside it.
std::optional<double> depthAt(const Seen& a, const Seen& b, const Seen& c, const Pixel& p) {
    const double wa = side(b.at, c.at, p), wb = side(c.at, a.at, p), wc = side(a.at, b.at, p);
    const double area = wa + wb + wc;
    if (std::abs(area) < 1e-9 || wa * area < 0.0 || wb * area < 0.0 || wc * area < 0.0) return std::nullopt;
    return (wa * a.depth + wb * b.depth + wc * c.depth) / area;
}

class Picker {
  public:
    Picker(std::span<const std::array<double, 3>> positions, const ContourSurface& surface,
           const ViewCamera& camera, const Pixel& at, double reach)
        : positions_(positions)
        , surface_(surface)
        , camera_(camera)
        , at_(at)
        , reach_(reach) {}

    void face(const SurfaceFace& face) {
        outline_.clear();
        Seen middle;
        for (std::size_t i = 0; i < face.cornerCount; ++i) {
            outline_.push_back(seen(face.corners[i]));
            const Seen& corner = outline_.back();
            for (std::size_t c = 0; c < 2; ++c)
                middle.at[c] += corner.at[c] / face.cornerCount;
            middle.depth += corner.depth / face.cornerCount;
            if (face.quadratic) outline_.push_back(seen(face.middles[i]));
        }
        const auto beyond = [&](std::size_t c, bool above) {
            return std::ranges::all_of(
                outline_, [&](const Seen& s) { return above ? s.at[c] > at_[c] : s.at[c] < at_[c]; });
        };
        if (beyond(0, true) || beyond(0, false) || beyond(1, true) || beyond(1, false)) return;
        for (std::size_t i = 0; i < outline_.size(); ++i)
            if (const auto depth = depthAt(middle, outline_[i], outline_[(i + 1) % outline_.size()], at_))
                take(*depth, face.element);
    }

    void segment(const SurfaceSegment& segment) {
        outline_ = {seen(segment.nodes[0]), seen(segment.nodes[1])};
        const Seen &a = outline_[0], &b = outline_[1];
        const double dx = b.at[0] - a.at[0], dy = b.at[1] - a.at[1], square = dx * dx + dy * dy;
        const double t =
            square > 0.0 ? std::clamp(((at_[0] - a.at[0]) * dx + (at_[1] - a.at[1]) * dy) / square, 0.0, 1.0)
                         : 0.0;
        if (distance({a.at[0] + t * dx, a.at[1] + t * dy}, at_) <= reach_)
            take(a.depth + t * (b.depth - a.depth) + kBefore, segment.element);
    }

    void dot(const SurfaceDot& dot) {
        outline_ = {seen(dot.node)};
        if (distance(outline_[0].at, at_) <= reach_) take(outline_[0].depth + kBefore, dot.element);
    }

    const std::optional<PickedPart>& best() const { return best_; }

  private:
    static constexpr double kBefore = 1e-3; ///< in surface units

    Seen seen(std::uint32_t node) const {
        const Vector3 place = surface_.toSurface(positions_[node]);
        return {camera_.project(place), camera_.depth(place), node};
    }
    void take(double depth, std::uint32_t element) {
        if (best_ && depth <= depth_) return;
        depth_ = depth;
        const auto nearest = std::ranges::min_element(
            outline_, {}, [&](const Seen& corner) { return distance(corner.at, at_); });
        best_ = PickedPart{element, nearest->node};
    }

    std::span<const std::array<double, 3>> positions_;
    const ContourSurface& surface_;
    const ViewCamera& camera_;
    Pixel at_;
    double reach_;
    std::vector<Seen> outline_;
    std::optional<PickedPart> best_;
    double depth_ = 0.0;
};

} // namespace

std::optional<PickedPart> pickAt(const SurfaceFaces& faces, std::span<const std::array<double, 3>> positions,
                                 const ContourSurface& surface, const ViewCamera& camera, const Pixel& at,
                                 double reach) {
    Picker picker(positions, surface, camera, at, reach);
    for (const SurfaceFace& face : faces.faces)
        picker.face(face);
    for (const SurfaceSegment& segment : faces.segments)
        picker.segment(segment);
    for (const SurfaceDot& dot : faces.dots)
        picker.dot(dot);
    return picker.best();
}

} // namespace workbench
