#pragma once

#include "framework/Export.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace framework {

inline constexpr unsigned kCodePageUtf8 = 65001;
inline constexpr unsigned kCodePageKorean = 949;

/// The code page of narrow text in files; UTF-8 unless set.
VEXA_API unsigned hostCodePage();
/// Zero, and nothing changed, when the system cannot convert to `codePage`.
VEXA_API int setHostCodePage(unsigned codePage);

/// Wide to narrow text. A character that the code page lacks (or a lone surrogate) becomes "?".
/// `replaced`, when given, receives the number of such characters.
VEXA_API std::string wideToMulti(std::wstring_view text, unsigned codePage = hostCodePage(),
                                 std::size_t* replaced = nullptr);

/// Narrow to wide text. A byte that is not text in the code page becomes U+FFFD.
VEXA_API std::wstring multiToWide(std::string_view text, unsigned codePage = hostCodePage());

/// UTF-8 regardless of the host's code page: for paths and for our own stores.
VEXA_API std::string toUtf8(std::wstring_view text);
VEXA_API std::wstring fromUtf8(std::string_view text);

} // namespace framework
