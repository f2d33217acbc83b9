#pragma once

#include "workbench/picture/ColorScale.h"
#include "workbench/picture/ContourPicture.h"
#include "workbench/picture/Overlay.h"
#include "workbench/picture/ScaleLevels.h"

namespace workbench {

/// Drawn where a node has no value.
inline constexpr Rgb kNoValueColor{178, 178, 178};

/// Places everything that is not the model itself: titles, scale bar, axes, marks. Sizes follow the height
/// of the picture.
class PictureLayout {
  public:
    /// The references must outlive the layout.
    PictureLayout(const ContourPicture& picture, const ScaleLevels& levels, const ColorScale& colors,
                  const TextWidth& measure);

    /// Titles along the top and the scale bar at the right side, with the values' extremes below it.
    void addFrame(const ValueExtent& extent, bool someWithoutValue);

    /// What addFrame left for the model, with a margin.
    const PixelBox& modelBox() const { return modelBox_; }

    /// The directions of the model's axes, below the scale bar.
    void addAxes(const ViewCamera& camera);

    /// A ring at every marked node and its label beside it, where it covers least of model and other labels.
    void addMarks(const ViewCamera& camera, const ContourSurface& surface);

    const Overlay& overlay() const { return overlay_; }

  private:
    double addTitles();
    double addValueTitle(double top);
    void addBar(const PixelBox& bar);
    void addExtremes(const ValueExtent& extent, bool someWithoutValue, double top);

    const ContourPicture& picture_;
    const ScaleLevels& levels_;
    const ColorScale& colors_;
    const TextWidth& measure_;
    Overlay overlay_;
    double font_; ///< size of the ordinary text
    double margin_;
    double lineHeight_;
    PixelBox column_{}; ///< scale bar and axes
    PixelBox modelBox_{};
    PixelBox axesBox_{};
    std::vector<std::string> barLabels_;
};

} // namespace workbench
