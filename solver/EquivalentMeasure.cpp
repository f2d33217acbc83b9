#include "solver/EquivalentMeasure.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace solver {
namespace {

double largestComponent(const Tensor& t) {
    double largest = 0;
    for (const double component : t)
        largest = std::max(largest, std::abs(component));
    return largest;
}

/// The in-plane pair of a tensor without shear out of that plane, and its third principal value.
PrincipalExtremes planeExtremes(double a, double b, double shear, double third) {
    const double centre = 0.5 * a + 0.5 * b;
    const double radius = std::hypot(0.5 * a - 0.5 * b, shear);
    return {std::max(centre + radius, third), std::min(centre - radius, third)};
}

PrincipalExtremes generalExtremes(const Tensor& t) {
    const double scale = largestComponent(t);
    const double factor = 1.0 / scale;
    if (!std::isfinite(factor)) return {0, 0}; // below the normal range of numbers
    const double xx = t[0] * factor, yy = t[1] * factor, zz = t[2] * factor;
    const double xy = t[3] * factor, yz = t[4] * factor, zx = t[5] * factor;
    const double mean = (xx + yy + zz) / 3.0;
    const double a = xx - mean, b = yy - mean, c = zz - mean;
    const double p = std::sqrt((a * a + b * b + c * c + 2.0 * (xy * xy + yz * yz + zx * zx)) / 6.0);
    if (p < 1e-15) return {scale * mean, scale * mean}; // hydrostatic but for rounding
    const double determinant = a * (b * c - yz * yz) - xy * (xy * c - yz * zx) + zx * (xy * yz - b * zx);
    const double cosine = std::clamp(0.5 * determinant / (p * p * p), -1.0, 1.0);
    const double angle = std::acos(cosine) / 3.0;
    constexpr double kThird = 2.0 * std::numbers::pi / 3.0;
    return {scale * (mean + 2.0 * p * std::cos(angle)), scale * (mean + 2.0 * p * std::cos(angle + kThird))};
}

/// Compression rules only when it is larger by more than rounding: in pure shear the sign must not flicker.
bool compressionRules(const PrincipalExtremes& extremes) {
    return -extremes.smallest > extremes.largest * (1.0 + 1e-7);
}

double absoluteMaximumPrincipal(const Tensor& tensor) {
    const PrincipalExtremes extremes = principalExtremes(tensor);
    return compressionRules(extremes) ? extremes.smallest : extremes.largest;
}

double vonMises(const Tensor& t) {
    const double scale = largestComponent(t);
    if (scale == 0) return 0;
    const double d1 = t[0] / scale - t[1] / scale, d2 = t[1] / scale - t[2] / scale,
                 d3 = t[2] / scale - t[0] / scale;
    const double xy = t[3] / scale, yz = t[4] / scale, zx = t[5] / scale;
    return scale * std::sqrt(0.5 * (d1 * d1 + d2 * d2 + d3 * d3) + 3.0 * (xy * xy + yz * yz + zx * zx));
}

double signedVonMises(const Tensor& tensor) {
    return compressionRules(principalExtremes(tensor)) ? -vonMises(tensor) : vonMises(tensor);
}

double signedTresca(const Tensor& tensor) {
    const PrincipalExtremes extremes = principalExtremes(tensor);
    const double intensity = extremes.largest - extremes.smallest;
    return compressionRules(extremes) ? -intensity : intensity;
}

template <double (*measure)(const Tensor&)>
void forEach(std::span<const Tensor> path, std::span<double> values) {
    std::transform(path.begin(), path.end(), values.begin(), measure);
}

constexpr std::array<EquivalentMeasure, 4> kTable{{
    {"absolute maximum principal", forEach<absoluteMaximumPrincipal>, false},
    {"signed von Mises", forEach<signedVonMises>, true},
    {"signed Tresca", forEach<signedTresca>, true},
    {"critical plane", nullptr, false},
}};

} // namespace

PrincipalExtremes principalExtremes(const Tensor& t) {
    const auto [xx, yy, zz, xy, yz, zx] = t;
    if (yz == 0 && zx == 0) return planeExtremes(xx, yy, xy, zz);
    if (xy == 0 && zx == 0) return planeExtremes(yy, zz, yz, xx);
    if (xy == 0 && yz == 0) return planeExtremes(zz, xx, zx, yy);
    return generalExtremes(t);
}

std::span<const EquivalentMeasure> equivalentMeasures() {
    return kTable;
}

} // namespace solver
