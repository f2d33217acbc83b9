#include "framework/text/Numbers.h"

#include <charconv>
#include <cstdint>
#include <limits>

namespace framework {

namespace {

template <class Char>
bool isBlank(Char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

template <class Char>
bool isDigit(Char c) {
    return c >= '0' && c <= '9';
}

template <class Char>
std::basic_string_view<Char> withoutLeadingBlanks(std::basic_string_view<Char> text) {
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    return text;
}

/// Takes a sign from the front; true for "-".
template <class Char>
bool takeSign(std::basic_string_view<Char>& text) {
    if (text.empty() || (text.front() != '-' && text.front() != '+')) return false;
    const bool negative = text.front() == '-';
    text.remove_prefix(1);
    return negative;
}

template <class Char>
int leadingInteger(std::basic_string_view<Char> text) {
    text = withoutLeadingBlanks(text);
    const bool negative = takeSign(text);
    const std::int64_t limit = std::int64_t{std::numeric_limits<int>::max()} + (negative ? 1 : 0);
    std::int64_t value = 0;
    for (; !text.empty() && isDigit(text.front()); text.remove_prefix(1)) {
        value = value * 10 + (text.front() - '0');
        if (value > limit) value = limit;
    }
    return static_cast<int>(negative ? -value : value);
}

/// Whether the digits at the front make a value of at least one, the sign taken away. Only asked for a number
/// whose size is beyond the range of double, so the decimal exponent alone decides.
bool isLarge(std::string_view digits) {
    constexpr std::int64_t enough = 1'000'000'000'000;
    std::int64_t exponent = 0;
    bool significant = false, fraction = false;
    std::size_t at = 0;
    for (; at < digits.size() && (isDigit(digits[at]) || (digits[at] == '.' && !fraction)); ++at) {
        if (digits[at] == '.') {
            fraction = true;
            continue;
        }
        significant = significant || digits[at] != '0';
        if (!fraction && significant) ++exponent;
        if (fraction && !significant) --exponent;
    }
    if (at < digits.size() && (digits[at] == 'e' || digits[at] == 'E')) {
        digits.remove_prefix(at + 1);
        const bool negative = takeSign(digits);
        std::int64_t given = 0;
        for (const char c : digits) {
            if (!isDigit(c)) break;
            given = given < enough ? given * 10 + (c - '0') : given;
        }
        exponent += negative ? -given : given;
    }
    return exponent > 0;
}

} // namespace

int ntoi(std::string_view text) {
    return leadingInteger(text);
}
int wtoi(std::wstring_view text) {
    return leadingInteger(text);
}

double ntof(std::string_view text) {
    text = withoutLeadingBlanks(text);
    const bool negative = takeSign(text);
    // from_chars would take a second sign.
    if (text.empty() || text.front() == '-') return 0;
    double value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec == std::errc::result_out_of_range)
        value = isLarge(text) ? std::numeric_limits<double>::infinity() : 0;
    else if (result.ec != std::errc())
        return 0;
    return negative ? -value : value;
}

double wtof(std::wstring_view text) {
    text = withoutLeadingBlanks(text);
    // Only what can belong to a number is copied, so that a short number in a long line costs little.
    constexpr std::wstring_view letters = L"0123456789+-.eEinfatyINFATY";
    const std::wstring_view number = text.substr(0, text.find_first_not_of(letters));
    return ntof(std::string(number.begin(), number.end()));
}

} // namespace framework
