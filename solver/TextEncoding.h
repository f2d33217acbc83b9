#pragma once

#include "base/Result.h"

#include <string>
#include <string_view>

namespace solver {

/// UTF-8 for `text` in a code page: a number as the host uses them ("949", "65001") or a name that iconv
/// knows
/// ("CP949", "EUC-KR"). Empty means UTF-8. Bytes that are not text in the code page are a failure.
Result<std::string> toUtf8(std::string_view text, const std::string& codePage);

} // namespace solver
