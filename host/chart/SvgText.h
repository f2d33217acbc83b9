#pragma once

#include "framework/drawing/SvgText.h"

#include <cstdint>
#include <string>

/// Pieces of SVG (framework/drawing/SvgText.h) as values.
namespace tqx::frx {

inline std::string svgNumber(double value) {
    std::string text;
    framework::svg::appendNumber(text, value);
    return text;
}

/// 0x00BBGGRR as "#rrggbb".
inline std::string svgColor(std::uint32_t color) {
    std::string text;
    framework::svg::appendColor(text, color);
    return text;
}

inline std::string svgEscaped(const std::wstring& text) {
    std::string escaped;
    framework::svg::appendText(escaped, text);
    return escaped;
}

} // namespace tqx::frx
