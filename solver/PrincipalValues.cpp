#include "solver/PrincipalValues.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace solver {
namespace {

// Once more for processors with wide registers; which one runs is chosen at start. Rounding is the same.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_ADDRESS__)
#define VEXA_WIDE __attribute__((target_clones("avx2", "default")))
#else
#define VEXA_WIDE
#endif

constexpr std::size_t kBlock = 64; ///< tensors that go through at a time
constexpr int kDegree = 18;
using Polynomial = std::array<double, kDegree + 1>;

/// cos(2/3 acos(u)) for u in 0 .. 1 as a polynomial in v = 2u - 1, the lowest power first. This function has
/// no edge before u = -1, so its Chebyshev series falls by 5.8 from term to term.
Polynomial interpolate() {
    constexpr int n = kDegree + 1;
    const auto node = [](int j) { return std::numbers::pi * (j + 0.5) / n; };
    // T_0 and T_1 in powers of v, then T_{m+1} = 2 v T_m - T_{m-1}.
    Polynomial before{1.0}, current{0.0, 1.0}, sum{};
    for (int m = 0; m < n; ++m) {
        double coefficient = 0;
        for (int j = 0; j < n; ++j)
            coefficient +=
                std::cos(2.0 / 3.0 * std::acos(0.5 + 0.5 * std::cos(node(j)))) * std::cos(m * node(j));
        coefficient *= (m == 0 ? 1.0 : 2.0) / n;
        for (int k = 0; k < n; ++k)
            sum[k] += coefficient * before[k];
        Polynomial next{};
        for (int k = 0; k < n; ++k)
            next[k] = (k > 0 ? 2.0 * current[k - 1] : 0.0) - before[k];
        before = current;
        current = next;
    }
    return sum;
}

/// With cos(angle) = 2 u u - 1: cos(angle / 3). Even and odd powers in turn, two short chains.
[[gnu::always_inline]] inline double cosineOfThird(const Polynomial& polynomial, double u) {
    const double v = 2.0 * u - 1.0, w = v * v;
    double even = polynomial[kDegree], odd = polynomial[kDegree - 1];
    for (int k = kDegree - 2; k >= 2; k -= 2) {
        even = even * w + polynomial[k];
        odd = odd * w + polynomial[k - 1];
    }
    return even * w + (odd * v + polynomial[0]);
}

/// Components of some tensors and what becomes of them. Loops over these arrays run without branches.
struct Block {
    std::array<std::array<double, kBlock>, 6> t;
    std::array<double, kBlock> centre, radius, cosine, scale;
};

[[gnu::always_inline]] inline void reduce(Block& b) {
    for (std::size_t i = 0; i < kBlock; ++i) {
        double scale = std::abs(b.t[0][i]);
        for (std::size_t k = 1; k < 6; ++k)
            scale = std::max(scale, std::abs(b.t[k][i]));
        const double factor = scale > 1e-300 ? 1.0 / scale : 0.0;
        const double xx = b.t[0][i] * factor, yy = b.t[1][i] * factor, zz = b.t[2][i] * factor;
        const double xy = b.t[3][i] * factor, yz = b.t[4][i] * factor, zx = b.t[5][i] * factor;
        const double mean = (xx + yy + zz) * (1.0 / 3.0);
        const double x = xx - mean, y = yy - mean, z = zz - mean;
        const double square = (x * x + y * y + z * z + 2.0 * (xy * xy + yz * yz + zx * zx)) * (1.0 / 6.0);
        const double p = std::sqrt(square);
        const double determinant = x * (y * z - yz * yz) - xy * (xy * z - yz * zx) + zx * (xy * yz - y * zx);
        const double cube = square * p;
        // Below, the tensor is hydrostatic but for rounding, and the direction of the rest means nothing.
        const double cosine = p > 1e-15 ? 0.5 * determinant / cube : 0.0;
        b.cosine[i] = std::min(std::max(cosine, -1.0), 1.0);
        b.centre[i] = mean;
        b.radius[i] = p + p;
        b.scale[i] = scale > 1e-300 ? scale : 0.0;
    }
}

} // namespace

VEXA_WIDE void principalExtremes(std::span<const Tensor> tensors, std::span<PrincipalExtremes> extremes) {
    static const Polynomial polynomial = interpolate();
    Block block{};
    std::array<double, kBlock> largest, smallest;
    for (std::size_t first = 0; first < tensors.size(); first += kBlock) {
        const std::size_t count = std::min(kBlock, tensors.size() - first);
        for (std::size_t i = 0; i < count; ++i)
            for (std::size_t k = 0; k < 6; ++k)
                block.t[k][i] = tensors[first + i][k];
        reduce(block);
        for (std::size_t i = 0; i < kBlock; ++i) {
            const double c = block.cosine[i], p = block.radius[i], centre = block.centre[i];
            largest[i] = block.scale[i] * (centre + p * cosineOfThird(polynomial, std::sqrt(0.5 + 0.5 * c)));
            smallest[i] = block.scale[i] * (centre - p * cosineOfThird(polynomial, std::sqrt(0.5 - 0.5 * c)));
        }
        for (std::size_t i = 0; i < count; ++i)
            extremes[first + i] = {largest[i], smallest[i]};
    }
}

PrincipalExtremes principalExtremes(const Tensor& tensor) {
    PrincipalExtremes extremes;
    principalExtremes(std::span(&tensor, 1), std::span(&extremes, 1));
    return extremes;
}

} // namespace solver
