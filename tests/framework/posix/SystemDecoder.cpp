#include "tests/framework/SystemDecoder.h"

#include <iconv.h>

std::u32string decodedBySystem(std::string text) {
    const iconv_t converter = ::iconv_open("UTF-32LE", "UTF-8");
    std::u32string out;
    char* in = text.data();
    std::size_t left = text.size();
    while (left > 0) {
        char32_t c = 0;
        char* to = reinterpret_cast<char*>(&c);
        std::size_t room = sizeof c;
        ::iconv(converter, nullptr, nullptr, nullptr, nullptr);
        ::iconv(converter, &in, &left, &to, &room);
        if (room == 0) {
            out += c;
        } else {
            out += U'\uFFFD';
            ++in;
            --left;
        }
    }
    ::iconv_close(converter);
    return out;
}
