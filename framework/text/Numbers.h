#pragma once

#include "framework/Export.h"

#include <string>
#include <string_view>

namespace framework {

/// The leading number of a text in the C locale, leading blanks skipped; 0 when there is none. An integer
/// beyond the range stops at its end; a real accepts what strtod accepts except hexadecimal.
VEXA_API int wtoi(std::wstring_view text);
VEXA_API double wtof(std::wstring_view text);
VEXA_API int ntoi(std::string_view text);
VEXA_API double ntof(std::string_view text);

} // namespace framework
