#include "resultfile/Text.h"

#include <cstddef>

namespace resultfile {

namespace {

/// Bytes of the sequence that begins with `lead`; 0 when none does. The range of the second byte goes to
/// `low`, `high`.
std::size_t sequenceLength(unsigned char lead, unsigned char& low, unsigned char& high) {
    low = 0x80;
    high = 0xBF;
    if (lead < 0x80) return lead == 0 ? 0 : 1;
    if (lead < 0xC2) return 0;
    if (lead < 0xE0) return 2;
    if (lead < 0xF0) {
        if (lead == 0xE0) low = 0xA0;  // else an overlong form
        if (lead == 0xED) high = 0x9F; // else a surrogate
        return 3;
    }
    if (lead > 0xF4) return 0;
    if (lead == 0xF0) low = 0x90;
    if (lead == 0xF4) high = 0x8F; // beyond U+10FFFF
    return 4;
}

} // namespace

bool isUtf8Text(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        unsigned char low, high;
        const std::size_t length = sequenceLength(static_cast<unsigned char>(text[at]), low, high);
        if (length == 0 || length > text.size() - at) return false;
        for (std::size_t i = 1; i < length; ++i, low = 0x80, high = 0xBF) {
            const auto byte = static_cast<unsigned char>(text[at + i]);
            if (byte < low || byte > high) return false;
        }
        at += length;
    }
    return true;
}

} // namespace resultfile
