#pragma once

#include <string_view>

namespace framework {

/// The line end of text files on this platform.
#ifdef _WIN32
inline constexpr std::string_view kLineEnd = "\r\n";
#else
inline constexpr std::string_view kLineEnd = "\n";
#endif

} // namespace framework
