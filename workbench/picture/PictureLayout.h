#pragma once

#include "workbench/picture/ContourPicture.h"
#include "workbench/picture/Overlay.h"
#include "workbench/picture/PictureColors.h"
#include "workbench/picture/ScaleLevels.h"

namespace workbench {

/// Places everything that is not the model itself: titles, scale bar, axes, marks. Sizes follow the height
/// of the picture.
class PictureLayout {
  public:
    /// The references must outlive the layout.
    PictureLayout(const ContourPicture& picture, const ScaleLevels& levels, const PictureColors& colors,
                  const TextWidth& measure);

    /// Titles along the top and the scale bar at the right side, with the values' extremes below it.
    void addFrame(const ValueExtent& extent, bool someWithoutValue);

    /// What addFrame left for the model, with a margin.
    const PixelBox& modelBox() const { return modelBox_; }

    /// The directions of the model's axes, below the scale bar.
    void addAxes(const ViewCamera& camera);

    /// A ring at every marked node, a square at every marked element, and the label beside it: clear of other
    /// labels and marks where there is room, and over as little of the model as it can.
    void addMarks(const ViewCamera& camera, const ContourSurface& surface);

    const Overlay& overlay() const { return overlay_; }

  private:
    double addTitles();
    double addValueTitle(double top);
    void addBar(const ValueExtent& extent, PixelBox bar);
    void addBeyond(const PixelBox& box, Rgb color, const std::string& label);
    void addSymbol(const PictureMark& mark, const Pixel& at, bool hidden);
    void addExtremes(const ValueExtent& extent, bool someWithoutValue, double top);

    const ContourPicture& picture_;
    const ScaleLevels& levels_;
    const PictureColors& colors_;
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
