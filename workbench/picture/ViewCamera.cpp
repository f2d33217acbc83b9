#include "workbench/picture/ViewCamera.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <numbers>

namespace workbench {
namespace {

double dot(const Vector3& a, const Vector3& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vector3 cross(const Vector3& a, const Vector3& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Vector3 unit(const Vector3& a) {
    const double length = std::sqrt(dot(a, a));
    return {a[0] / length, a[1] / length, a[2] / length};
}

Vector3 toDouble(const std::array<float, 3>& a) {
    return {a[0], a[1], a[2]};
}

struct NamedView {
    std::string_view name;
    Vector3 toViewer; ///< zero: by the extent
};
constexpr NamedView kViews[] = {{"iso", {0, 0, 0}},    {"front", {0, -1, 0}}, {"back", {0, 1, 0}},
                                {"left", {-1, 0, 0}},  {"right", {1, 0, 0}},  {"top", {0, 0, 1}},
                                {"bottom", {0, 0, -1}}};
constexpr std::string_view kNames[] = {kViews[0].name, kViews[1].name, kViews[2].name, kViews[3].name,
                                       kViews[4].name, kViews[5].name, kViews[6].name};

/// How far "iso" looks along each axis, by the shape of the model's box.
Vector3 isoDirection(const Vector3& extent) {
    std::array<std::size_t, 3> axes{0, 1, 2};
    std::ranges::sort(axes, [&](std::size_t a, std::size_t b) { return extent[a] < extent[b]; });
    const auto [thin, middle, longest] = axes;
    Vector3 amount{0.75, 1.0, 0.65};
    if (extent[thin] <= 1e-4 * extent[middle]) {
        amount = {0.0, 0.0, 0.0};
        amount[thin] = 1.0;
    } else if (extent[thin] < 0.15 * extent[middle]) {
        // A plate that lies: its long side runs across the picture. One that stands: seen a little from
        // above.
        amount[thin] = 1.0;
        amount[middle] = thin == 2 ? 0.6 : 0.4;
        amount[longest] = thin == 2 ? 0.15 : 0.4;
        if (thin != 2) amount[2] = 0.35;
    } else if (extent[middle] < 0.3 * extent[longest]) {
        amount = {0.8, 1.0, 0.55};
        amount[longest] = 0.35;
    }
    return {amount[0], -amount[1], amount[2]};
}

bool readAngle(std::string_view text, double largest, double& angle) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), angle);
    return error == std::errc{} && end == text.data() + text.size() && std::abs(angle) <= largest;
}

/// The axes for a viewer who went `around` from the front to the right and then `upwards`, in degrees.
ViewCamera axesAtAngles(double around, double upwards) {
    constexpr double radian = std::numbers::pi / 180.0;
    const double sa = std::sin(around * radian), ca = std::cos(around * radian);
    const double se = std::sin(upwards * radian), ce = std::cos(upwards * radian);
    ViewCamera camera;
    camera.right = {ca, sa, 0.0};
    camera.up = {-sa * se, ca * se, ce};
    camera.toViewer = {sa * ce, -ca * ce, se};
    return camera;
}

std::optional<ViewCamera> axesOfAngles(std::string_view text) {
    const std::size_t comma = text.find(',');
    double around = 0.0, upwards = 0.0;
    if (comma == std::string_view::npos || !readAngle(text.substr(0, comma), 360.0, around) ||
        !readAngle(text.substr(comma + 1), 90.0, upwards))
        return std::nullopt;
    return axesAtAngles(around, upwards);
}

double edgeSide(const Pixel& a, const Pixel& b, const Pixel& p) {
    return (b[0] - a[0]) * (p[1] - a[1]) - (b[1] - a[1]) * (p[0] - a[0]);
}

} // namespace

std::span<const std::string_view> viewNames() {
    return kNames;
}

bool isViewName(std::string_view text) {
    return viewAxes(text, {1.0, 1.0, 1.0}).has_value();
}

Pixel ViewCamera::project(const Vector3& position) const {
    return {origin[0] + pixelsPerLength * dot(right, position),
            origin[1] + pixelsPerLength * dot(up, position)};
}

double ViewCamera::depth(const Vector3& position) const {
    return dot(toViewer, position);
}

std::optional<ViewCamera> viewAxes(std::string_view name, const Vector3& extent) {
    const auto* view = std::ranges::find(kViews, name, &NamedView::name);
    if (view == std::end(kViews)) return axesOfAngles(name);
    ViewCamera camera;
    camera.toViewer = unit(dot(view->toViewer, view->toViewer) > 0.0 ? view->toViewer : isoDirection(extent));
    const bool vertical = std::abs(camera.toViewer[2]) > 0.999;
    camera.right = unit(cross(vertical ? Vector3{0, 1, 0} : Vector3{0, 0, 1}, camera.toViewer));
    camera.up = cross(camera.toViewer, camera.right);
    return camera;
}

PixelBox boxOf(const ViewCamera& camera, const ContourSurface& surface) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    PixelBox box{infinity, infinity, -infinity, -infinity};
    const auto include = [&](const std::array<float, 3>& vertex) {
        const Pixel at = camera.project(toDouble(vertex));
        box = {std::min(box.left, at[0]), std::min(box.bottom, at[1]), std::max(box.right, at[0]),
               std::max(box.top, at[1])};
    };
    std::ranges::for_each(surface.positions, include);
    if (surface.restOutline) std::ranges::for_each(surface.restPositions, include);
    return box;
}

void fitInto(ViewCamera& camera, const ContourSurface& surface, const PixelBox& box) {
    camera.pixelsPerLength = 1.0;
    camera.origin = {};
    const PixelBox own = boxOf(camera, surface);
    const double across = std::max(own.width() / box.width(), own.height() / box.height());
    camera.pixelsPerLength = across > 0.0 ? 1.0 / across : 1.0;
    camera.origin = {0.5 * (box.left + box.right) - camera.pixelsPerLength * 0.5 * (own.left + own.right),
                     0.5 * (box.bottom + box.top) - camera.pixelsPerLength * 0.5 * (own.bottom + own.top)};
}

void zoomInto(ViewCamera& camera, const PixelBox& box, const PictureZoom& zoom) {
    const Pixel middle{0.5 * (box.left + box.right), 0.5 * (box.bottom + box.top)};
    const Pixel moved{zoom.right, zoom.up};
    camera.pixelsPerLength *= zoom.factor;
    for (std::size_t i = 0; i < 2; ++i)
        camera.origin[i] =
            middle[i] + zoom.factor * (camera.origin[i] - middle[i]) + camera.pixelsPerLength * moved[i];
}

std::array<double, 2> anglesOf(const ViewCamera& camera) {
    constexpr double degree = 180.0 / std::numbers::pi;
    const Vector3& to = camera.toViewer;
    const bool vertical = std::hypot(to[0], to[1]) < 1e-9;
    // From straight above the direction of "right" tells how far around.
    const double around = vertical ? std::atan2(camera.right[1], camera.right[0]) : std::atan2(to[0], -to[1]);
    return {around * degree, std::asin(std::clamp(to[2], -1.0, 1.0)) * degree};
}

bool isHidden(const ViewCamera& camera, const ContourSurface& surface, const Vector3& position) {
    const Pixel at = camera.project(position);
    const double size = surface.extent[0] + surface.extent[1] + surface.extent[2];
    const double nearer = camera.depth(position) + 1e-3 * size;
    const auto covers = [&](const std::array<std::uint32_t, 3>& triangle) {
        std::array<Pixel, 3> corner;
        std::array<double, 3> depth;
        for (std::size_t i = 0; i < 3; ++i) {
            const Vector3 vertex = toDouble(surface.positions[triangle[i]]);
            corner[i] = camera.project(vertex);
            depth[i] = camera.depth(vertex);
        }
        const double a = edgeSide(corner[1], corner[2], at);
        const double b = edgeSide(corner[2], corner[0], at);
        const double c = edgeSide(corner[0], corner[1], at);
        const double area = a + b + c;
        if (std::abs(area) < 1e-9 || a * area < 0.0 || b * area < 0.0 || c * area < 0.0) return false;
        return (a * depth[0] + b * depth[1] + c * depth[2]) / area > nearer;
    };
    return std::ranges::any_of(surface.triangles, covers) ||
           std::ranges::any_of(surface.greyTriangles, covers);
}

} // namespace workbench
