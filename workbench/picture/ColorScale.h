#pragma once

#include "workbench/picture/Image.h"

#include <span>
#include <string_view>

namespace workbench {

/// A row of colours at equal distances, linear in between.
class ColorScale {
  public:
    /// Null for a name that colorScaleNames() does not list.
    static const ColorScale* find(std::string_view name);

    /// The colour at `position`, 0 at the low end and 1 at the high one; beyond them the end's colour.
    Rgb at(double position) const;

    std::string_view name;
    std::span<const std::array<float, 3>> anchors; ///< sRGB, 0 to 1
    bool diverging;                                ///< its middle stands for the value zero
    Rgb below, above;                              ///< of values beyond the ends of a given range
    Rgb noValue;
};

} // namespace workbench
