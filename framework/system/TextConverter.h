#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace framework {

/// Whether the system converts this code page and its ASCII characters are single bytes of the same value.
bool systemConverts(unsigned codePage);

/// Well-formed UTF-8 to text in a code page. A character that the code page lacks becomes "?"; `replaced`
/// is increased by the number of such characters. Without a converter that is every one beyond ASCII.
std::string systemFromUtf8(std::string_view utf8, unsigned codePage, std::size_t& replaced);

/// Text in a code page to UTF-8. A byte that is not text in the code page becomes U+FFFD.
std::string systemToUtf8(std::string_view text, unsigned codePage);

} // namespace framework
