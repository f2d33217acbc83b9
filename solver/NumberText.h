#pragma once

#include <charconv>
#include <string>

namespace solver {

/// A number for a reader: `digits` significant ones.
inline std::string shortNumber(double value, int digits = 6) {
    char text[40];
    return {text, std::to_chars(text, text + sizeof text, value, std::chars_format::general, digits).ptr};
}

/// The shortest text that reads back as the same number.
inline std::string exactNumber(double value) {
    char text[40];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

} // namespace solver
