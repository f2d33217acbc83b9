#pragma once

#include "base/Result.h"
#include "workbench/picture/ContourPicture.h"
#include "workbench/picture/ContourSurface.h"
#include "workbench/picture/Image.h"
#include "workbench/picture/Overlay.h"
#include "workbench/picture/PictureColors.h"
#include "workbench/picture/ViewCamera.h"

#include <memory>
#include <vector>

namespace workbench {

/// Measures with the fonts that renderScene draws with: Nanum Barun Gothic or DejaVu Sans where installed.
TextWidth sceneTextWidth();

/// What is drawn, in pixels of the picture.
struct Scene {
    const ContourSurface& surface;
    const ColorTable& colors;
    Rgb noValue;
    PictureEdges edges;
    const ViewCamera& camera;
    const Overlay* overlay; ///< over the model; null for none
    int width, height;
    double lineScale; ///< 1 in a picture of 1000 pixels in height
};

/// Draws the surface through the camera, then the overlay, on white or on nothing. The image has `detail`
/// pixels each way for one of the picture. Needs a display; finds or starts one.
Result<Image> renderScene(const Scene& scene, int detail, bool transparent);

/// Draws a scene again and again, for a view that turns: the window and the model stay between drawings.
class SceneView {
  public:
    SceneView();
    ~SceneView();
    SceneView(const SceneView&) = delete;
    SceneView& operator=(const SceneView&) = delete;

    /// The model is another one, or is coloured otherwise: the next drawing takes it over. To be called
    /// before the surface of the last drawing goes.
    void forget();
    /// The model alone, on white; its surface must stay as it is until forget().
    Result<Image> draw(const Scene& scene);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

/// The bytes of a PNG file, with an alpha channel where the image has one.
Result<std::vector<unsigned char>> encodePng(const Image& image);

} // namespace workbench
