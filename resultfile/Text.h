#pragma once

#include <string>
#include <string_view>

namespace resultfile {

/// Well-formed UTF-8 (Unicode 15, table 3-7) without zero bytes.
bool isUtf8Text(std::string_view text);

/// The text as messages show it.
inline std::string inQuotes(const std::string& text) {
    return "\"" + text + "\"";
}

} // namespace resultfile
