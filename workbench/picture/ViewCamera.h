#pragma once

#include "workbench/picture/ContourPicture.h"
#include "workbench/picture/ContourSurface.h"

#include <optional>
#include <string_view>

namespace workbench {

/// A rectangle in pixels, y upwards from the lower edge of the picture.
struct PixelBox {
    double left = 0.0, bottom = 0.0, right = 0.0, top = 0.0;

    double width() const { return right - left; }
    double height() const { return top - bottom; }
};

using Pixel = std::array<double, 2>;

/// A parallel projection onto the picture. All coordinates are those of ContourSurface.
struct ViewCamera {
    Vector3 right{}, up{}, toViewer{}; ///< unit vectors
    double pixelsPerLength = 1.0;
    Pixel origin{}; ///< where the origin of the model coordinates lands

    Pixel project(const Vector3& position) const;
    double depth(const Vector3& position) const; ///< grows towards the viewer
};

/// The axes of a view of a model of this extent: one of viewNames(), or two angles in degrees "30,20", the
/// first from the front towards the right side (-360 to 360), the second upwards (-90 to 90). Nothing for
/// another text. "iso" looks from the
/// front, right and above, so that front, right and top are seen; it turns towards the face of a thin plate,
/// across a slender member, and straight onto a plane model.
std::optional<ViewCamera> viewAxes(std::string_view name, const Vector3& extent);

/// Scales and shifts the projection so that all vertices lie in `box`, in its middle, as large as they can.
void fitInto(ViewCamera& camera, const ContourSurface& surface, const PixelBox& box);

/// Enlarges a fitted projection around the middle of its box and moves it.
void zoomInto(ViewCamera& camera, const PixelBox& box, const PictureZoom& zoom);

/// The two angles of viewAxes() that look from where the camera looks; its roll is not among them.
std::array<double, 2> anglesOf(const ViewCamera& camera);

/// The box around all that is drawn of the surface.
PixelBox boxOf(const ViewCamera& camera, const ContourSurface& surface);

/// True when a triangle lies in front of the vertex at `position`, nearer by more than rounding.
bool isHidden(const ViewCamera& camera, const ContourSurface& surface, const Vector3& position);

} // namespace workbench
