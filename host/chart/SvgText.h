#pragma once

#include <cstdint>
#include <string>

namespace tqx::frx {

/// A number with at most two decimals.
std::string svgNumber(double value);
/// 0x00BBGGRR as "#rrggbb".
std::string svgColor(std::uint32_t color);
/// Text of an element or an attribute; what XML has no characters for becomes U+FFFD.
std::string svgEscaped(const std::wstring& text);

} // namespace tqx::frx
