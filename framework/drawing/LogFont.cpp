#include "framework/drawing/LogFont.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace framework {

void setFaceName(LOGFONT& font, std::wstring_view name) {
    const std::size_t length = std::min(name.size(), std::size(font.lfFaceName) - 1);
    std::fill(std::begin(font.lfFaceName), std::end(font.lfFaceName), L'\0');
    std::copy_n(name.begin(), length, font.lfFaceName);
}

double emOf(const LOGFONT& font) {
    constexpr double kDefault = 16;
    constexpr double kLinePerEm = 1.15; // of common sans-serif faces
    const double height = font.lfHeight;
    const double em = height < 0 ? -height : height > 0 ? height / kLinePerEm : kDefault;
    return std::max(em, 1.0);
}

} // namespace framework
