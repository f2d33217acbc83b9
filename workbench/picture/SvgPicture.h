#pragma once

#include "workbench/picture/Overlay.h"

#include <span>
#include <string>
#include <string_view>

namespace workbench {

/// A picture whose model is an image and whose rest is shapes and text.
struct SvgPicture {
    int width, height; ///< in pixels of the overlay
    bool transparent;
    std::string title; ///< UTF-8, for readers who cannot see it
    std::string description;
    std::span<const unsigned char> png; ///< the model
    PixelBox imageBox;                  ///< where it lies
    const Overlay& overlay;
};

/// The text of an SVG 1.1 file. Texts keep their measured width in every font.
std::string svgText(const SvgPicture& picture, const TextWidth& measure);

/// The bytes in base 64 (RFC 4648, clause 4).
std::string base64(std::span<const unsigned char> bytes);

} // namespace workbench
