#include "solver/TensorColumns.h"

#include <algorithm>
#include <cmath>

namespace solver {

void TensorColumns::resize(std::size_t length) {
    length_ = length;
    for (auto& column : columns_)
        column.resize(length);
}

void TensorColumns::put(std::size_t first, std::span<const Tensor> path) {
    for (std::size_t i = 0; i < path.size(); ++i)
        for (std::size_t k = 0; k < columns_.size(); ++k)
            columns_[k][first + i] = path[i][k];
}

TensorColumns::Extremes TensorColumns::project(const Vector3& n, std::vector<double>& values) const {
    values.resize(length_);
    const double xx = n[0] * n[0], yy = n[1] * n[1], zz = n[2] * n[2];
    const double xy = 2 * n[0] * n[1], yz = 2 * n[1] * n[2], zx = 2 * n[2] * n[0];
    const double *cxx = columns_[0].data(), *cyy = columns_[1].data(), *czz = columns_[2].data(),
                 *cxy = columns_[3].data(), *cyz = columns_[4].data(), *czx = columns_[5].data();
    double* out = values.data();
    for (std::size_t i = 0; i < length_; ++i)
        out[i] = xx * cxx[i] + yy * cyy[i] + zz * czz[i] + xy * cxy[i] + yz * cyz[i] + zx * czx[i];
    // Lanes of their own, so that the comparisons need not wait for each other.
    constexpr std::size_t kLanes = 4;
    std::array<double, kLanes> low, high;
    low.fill(out[0]);
    high.fill(out[0]);
    std::size_t i = 0;
    for (; i + kLanes <= length_; i += kLanes)
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            low[lane] = std::min(out[i + lane], low[lane]);
            high[lane] = std::max(out[i + lane], high[lane]);
        }
    for (; i < length_; ++i) {
        low[0] = std::min(out[i], low[0]);
        high[0] = std::max(out[i], high[0]);
    }
    return {*std::min_element(low.begin(), low.end()), *std::max_element(high.begin(), high.end())};
}

bool TensorColumns::projectable() const {
    constexpr double kRoom = 16;
    return std::ranges::all_of(columns_, [](const std::vector<double>& column) {
        return std::ranges::all_of(column, [](double value) { return std::isfinite(kRoom * value); });
    });
}

} // namespace solver
