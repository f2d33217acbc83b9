#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace workbench {

/// Reading of numbers in fixed columns, as result files hold them: reals "%12.5E", integers "%10d".
namespace fixedfield {

inline constexpr int kRealWidth = 12;
inline constexpr int kIntegerWidth = 10;

/// 10^(i - kPowerBias), rounded correctly, for every exponent that the two bytes of one can be read as.
inline constexpr int kPowerBias = 132;
extern const double kPowers[256];

/// Not zero, once masked, where a byte of `digits` (characters xor '0') is no decimal digit.
constexpr std::uint64_t kTopBits = 0x8080808080808080u;
constexpr std::uint64_t digitCheck(std::uint64_t digits) {
    return (digits + 0x7676767676767676u) | digits;
}

/// Reads fields of the form "%12.5E" by integer arithmetic on whole words, without branches, and remembers
/// whether all of them were so; asked once a row.
///
/// The mantissa m is an integer below 10^7 and the power p is rounded once, so m * p is off by less than two
/// units in the last place of a double. Rounding to float goes wrong only where that could cross the middle
/// between two floats, where the 29 bits cut off lie next to 2^28; such a field counts as not so.
class RealReader {
  public:
    /// The float nearest to the twelve bytes at `field`; meaningless when allGood() is false afterwards.
    float read(const char* field) {
        static_assert(std::endian::native == std::endian::little);
        std::uint64_t head;
        std::uint32_t tail;
        std::memcpy(&head, field, 8);
        std::memcpy(&tail, field + 8, 4);

        // Against " 0.00000": the first byte becomes 0 or, for a minus, 0x0D; the third 0; the others the
        // digits.
        head ^= 0x30303030302E3020u;
        const std::uint32_t negative = static_cast<std::uint32_t>(head & 1);
        bytes_ |= (head + 0x76767676767F7600u) | head;
        rest_ |= (static_cast<std::uint32_t>(head) & 0xFF) ^ (negative * 0x0D);
        // Pairs of neighbours in the odd bytes: 10 d0, d1 d2, d3 d4, 10 d5; together ten times the mantissa.
        const std::uint64_t pairs = head * 10 + (head >> 8);
        const std::uint64_t mantissa = (((pairs >> 8) & 0x000000FF000000FFu) * 0x000186A000000064u +
                                        ((pairs >> 24) & 0x000000FF000000FFu) * 0x0000271000000001u) >>
                                       32;

        // Against "E+00": 0, then 0 or, for a minus, 6, then the digits.
        tail ^= 0x30302B45u;
        const std::uint32_t small = (tail >> 9) & 1;
        bytes_ |= (tail + 0x7676007Fu) | tail;
        rest_ |= ((tail >> 8) & 0xFF) ^ (small * 6);
        const std::uint32_t magnitude = ((tail >> 16) & 0xFF) * 10 + (tail >> 24);
        const std::uint32_t exponent = (magnitude ^ (0 - small)) + small;

        const double product = static_cast<double>(static_cast<std::int64_t>(mantissa)) *
                               kPowers[(exponent - 6 + kPowerBias) & 0xFF];
        const std::uint32_t low = static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(product));
        signs_ |= ((low - (0x10000000u - 4)) & 0x1FFFFFFFu) - 9; // negative next to the middle
        signs_ |= kLargestExponent - magnitude;                  // negative where floats may end
        const std::uint32_t bits = std::bit_cast<std::uint32_t>(static_cast<float>(product));
        return std::bit_cast<float>(bits | negative << 31);
    }

    /// Whether every field read so far was of the form and its float certain.
    bool allGood() const { return ((bytes_ & kTopBits) | rest_ | (signs_ & 0x80000000u)) == 0; }

  private:
    /// From "0.00001E-32" to "9.99999E+32" all numbers are normal floats.
    static constexpr std::uint32_t kLargestExponent = 32;

    std::uint64_t bytes_ = 0; ///< a top bit is set where a byte is not what it must be
    std::uint32_t rest_ = 0;  ///< not zero where a sign is neither of its two
    std::uint32_t signs_ = 0; ///< the top bit is set where a number is left to parseReal
};

/// The ten bytes at `field` as an integer right-aligned between blanks; -1 when they are anything else,
/// negative, or longer than eight digits.
inline std::int32_t readInteger(const char* field) {
    std::uint64_t text;
    std::memcpy(&text, field + 2, 8);
    const std::uint64_t blanks = (~text & 0x1010101010101010u) >> 4; // 1 in each byte that is no digit
    const std::uint64_t blankBytes = blanks * 0xFF;
    bool bad = field[0] != ' ' || field[1] != ' ';
    bad |= ((text ^ 0x2020202020202020u) & blankBytes) != 0;
    bad |= (blankBytes & (blankBytes + 1)) != 0 || blankBytes == ~std::uint64_t{0};
    std::uint64_t digits = (text | 0x1010101010101010u) ^ 0x3030303030303030u;
    bad |= (digitCheck(digits) & kTopBits) != 0;
    digits = digits * 10 + (digits >> 8);
    const std::uint64_t value = (((digits & 0x000000FF000000FFu) * 0x000F424000000064u) +
                                 (((digits >> 16) & 0x000000FF000000FFu) * 0x0000271000000001u)) >>
                                32;
    return bad ? -1 : static_cast<std::int32_t>(value & 0xFFFFFFFFu);
}

enum class RealStatus { Good, NotANumber, TooLarge };

/// Any field: blanks around a number as std::from_chars takes it, rounded correctly; values too small for a
/// float become zero. NaN, infinity, stars and anything else are NotANumber.
RealStatus parseReal(std::string_view field, float& value);

/// Any integer field between blanks; false when it is something else or does not fit.
bool parseInteger(std::string_view field, std::int32_t& value);

} // namespace fixedfield
} // namespace workbench
