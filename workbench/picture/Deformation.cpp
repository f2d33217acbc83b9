#include "workbench/picture/Deformation.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace workbench {
namespace {

/// The part of the model's longest extent that the largest displacement becomes, at least half of it after
/// rounding; and up to how many extents it is drawn as it is.
constexpr double kWantedShare = 0.1, kLargestTrueShare = 2.0;

double longestExtent(std::span<const std::array<double, 3>> positions) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    double longest = 0.0;
    for (std::size_t c = 0; c < 3; ++c) {
        double low = infinity, high = -infinity;
        for (const auto& position : positions) {
            low = std::min(low, position[c]);
            high = std::max(high, position[c]);
        }
        longest = std::max(longest, high - low);
    }
    return longest;
}

double largestLength(std::span<const std::array<float, 3>> vectors) {
    double largest = 0.0;
    for (const auto& v : vectors) {
        const double length = std::hypot(double(v[0]), double(v[1]), double(v[2]));
        if (std::isfinite(length)) largest = std::max(largest, length);
    }
    return largest;
}

/// The largest of 1, 2 and 5 times a power of ten that is not above `limit`.
double roundedDown(double limit) {
    const double decade = std::pow(10.0, std::floor(std::log10(limit)));
    const double mantissa = limit / decade;
    return (mantissa >= 5.0 ? 5.0 : mantissa >= 2.0 ? 2.0 : 1.0) * decade;
}

} // namespace

double automaticDeformation(const T_QM_MESH_D& mesh, std::span<const std::array<float, 3>> displacements) {
    const double extent = longestExtent(mesh.nodePositions);
    const double share = largestLength(displacements) / extent;
    if (!std::isfinite(share) || share <= 0.0) return 1.0;
    if (share >= kWantedShare && share <= kLargestTrueShare) return 1.0;
    const double factor = roundedDown(kWantedShare / share);
    return std::isfinite(factor) && factor > 0.0 ? factor : 1.0;
}

Result<std::vector<std::array<double, 3>>>
deformedPositions(const T_QM_MESH_D& mesh, std::span<const std::array<float, 3>> displacements,
                  double factor) {
    std::vector<std::array<double, 3>> places(mesh.nodePositions.begin(), mesh.nodePositions.end());
    for (std::size_t node = 0; node < places.size(); ++node) {
        const auto& u = displacements[node];
        if (std::isnan(u[0]) || std::isnan(u[1]) || std::isnan(u[2])) continue;
        for (std::size_t c = 0; c < 3; ++c) {
            places[node][c] += factor * u[c];
            if (!std::isfinite(places[node][c]))
                return Error{"node " + std::to_string(mesh.nodeNumbers[node]) +
                             " is displaced beyond all numbers: draw it undeformed or with a smaller factor"};
        }
    }
    return places;
}

} // namespace workbench
