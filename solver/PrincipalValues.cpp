#include "solver/PrincipalValues.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace solver {
namespace {

// Once more for processors with wider registers; which one runs is chosen at start. Rounding is the same.
#if defined(__x86_64__) && defined(__ELF__) && defined(__GNUC__) && !defined(__clang__) &&                   \
    !defined(__SANITIZE_ADDRESS__)
#define VEXA_WIDE __attribute__((target_clones("avx512f", "avx2", "default")))
#else
#define VEXA_WIDE
#endif

constexpr std::size_t kBlock = 64; ///< tensors that go through at a time
constexpr int kDegree = 11;
using Polynomial = std::array<double, kDegree + 1>;

/// The half angles of 0 .. 90 degrees have these cosines.
constexpr double kSmallestCosine = std::numbers::sqrt2 / 2, kSpan = 1.0 - kSmallestCosine;

/// (1 - cos(2/3 acos(u))) / (1 - u) for u = 1 - y, without the differences.
double versineShare(double y) {
    const double sine = std::sin(2.0 / 3.0 * std::asin(std::sqrt(0.5 * y)));
    return 2.0 * sine * sine / y;
}

/// versineShare as a polynomial in v of -1 .. 1, which spans the cosines, the lowest power first. The
/// function has no edge before u = -1, so its Chebyshev series falls by 25 from term to term.
Polynomial interpolate() {
    constexpr int n = kDegree + 1;
    const auto node = [](int j) { return std::numbers::pi * (j + 0.5) / n; };
    // T_0 and T_1 in powers of v, then T_{m+1} = 2 v T_m - T_{m-1}.
    Polynomial before{1.0}, current{0.0, 1.0}, sum{};
    for (int m = 0; m < n; ++m) {
        double coefficient = 0;
        for (int j = 0; j < n; ++j)
            coefficient += versineShare(kSpan * (0.5 - 0.5 * std::cos(node(j)))) * std::cos(m * node(j));
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

/// Even and odd powers in turn, two short chains.
[[gnu::always_inline]] inline double valueAt(const Polynomial& polynomial, double v) {
    const double w = v * v;
    double odd = polynomial[kDegree], even = polynomial[kDegree - 1];
    for (int k = kDegree - 2; k >= 1; k -= 2) {
        odd = odd * w + polynomial[k];
        even = even * w + polynomial[k - 1];
    }
    return even + odd * v;
}

/// Components of some tensors and what becomes of them. Loops over these arrays run without branches.
struct Block {
    std::array<std::array<double, kBlock>, 6> t;
    std::array<double, kBlock> centre, radius, cosine, scale, largest, smallest;
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
        b.radius[i] = p;
        b.scale[i] = scale > 1e-300 ? scale : 0.0;
    }
}

/// The values at both ends. With the cosine of the angle's third, c, and its sine, s, the one that stands
/// apart is 2 c radii from the centre, the one at the other end c + sqrt(3) s.
[[gnu::always_inline]] inline void solve(const Polynomial& polynomial, Block& b) {
    for (std::size_t i = 0; i < kBlock; ++i) {
        const double versine = 0.5 - 0.5 * std::abs(b.cosine[i]); // of the angle, halved
        const double half = std::sqrt(1.0 - versine);             // cosine of the half angle
        const double v = (2.0 / kSpan) * (half - kSmallestCosine) - 1.0;
        // By way of 1 - c, so that a twofold value, where s is 0, loses nothing.
        const double rest = valueAt(polynomial, v) * (versine / (1.0 + half));
        const double c = 1.0 - rest, s = std::sqrt(rest * (2.0 - rest));
        const double apart = b.radius[i] * (c + c), other = b.radius[i] * (c + std::numbers::sqrt3 * s);
        const bool above = b.cosine[i] >= 0;
        b.largest[i] = b.scale[i] * (b.centre[i] + (above ? apart : other));
        b.smallest[i] = b.scale[i] * (b.centre[i] - (above ? other : apart));
    }
}

} // namespace

VEXA_WIDE void principalExtremes(std::span<const Tensor> tensors, std::span<PrincipalExtremes> extremes) {
    static const Polynomial polynomial = interpolate();
    Block block{};
    for (std::size_t first = 0; first < tensors.size(); first += kBlock) {
        const std::size_t count = std::min(kBlock, tensors.size() - first);
        for (std::size_t i = 0; i < count; ++i)
            for (std::size_t k = 0; k < 6; ++k)
                block.t[k][i] = tensors[first + i][k];
        reduce(block);
        solve(polynomial, block);
        for (std::size_t i = 0; i < count; ++i)
            extremes[first + i] = {block.largest[i], block.smallest[i]};
    }
}

PrincipalExtremes principalExtremes(const Tensor& tensor) {
    PrincipalExtremes extremes;
    principalExtremes(std::span(&tensor, 1), std::span(&extremes, 1));
    return extremes;
}

} // namespace solver
