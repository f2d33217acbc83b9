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

/// What became of a field. Bad: the field is no plain "%12.5E" or lies too close to the middle between two
/// floats; parseReal decides then.
struct Real {
    float value;
    bool bad;
};

/// The float nearest to the twelve bytes at `field`, by integer arithmetic on whole words.
///
/// The mantissa m is an integer below 10^6 and the power p is rounded once, so m * p is off by less than two
/// units in the last place of a double. Rounding to float goes wrong only where that could cross the middle
/// between two floats, where the 29 bits cut off lie next to 2^28; such fields are left to parseReal.
inline Real readReal(const char* field) {
    static_assert(std::endian::native == std::endian::little);
    std::uint64_t head;
    std::uint32_t tail;
    std::memcpy(&head, field, 8);
    std::memcpy(&tail, field + 8, 4);

    const std::uint32_t sign = static_cast<std::uint32_t>(head & 0xFF);
    std::uint64_t bad = (sign != ' ') & (sign != '-');
    bad |= ((head >> 16) & 0xFF) != '.';

    // Digits 1 and 3..7 in bytes 2..7, zeros below: "d.ddddd" without its point, ready to be summed in pairs.
    std::uint64_t digits = ((head & 0xFFFFFFFFFF000000u) | ((head << 8) & 0xFF0000u)) ^ 0x3030303030300000u;
    bad |= ((digits + 0x7676767676767676u) | digits) & 0x8080808080808080u;
    digits = digits * 10 + (digits >> 8);
    const std::uint64_t mantissa = (((digits & 0x000000FF000000FFu) * 0x000F424000000064u) +
                                    (((digits >> 16) & 0x000000FF000000FFu) * 0x0000271000000001u)) >>
                                   32;

    const std::uint32_t tens = ((tail >> 16) & 0xFF) - '0', ones = (tail >> 24) - '0';
    const std::uint32_t exponentSign = (tail >> 8) & 0xFF;
    bad |= ((tail & 0xFF) != 'E') | ((exponentSign != '+') & (exponentSign != '-')) | (tens > 9) | (ones > 9);
    const int magnitude = static_cast<int>((tens * 10 + ones) & 0x7F);
    const int exponent = exponentSign == '-' ? -magnitude : magnitude;

    const double product = static_cast<double>(mantissa) * kPowers[exponent - 5 + kPowerBias];
    const std::uint64_t cut = std::bit_cast<std::uint64_t>(product) & 0x1FFFFFFFu;
    bad |= cut - (0x10000000u - 4) <= 8;
    bad |= (product < 1.1754943508222875e-38) & (mantissa != 0); // below the normal floats
    bad |= product > 3.4028234e38;
    const float magnitudeValue = static_cast<float>(product);
    return {
        std::bit_cast<float>(std::bit_cast<std::uint32_t>(magnitudeValue) | (sign == '-' ? 0x80000000u : 0u)),
        bad != 0};
}

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
    std::uint64_t digits = ((text | 0x1010101010101010u) ^ 0x3030303030303030u);
    bad |= (((digits + 0x7676767676767676u) | digits) & 0x8080808080808080u) != 0;
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
