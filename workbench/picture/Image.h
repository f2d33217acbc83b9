#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace workbench {

/// Red, green and blue of the sRGB colour space.
using Rgb = std::array<std::uint8_t, 3>;

/// Pixels in rows from the top, each from the left.
struct Image {
    int width = 0;
    int height = 0;
    std::vector<Rgb> pixels;         ///< width x height
    std::vector<std::uint8_t> alpha; ///< 0 = transparent, one a pixel; empty = opaque everywhere

    const Rgb& at(int x, int y) const { return pixels[static_cast<std::size_t>(y) * width + x]; }
};

} // namespace workbench
