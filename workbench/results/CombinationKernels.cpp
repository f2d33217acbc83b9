#include "workbench/results/CombinationKernels.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

// One more body of each loop for processors with wider vectors, chosen when the program starts. Without fused
// multiply-add the results are the same bit for bit.
#if defined(__x86_64__) && defined(__linux__) && defined(__GNUC__) && !defined(__clang__) &&                 \
    !defined(__SANITIZE_ADDRESS__)
#define VEXA_WIDE_VECTORS __attribute__((target_clones("avx2", "default")))
#else
#define VEXA_WIDE_VECTORS
#endif

namespace workbench::kernels {
namespace {

/// A value as it takes part in an envelope: scaled in 64 bits, rounded once.
template <Envelope kind>
float member(float value, double factor) {
    const float scaled = static_cast<float>(static_cast<double>(value) * factor);
    return kind == Envelope::AbsoluteMaximum ? std::fabs(scaled) : scaled;
}

template <Envelope kind>
bool isBeyond(float value, float extreme) {
    if constexpr (kind == Envelope::Minimum) return value < extreme;
    if constexpr (kind == Envelope::SignedAbsoluteMaximum) return std::fabs(value) > std::fabs(extreme);
    return value > extreme;
}

template <Envelope kind>
VEXA_WIDE_VECTORS void begin(float* extremes, const float* values, std::size_t count, double factor) {
    for (std::size_t i = 0; i < count; ++i)
        extremes[i] = member<kind>(values[i], factor);
}

/// `a` where the bits of `mask` are all set, `b` where they are all clear.
float choose(std::uint32_t mask, float a, float b) {
    return std::bit_cast<float>((std::bit_cast<std::uint32_t>(a) & mask) |
                                (std::bit_cast<std::uint32_t>(b) & ~mask));
}

/// Masks instead of branches, which compilers do not turn into vector instructions when stores hang on them.
template <Envelope kind>
VEXA_WIDE_VECTORS void extend(float* __restrict extremes, float* __restrict governing,
                              const float* __restrict values, std::size_t count, double factor,
                              float number) {
    for (std::size_t i = 0; i < count; ++i) {
        const float value = member<kind>(values[i], factor);
        const std::uint32_t mask = isBeyond<kind>(value, extremes[i]) ? ~0u : 0u;
        extremes[i] = choose(mask, value, extremes[i]);
        governing[i] = choose(mask, number, governing[i]);
    }
}

/// Calls work with the kind as a constant.
template <class Work>
void withKind(Envelope kind, Work work) {
    switch (kind) {
    case Envelope::Maximum:
        return work.template operator()<Envelope::Maximum>();
    case Envelope::Minimum:
        return work.template operator()<Envelope::Minimum>();
    case Envelope::AbsoluteMaximum:
        return work.template operator()<Envelope::AbsoluteMaximum>();
    case Envelope::SignedAbsoluteMaximum:
        return work.template operator()<Envelope::SignedAbsoluteMaximum>();
    }
}

VEXA_WIDE_VECTORS void length(float* __restrict derived, const float* x, const float* y, const float* z,
                              std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const double a = x[i], b = y[i], c = z[i];
        derived[i] = static_cast<float>(std::sqrt(a * a + b * b + c * c));
    }
}

/// factor x sqrt(3/2 s:s) of the deviator s.
VEXA_WIDE_VECTORS void deviatorLength(float* __restrict derived, const std::array<const float*, 6>& t,
                                      std::size_t count, double factor) {
    const float *xx = t[0], *yy = t[1], *zz = t[2], *xy = t[3], *yz = t[4], *zx = t[5];
    for (std::size_t i = 0; i < count; ++i) {
        const double a = double(xx[i]) - double(yy[i]);
        const double b = double(yy[i]) - double(zz[i]);
        const double c = double(zz[i]) - double(xx[i]);
        const double d = xy[i], e = yz[i], f = zx[i];
        const double squares = 0.5 * (a * a + b * b + c * c) + 3 * (d * d + e * e + f * f);
        derived[i] = static_cast<float>(factor * std::sqrt(squares));
    }
}

constexpr std::size_t kStretch = 4096; ///< values at a time where zeros stand in for a source

} // namespace

VEXA_WIDE_VECTORS void setScaled(std::span<double> sums, std::span<const float> values, double factor) {
    for (std::size_t i = 0; i < sums.size(); ++i)
        sums[i] = factor * static_cast<double>(values[i]);
}

VEXA_WIDE_VECTORS void addScaled(std::span<double> sums, std::span<const float> values, double factor) {
    double* const __restrict to = sums.data();
    const float* const __restrict from = values.data();
    for (std::size_t i = 0; i < sums.size(); ++i)
        to[i] += factor * static_cast<double>(from[i]);
}

VEXA_WIDE_VECTORS void round(std::span<float> rounded, std::span<const double> sums) {
    for (std::size_t i = 0; i < rounded.size(); ++i)
        rounded[i] = static_cast<float>(sums[i]);
}

void derive(std::span<float> derived, DerivedMeasure measure,
            const std::array<std::span<const float>, 6>& sources) {
    static constexpr std::array<float, kStretch> zeros{};
    for (std::size_t first = 0; first < derived.size(); first += kStretch) {
        const std::size_t count = std::min(kStretch, derived.size() - first);
        std::array<const float*, 6> at;
        for (std::size_t s = 0; s < at.size(); ++s)
            at[s] = sources[s].empty() ? zeros.data() : sources[s].data() + first;
        float* const to = derived.data() + first;
        if (measure == DerivedMeasure::Length)
            length(to, at[0], at[1], at[2], count);
        else
            // sqrt(2/3 e:e) is two thirds of sqrt(3/2 e:e).
            deviatorLength(to, at, count, measure == DerivedMeasure::VonMises ? 1.0 : 2.0 / 3.0);
    }
}

void beginEnvelope(Envelope kind, std::span<float> extremes, std::span<float> governing,
                   std::span<const float> values, double factor, float number) {
    withKind(kind, [&]<Envelope k>() { begin<k>(extremes.data(), values.data(), extremes.size(), factor); });
    std::ranges::fill(governing, number);
}

void extendEnvelope(Envelope kind, std::span<float> extremes, std::span<float> governing,
                    std::span<const float> values, double factor, float number) {
    withKind(kind, [&]<Envelope k>() {
        extend<k>(extremes.data(), governing.data(), values.data(), extremes.size(), factor, number);
    });
}

} // namespace workbench::kernels
