#include "tests/framework/SystemDecoder.h"

#include <windows.h>

#include <algorithm>

std::u32string decodedBySystem(std::string text) {
    std::u32string out;
    for (std::size_t at = 0; at < text.size();) {
        wchar_t wide[4];
        int count = 0;
        int size = 0;
        const int most = static_cast<int>(std::min<std::size_t>(4, text.size() - at));
        while (count == 0 && size < most)
            count = ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, &text[at], ++size, wide, 4);
        if (count == 2)
            out += 0x10000u + ((wide[0] - 0xD800u) << 10) + (wide[1] - 0xDC00u);
        else
            out += count == 1 ? char32_t{wide[0]} : U'\uFFFD';
        at += count == 0 ? 1 : static_cast<std::size_t>(size);
    }
    return out;
}
