#include "workbench/picture/PictureColors.h"

#include <algorithm>
#include <cmath>

namespace workbench {
namespace {

constexpr std::size_t kInnerColors = 2048;
constexpr std::size_t kOuterColors = 64; ///< at each end

} // namespace

Result<PictureColors> PictureColors::make(const ColorScale& scale, const ScaleLevels& levels, bool bands) {
    if (scale.diverging && levels.scale() == ValueScale::Logarithmic)
        return Error{"the colours " + std::string(scale.name) +
                     " have their middle at zero, which a logarithmic scale does not hold: choose other "
                     "colours or a linear scale"};
    return PictureColors(scale, levels, bands);
}

PictureColors::PictureColors(const ColorScale& scale, const ScaleLevels& levels, bool bands)
    : scale_(&scale)
    , levels_(&levels)
    , bands_(bands) {}

/// Where on the colour scale a place of the bar lies. On a diverging one zero is in the middle and equal
/// distances from it have equal strength.
double PictureColors::shadeOf(double position) const {
    if (!scale_->diverging) return position;
    const double size = std::max(std::abs(levels_->low()), std::abs(levels_->high()));
    const double value = levels_->low() * (1.0 - position) + levels_->high() * position;
    return 0.5 + 0.5 * (value / size);
}

Rgb PictureColors::ofBand(std::size_t band) const {
    if (scale_->diverging) {
        const double low = levels_->positionOf(levels_->values()[band]);
        const double high = levels_->positionOf(levels_->values()[band + 1]);
        return scale_->at(shadeOf(0.5 * (low + high)));
    }
    const double last = std::max(static_cast<double>(levels_->bandCount()) - 1.0, 1.0);
    return scale_->at(static_cast<double>(band) / last);
}

Rgb PictureColors::at(double position) const {
    return bands_ ? ofBand(levels_->bandOf(position)) : scale_->at(shadeOf(position));
}

ColorTable PictureColors::table() const {
    const double step = 1.0 / kInnerColors;
    ColorTable table;
    table.low = -step * kOuterColors;
    table.high = 1.0 + step * kOuterColors;
    const auto outer = [&](bool low) {
        if (!levels_->isGiven()) return at(low ? 0.0 : 1.0);
        return low ? below() : above();
    };
    table.colors.assign(kOuterColors, outer(true));
    for (std::size_t i = 0; i < kInnerColors; ++i)
        table.colors.push_back(at((static_cast<double>(i) + 0.5) * step));
    table.colors.insert(table.colors.end(), kOuterColors, outer(false));
    // A value at an end belongs to the range, also after rounding.
    table.colors[kOuterColors - 1] = at(0.0);
    table.colors[kOuterColors + kInnerColors] = at(1.0);
    return table;
}

} // namespace workbench
