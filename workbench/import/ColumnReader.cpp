#include "workbench/import/ColumnReader.h"

#include "workbench/import/FixedField.h"

#include <array>

#if defined(__x86_64__) && defined(__GNUC__)
#include <immintrin.h>
#define VEXA_HAS_AVX2_COLUMNS 1
#endif

namespace workbench::fixedfield {

bool readColumn(const char* field, std::size_t stride, std::size_t count, float* out) {
    RealReader reader;
    for (std::size_t i = 0; i < count; ++i, field += stride)
        out[i] = reader.read(field);
    return reader.allGood();
}

#ifdef VEXA_HAS_AVX2_COLUMNS
namespace {

/// Powers of ten by what the exponent's bytes add up to: its two digits, and 384 for a minus.
constexpr int kMinus = 384;
struct PowersByExponent {
    std::array<double, 512> values{};
    PowersByExponent() {
        for (int e = 0; e < 100; ++e) {
            values[std::size_t(e)] = kPowers[e - 5 + kPowerBias];
            values[std::size_t(e + kMinus)] = kPowers[-e - 5 + kPowerBias];
        }
    }
};

/// Two fields, one in each half.
__attribute__((target("avx2"))) inline __m256i loadTwo(const char* low, const char* high) {
    const __m128i first = _mm_loadu_si128(reinterpret_cast<const __m128i*>(low));
    const __m128i second = _mm_loadu_si128(reinterpret_cast<const __m128i*>(high));
    return _mm256_inserti128_si256(_mm256_castsi128_si256(first), second, 1);
}

__attribute__((target("avx2"))) inline __m256i twice(__m128i half) {
    return _mm256_broadcastsi128_si256(half);
}

/// Four fields at a time, by the same arithmetic as RealReader's.
__attribute__((target("avx2"))) bool readColumnAvx2(const char* field, std::size_t stride, std::size_t count,
                                                    float* out) {
    static const PowersByExponent powers;
    // By byte of a field: sign, digit, point, five digits, E, sign, two digits, and four bytes of no concern.
    const __m256i zeros =
        twice(_mm_setr_epi8(' ', '0', '.', '0', '0', '0', '0', '0', 'E', '+', '0', '0', 0, 0, 0, 0));
    const __m256i minus = twice(_mm_setr_epi8(0x0D, 0, 0, 0, 0, 0, 0, 0, 0, 6, 0, 0, 0, 0, 0, 0));
    const __m256i limits = twice(_mm_setr_epi8(0, 9, 0, 9, 9, 9, 9, 9, 0, 0, 9, 9, -1, -1, -1, -1));
    // Sums of two bytes, then of two of those: d0 d1 of the mantissa, d2..d5, the exponent with its sign.
    const __m256i bytePair = twice(_mm_setr_epi8(0, 100, 0, 10, 10, 1, 10, 1, 0, 64, 10, 1, 0, 0, 0, 0));
    const __m256i wordPair = twice(_mm_setr_epi16(1000, 1000, 100, 1, 1, 1, 0, 0));
    const __m256i cutBits = _mm256_set1_epi64x(0x1FFFFFFF), middle = _mm256_set1_epi64x(0x10000000);
    const __m256i nearMiddle = _mm256_set1_epi64x(5);
    const __m128i tableMask = _mm_set1_epi32(511), largeExponent = _mm_set1_epi32(0x60); // 32 and above

    __m256i bad = _mm256_setzero_si256();
    __m128i badExponent = _mm_setzero_si128();
    std::size_t i = 0;
    for (; i + 4 <= count; i += 4, field += 4 * stride) {
        const __m256i a = _mm256_xor_si256(loadTwo(field, field + 2 * stride), zeros);
        const __m256i b = _mm256_xor_si256(loadTwo(field + stride, field + 3 * stride), zeros);
        bad = _mm256_or_si256(bad,
                              _mm256_subs_epu8(_mm256_andnot_si256(_mm256_cmpeq_epi8(a, minus), a), limits));
        bad = _mm256_or_si256(bad,
                              _mm256_subs_epu8(_mm256_andnot_si256(_mm256_cmpeq_epi8(b, minus), b), limits));

        const __m256i sumsA = _mm256_madd_epi16(_mm256_maddubs_epi16(a, bytePair), wordPair);
        const __m256i sumsB = _mm256_madd_epi16(_mm256_maddubs_epi16(b, bytePair), wordPair);
        const __m256i heads = _mm256_unpacklo_epi32(sumsA, sumsB);
        const __m256i mantissas = _mm256_add_epi32(heads, _mm256_shuffle_epi32(heads, 0x4E));
        const __m128i mantissa = _mm256_castsi256_si128(_mm256_permute4x64_epi64(mantissas, 0x08));
        const __m256i tails = _mm256_unpackhi_epi32(sumsA, sumsB);
        const __m128i exponent = _mm256_castsi256_si128(_mm256_permute4x64_epi64(tails, 0x08));
        badExponent = _mm_or_si128(badExponent, _mm_and_si128(exponent, largeExponent));

        const __m256d power =
            _mm256_i32gather_pd(powers.values.data(), _mm_and_si128(exponent, tableMask), 8);
        const __m256d product = _mm256_mul_pd(_mm256_cvtepi32_pd(mantissa), power);
        const __m256i cut = _mm256_sub_epi32(_mm256_and_si256(_mm256_castpd_si256(product), cutBits), middle);
        bad = _mm256_or_si256(bad, _mm256_cmpgt_epi32(nearMiddle, _mm256_abs_epi32(cut)));

        const __m256i firstBytes = _mm256_permute4x64_epi64(_mm256_unpacklo_epi32(a, b), 0x08);
        const __m128i signs = _mm_slli_epi32(_mm256_castsi256_si128(firstBytes), 31);
        _mm_storeu_ps(out + i, _mm_or_ps(_mm256_cvtpd_ps(product), _mm_castsi128_ps(signs)));
    }
    const bool good = _mm256_testz_si256(bad, bad) && _mm_testz_si128(badExponent, badExponent);
    return good && readColumn(field, stride, count - i, out + i);
}

} // namespace
#endif

ColumnReader fastestColumnReader() {
#ifdef VEXA_HAS_AVX2_COLUMNS
    if (__builtin_cpu_supports("avx2")) return readColumnAvx2;
#endif
    return readColumn;
}

} // namespace workbench::fixedfield
