#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

/// UTF-8 to and from UTF-16 or UTF-32, by the size of the wide character type. Strict: overlong forms,
/// surrogates in UTF-8, lone surrogates in UTF-16, surrogates in UTF-32 and values beyond U+10FFFF are not
/// text.
namespace framework::utf8 {

inline constexpr char32_t kReplacement = 0xFFFD;
/// Answered by the decoders for what is not text.
inline constexpr char32_t kInvalid = 0xFFFFFFFF;

constexpr bool isSurrogate(char32_t c) {
    return c >= 0xD800 && c <= 0xDFFF;
}

/// Takes the character at the front of `text`, which is not empty; kInvalid, and one byte taken, when none is
/// there.
constexpr char32_t take(std::string_view& text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = byte(0);
    const std::size_t size = lead < 0x80   ? 1
                             : lead < 0xC2 ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF5 ? 4
                                           : 0;
    char32_t c = size == 1 ? lead : size == 2 ? lead & 0x1F : size == 3 ? lead & 0x0F : lead & 0x07;
    bool valid = size != 0 && size <= text.size();
    for (std::size_t i = 1; valid && i < size; ++i) {
        valid = (byte(i) & 0xC0) == 0x80;
        c = c << 6 | (byte(i) & 0x3F);
    }
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (!valid || c < smallest[size] || isSurrogate(c) || c > 0x10FFFF) {
        text.remove_prefix(1);
        return kInvalid;
    }
    text.remove_prefix(size);
    return c;
}

/// Takes the character at the front of `text`, which is not empty; kInvalid, and one unit taken, when none is
/// there.
template <class Wide>
constexpr char32_t take(std::basic_string_view<Wide>& text) {
    const auto unit = [&](std::size_t i) {
        return static_cast<char32_t>(static_cast<std::make_unsigned_t<Wide>>(text[i]));
    };
    const char32_t c = unit(0);
    if constexpr (sizeof(Wide) == 2) {
        const bool pair =
            c >= 0xD800 && c < 0xDC00 && text.size() > 1 && unit(1) >= 0xDC00 && unit(1) <= 0xDFFF;
        if (pair) {
            const char32_t low = unit(1);
            text.remove_prefix(2);
            return 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
        }
    }
    text.remove_prefix(1);
    return isSurrogate(c) || c > 0x10FFFF ? kInvalid : c;
}

inline void append(std::string& out, char32_t c) {
    const auto tail = [&](int shift) { return static_cast<char>(0x80 | (c >> shift & 0x3F)); };
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        const char bytes[] = {static_cast<char>(0xC0 | c >> 6), tail(0)};
        out.append(bytes, sizeof bytes);
    } else if (c < 0x10000) {
        const char bytes[] = {static_cast<char>(0xE0 | c >> 12), tail(6), tail(0)};
        out.append(bytes, sizeof bytes);
    } else {
        const char bytes[] = {static_cast<char>(0xF0 | c >> 18), tail(12), tail(6), tail(0)};
        out.append(bytes, sizeof bytes);
    }
}

template <class Wide>
void append(std::basic_string<Wide>& out, char32_t c) {
    if (sizeof(Wide) == 2 && c >= 0x10000) {
        out += static_cast<Wide>(0xD800 + ((c - 0x10000) >> 10));
        out += static_cast<Wide>(0xDC00 + ((c - 0x10000) & 0x3FF));
    } else {
        out += static_cast<Wide>(c);
    }
}

template <class Char>
std::size_t asciiPrefix(std::basic_string_view<Char> text) {
    std::size_t size = 0;
    while (size < text.size() && static_cast<std::make_unsigned_t<Char>>(text[size]) < 0x80)
        ++size;
    return size;
}

/// Converts all of `text`; what is not text becomes `replacement`, and `replaced` grows by its number.
template <class To, class From>
std::basic_string<To> convert(std::basic_string_view<From> text, char32_t replacement,
                              std::size_t& replaced) {
    std::basic_string<To> out;
    out.reserve(text.size());
    while (!text.empty()) {
        const std::size_t ascii = asciiPrefix(text);
        out.append(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(ascii));
        text.remove_prefix(ascii);
        if (text.empty()) break;
        const char32_t c = take(text);
        if (c == kInvalid) ++replaced;
        append(out, c == kInvalid ? replacement : c);
    }
    return out;
}

} // namespace framework::utf8
