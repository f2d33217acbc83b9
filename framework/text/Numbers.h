#pragma once

#include <string>
#include <string_view>

namespace framework {

/// The leading number of a text in the C locale, leading blanks skipped; 0 when there is none. An integer
/// beyond the range stops at its end; a real accepts what strtod accepts except hexadecimal.
int wtoi(std::wstring_view text);
double wtof(std::wstring_view text);
int ntoi(std::string_view text);
double ntof(std::string_view text);

} // namespace framework
