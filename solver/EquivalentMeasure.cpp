#include "solver/EquivalentMeasure.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace solver {
namespace {

/// Compression rules only when it is larger by more than rounding: in pure shear the sign must not flicker.
bool compressionRules(const PrincipalExtremes& extremes) {
    return -extremes.smallest > extremes.largest * (1.0 + 1e-7);
}

double absoluteMaximumPrincipal(const Tensor&, const PrincipalExtremes& extremes) {
    return compressionRules(extremes) ? extremes.smallest : extremes.largest;
}

double vonMises(const Tensor& t) {
    double scale = 0;
    for (const double component : t)
        scale = std::max(scale, std::abs(component));
    if (scale == 0) return 0;
    const double d1 = t[0] / scale - t[1] / scale, d2 = t[1] / scale - t[2] / scale,
                 d3 = t[2] / scale - t[0] / scale;
    const double xy = t[3] / scale, yz = t[4] / scale, zx = t[5] / scale;
    return scale * std::sqrt(0.5 * (d1 * d1 + d2 * d2 + d3 * d3) + 3.0 * (xy * xy + yz * yz + zx * zx));
}

double signedVonMises(const Tensor& tensor, const PrincipalExtremes& extremes) {
    return compressionRules(extremes) ? -vonMises(tensor) : vonMises(tensor);
}

double signedTresca(const Tensor&, const PrincipalExtremes& extremes) {
    const double intensity = extremes.largest - extremes.smallest;
    return compressionRules(extremes) ? -intensity : intensity;
}

template <double (*measure)(const Tensor&, const PrincipalExtremes&)>
void forEach(std::span<const Tensor> path, std::span<double> values) {
    std::array<PrincipalExtremes, 256> extremes;
    for (std::size_t first = 0; first < path.size(); first += extremes.size()) {
        const auto piece = path.subspan(first, std::min(extremes.size(), path.size() - first));
        principalExtremes(piece, std::span(extremes).first(piece.size()));
        for (std::size_t i = 0; i < piece.size(); ++i)
            values[first + i] = measure(piece[i], extremes[i]);
    }
}

constexpr std::array<EquivalentMeasure, 4> kTable{{
    {"absolute maximum principal", forEach<absoluteMaximumPrincipal>, false},
    {"signed von Mises", forEach<signedVonMises>, true},
    {"signed Tresca", forEach<signedTresca>, true},
    {"critical plane", nullptr, false},
}};

} // namespace

std::span<const EquivalentMeasure> equivalentMeasures() {
    return kTable;
}

} // namespace solver
