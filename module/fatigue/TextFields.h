#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace fatigue {

/// Fills a fixed-width field: `width` blanks, then at most `width` bytes of the text, then a zero byte
/// directly behind them. `buffer` holds width + 1 bytes: the zero byte of a text that fills the field falls
/// outside of it. A cut text is cut at the byte.
inline void fillTextField(std::string_view text, char* buffer, std::size_t width) {
    std::fill_n(buffer, width, ' ');
    const std::size_t length = std::min(text.size(), width);
    std::copy_n(text.data(), length, buffer);
    buffer[length] = '\0';
}

} // namespace fatigue
