#pragma once

#include "workbench/picture/ContourPicture.h"
#include "workbench/picture/PictureColors.h"
#include "workbench/picture/PictureLayout.h"
#include "workbench/picture/ScaleLevels.h"
#include "workbench/picture/SceneRenderer.h"
#include "workbench/picture/SurfaceFaces.h"

#include <memory>
#include <optional>
#include <vector>

namespace workbench {

/// How a drawing is looked at; see ContourPicture for the fields.
struct ContourPose {
    int width = 0;
    int height = 0;
    std::string view;
    PictureZoom zoom;
    std::vector<PictureMark> marks;
};

/// A contour picture with its model, view and frame, before any pixel. What the picture refers to must
/// outlive it.
class ContourDrawing {
  public:
    /// `faces`, when given, are those of the picture's mesh: they cost most of the time of a large one. Texts
    /// take the room that `measure` says.
    static Result<std::unique_ptr<ContourDrawing>> make(const ContourPicture& picture,
                                                        std::shared_ptr<const SurfaceFaces> faces = nullptr,
                                                        TextWidth measure = sceneTextWidth());

    /// Looks at it otherwise. View and marks must be ones that make() accepts. With other elements marked the
    /// surface is made anew.
    void show(const ContourPose& pose);

    Result<Image> pixels() const;
    Result<std::string> svg() const;
    DrawnContour facts() const;

    /// The model as it is drawn, with that overlay; refers to this drawing.
    Scene scene(const Overlay* overlay, const ViewCamera& camera) const;
    const ViewCamera& camera() const { return camera_; }
    const Overlay& overlay() const { return layout_->overlay(); }
    const ContourSurface& surface() const { return surface_; }
    const std::shared_ptr<const SurfaceFaces>& faces() const { return faces_; }
    const PixelBox& modelBox() const { return layout_->modelBox(); }
    const ValueExtent& extent() const { return extent_; }
    /// Where the nodes are drawn, in lengths of the mesh.
    std::span<const std::array<double, 3>> positions() const { return picture_.mesh.nodePositions; }

  private:
    ContourDrawing(const ContourPicture& picture, TextWidth measure);
    Result<void> prepare();
    Result<void> prepareSurface();
    Result<void> deform();
    void makeSurface();
    void layOut();
    /// Whole pixels around the model, with room for the width of its lines and dots.
    PixelBox imageBox() const;

    ContourPicture picture_; ///< with the positions that are drawn
    TextWidth measure_;
    std::shared_ptr<const SurfaceFaces> faces_;
    ValueExtent extent_;
    std::optional<ScaleLevels> levels_;
    std::optional<PictureColors> colors_;
    ColorTable table_;
    std::vector<std::array<double, 3>> deformed_;
    std::span<const std::array<double, 3>> restPositions_; ///< before deformation; empty without
    std::vector<std::uint32_t> marked_;                    ///< elements, ascending
    ContourSurface surface_;
    ViewCamera camera_;
    std::optional<PictureLayout> layout_;
};

} // namespace workbench
