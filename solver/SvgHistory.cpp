#include "solver/SvgHistory.h"

#include "solver/SvgAxis.h"
#include "solver/SvgPicture.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace solver {
namespace {

constexpr double kWidth = 900, kHeight = 440;
constexpr double kTop = 70, kBottom = 60, kRight = 30;
constexpr double kTickSize = 12;
constexpr std::string_view kGrid = "#e2e2e2", kFrame = "#666666";
/// Blue and vermilion of Okabe and Ito's palette, which colour-blind readers tell apart
/// (https://jfly.uni-koeln.de/color/).
constexpr std::string_view kLine = "#0072b2", kMark = "#d55e00";
constexpr std::size_t kMostMarks = 300;

/// Maps values to pixels.
struct Plane {
    SvgAxis across, upwards;
    double left, right, top, bottom;

    SvgPoint at(double position, double value) const {
        return {left + across.fraction(position) * (right - left),
                bottom - upwards.fraction(value) * (bottom - top)};
    }
};

Plane makePlane(const HistoryPlot& plot) {
    const auto [low, high] = std::minmax_element(plot.values.begin(), plot.values.end());
    Plane plane{makeAxis(plot.positions.front(), plot.positions.back(), 12),
                makeAxis(std::min(*low, 0.0), std::max(*high, 0.0), 9),
                0,
                kWidth - kRight,
                kTop,
                kHeight - kBottom};
    plane.left = 44 + plane.upwards.labelWidth(kTickSize);
    return plane;
}

void drawAxes(SvgPicture& picture, const Plane& plane, const HistoryPlot& plot) {
    const SvgAxis& across = plane.across;
    for (std::size_t i = 0; i < across.ticks.size(); ++i) {
        const double x = plane.left + (plane.right - plane.left) * static_cast<double>(i) /
                                          static_cast<double>(across.ticks.size() - 1);
        picture.line({x, plane.top}, {x, plane.bottom + 5}, kGrid);
        picture.text({x, plane.bottom + 20}, across.label(i),
                     {.size = kTickSize, .anchor = SvgAnchor::Middle});
    }
    const SvgAxis& upwards = plane.upwards;
    for (std::size_t i = 0; i < upwards.ticks.size(); ++i) {
        const double y = plane.bottom - (plane.bottom - plane.top) * static_cast<double>(i) /
                                            static_cast<double>(upwards.ticks.size() - 1);
        const bool zero = std::abs(upwards.ticks[i]) < 0.5 * upwards.step;
        picture.line({plane.left - 5, y}, {plane.right, y}, zero ? kFrame : kGrid);
        picture.text({plane.left - 9, y + 4}, upwards.label(i),
                     {.size = kTickSize, .anchor = SvgAnchor::End});
    }
    picture.line({plane.left, plane.top}, {plane.left, plane.bottom}, kFrame);
    picture.line({plane.left, plane.bottom}, {plane.right, plane.bottom}, kFrame);
    picture.text({(plane.left + plane.right) / 2, kHeight - 16}, across.title(plot.abscissa),
                 {.size = 13, .anchor = SvgAnchor::Middle});
    picture.text({20, (plane.top + plane.bottom) / 2}, upwards.title(plot.ordinate),
                 {.size = 13, .anchor = SvgAnchor::Middle, .upwards = true});
}

/// Indices of the values that keep the outline at one column a pixel, ascending.
std::vector<std::size_t> outline(const HistoryPlot& plot, const Plane& plane) {
    std::vector<std::size_t> kept;
    const auto& values = plot.values;
    const auto column = [&](std::size_t i) { return std::floor(plane.at(plot.positions[i], 0).x); };
    for (std::size_t begin = 0; begin < values.size();) {
        std::size_t end = begin, low = begin, high = begin;
        const double here = column(begin);
        for (; end < values.size() && column(end) == here; ++end) {
            if (values[end] < values[low]) low = end;
            if (values[end] > values[high]) high = end;
        }
        for (const std::size_t i : {begin, std::min(low, high), std::max(low, high), end - 1})
            if (kept.empty() || i > kept.back()) kept.push_back(i);
        begin = end;
    }
    return kept;
}

void drawHistory(SvgPicture& picture, const Plane& plane, const HistoryPlot& plot) {
    std::vector<SvgPoint> points;
    for (const std::size_t i : outline(plot, plane))
        points.push_back(plane.at(plot.positions[i], plot.values[i]));
    picture.polyline(points, kLine, 1.5);

    auto marks = turningPoints(plot.values);
    const std::size_t found = marks.size();
    if (found > kMostMarks) {
        const auto [low, high] = std::minmax_element(plot.values.begin(), plot.values.end());
        marks = {static_cast<std::size_t>(low - plot.values.begin()),
                 static_cast<std::size_t>(high - plot.values.begin())};
    }
    const double radius = marks.size() > 60 ? 2.5 : 4;
    for (const std::size_t i : marks)
        picture.circle(plane.at(plot.positions[i], plot.values[i]), radius, kMark);
    picture.circle({plane.left + 6, 57}, 4, kMark);
    const std::string count = std::to_string(found) + " turning points";
    picture.text({plane.left + 16, 61},
                 found == 0           ? "no turning point: the value stays the same"
                 : found > kMostMarks ? "largest and smallest of " + count
                                      : count,
                 {.size = kTickSize});
}

} // namespace

std::vector<std::size_t> turningPoints(std::span<const double> values) {
    std::vector<std::size_t> points;
    std::size_t last = 0; ///< the first of the equal values in a row that came last
    for (std::size_t i = 1; i < values.size(); ++i) {
        if (values[i] == values[last]) continue;
        const bool turns =
            points.empty() || (values[last] > values[points.back()]) != (values[i] > values[last]);
        if (turns) points.push_back(last);
        last = i;
    }
    if (!points.empty()) points.push_back(last);
    return points;
}

std::string historyPicture(const HistoryPlot& plot) {
    SvgPicture picture(kWidth, kHeight, plot.title);
    picture.text({20, 26}, plot.title, {.size = 16, .bold = true});
    picture.text({20, 45}, plot.subtitle, {.size = 12, .fill = "#555555"});
    const Plane plane = makePlane(plot);
    drawAxes(picture, plane, plot);
    drawHistory(picture, plane, plot);
    return std::move(picture).finish();
}

} // namespace solver
