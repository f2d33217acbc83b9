#pragma once

#include "workbench/picture/ColorScale.h"
#include "workbench/picture/ScaleLevels.h"

#include <vector>

namespace workbench {

/// Colours at equal distances from `low` to `high`, which are places on the scale bar. Beyond them the first
/// and the last go on.
struct ColorTable {
    double low = 0.0;
    double high = 1.0;
    std::vector<Rgb> colors;
};

/// The colours of the values of one picture.
class PictureColors {
  public:
    /// The references must outlive the colours. Fails for a diverging scale over logarithms, which have no
    /// zero.
    static Result<PictureColors> make(const ColorScale& scale, const ScaleLevels& levels, bool bands);

    /// The colour at a place on the bar, 0 to 1.
    Rgb at(double position) const;
    Rgb ofBand(std::size_t band) const;

    Rgb below() const { return scale_->below; }
    Rgb above() const { return scale_->above; }
    Rgb noValue() const { return scale_->noValue; }

    /// All of them, with the colours beyond a given range at the two ends.
    ColorTable table() const;

  private:
    PictureColors(const ColorScale& scale, const ScaleLevels& levels, bool bands);
    double shadeOf(double position) const;

    const ColorScale* scale_;
    const ScaleLevels* levels_;
    bool bands_;
};

} // namespace workbench
