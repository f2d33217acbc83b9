#pragma once

#include "framework/Export.h"

#include <cstdint>
#include <string_view>

/// What a font is asked for. The height is in pixels: negative that of the letters (the em), positive that of
/// a line, 0 the default; in tenths of a point where CFont::CreatePointFontIndirect takes it. Angles are in
/// tenths of a degree, counterclockwise.
struct LOGFONT {
    int lfHeight = 0;
    int lfWidth = 0;
    int lfEscapement = 0;
    int lfOrientation = 0;
    int lfWeight = 0;
    std::uint8_t lfItalic = 0;
    std::uint8_t lfUnderline = 0;
    std::uint8_t lfStrikeOut = 0;
    std::uint8_t lfCharSet = 0;
    std::uint8_t lfOutPrecision = 0;
    std::uint8_t lfClipPrecision = 0;
    std::uint8_t lfQuality = 0;
    std::uint8_t lfPitchAndFamily = 0;
    wchar_t lfFaceName[32] = {}; ///< ends with a zero

    friend bool operator==(const LOGFONT&, const LOGFONT&) = default;
};

inline constexpr int FW_NORMAL = 400;
inline constexpr int FW_BOLD = 700;
inline constexpr std::uint8_t DEFAULT_CHARSET = 1;
inline constexpr std::uint8_t OUT_CHARACTER_PRECIS = 2;
inline constexpr std::uint8_t CLIP_CHARACTER_PRECIS = 1;

namespace framework {

/// Every screen is taken to have as many pixels to the inch.
inline constexpr int kPixelsPerInch = 96;

/// Cuts a face name that is too long.
VEXA_API void setFaceName(LOGFONT& font, std::wstring_view name);

/// Pixels of the em that a font is drawn with, at least 1.
VEXA_API double emOf(const LOGFONT& font);

} // namespace framework
