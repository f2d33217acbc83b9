#pragma once

#include "base/Result.h"
#include "workbench/picture/ContourSurface.h"
#include "workbench/picture/Image.h"
#include "workbench/picture/Overlay.h"
#include "workbench/picture/ViewCamera.h"

#include <span>
#include <vector>

namespace workbench {

/// Measures with the fonts that renderScene draws with: Nanum Barun Gothic or DejaVu Sans where installed.
TextWidth sceneTextWidth();

/// Draws the surface through the camera on white, then the overlay. `colors` spread evenly over the scale
/// positions 0 to 1. Needs a display; finds or starts one.
Result<Image> renderScene(const ContourSurface& surface, std::span<const Rgb> colors,
                          const ViewCamera& camera, const Overlay& overlay, int width, int height);

/// The bytes of a PNG file.
Result<std::vector<unsigned char>> encodePng(const Image& image);

} // namespace workbench
