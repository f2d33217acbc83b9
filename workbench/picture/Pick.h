#pragma once

#include "workbench/picture/SurfaceFaces.h"
#include "workbench/picture/ViewCamera.h"

#include <optional>

namespace workbench {

/// What lies under a point of a picture.
struct PickedPart {
    std::uint32_t element = 0; ///< index into the mesh
    std::uint32_t node = 0;    ///< value index: of that part's nodes the one nearest to the point
};

/// The frontmost part of the model at `at`: a face that covers it, or a line or dot within `reach` pixels,
/// which counts as lying before a face of the same depth. `positions` are those that the surface was made
/// from. One pass over the faces.
std::optional<PickedPart> pickAt(const SurfaceFaces& faces, std::span<const std::array<double, 3>> positions,
                                 const ContourSurface& surface, const ViewCamera& camera, const Pixel& at,
                                 double reach);

} // namespace workbench
