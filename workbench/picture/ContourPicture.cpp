#include "workbench/picture/ContourPicture.h"

#include "base/ReplaceFile.h"
#include "workbench/picture/ColorScale.h"
#include "workbench/picture/ContourSurface.h"
#include "workbench/picture/PictureLayout.h"
#include "workbench/picture/ScaleLevels.h"
#include "workbench/picture/SceneRenderer.h"
#include "workbench/picture/SurfaceFaces.h"
#include "workbench/picture/ViewCamera.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <mutex>

namespace workbench {
namespace {

constexpr std::size_t kTableColors = 2048;

std::string listed(std::span<const std::string_view> names) {
    std::string text;
    for (const std::string_view name : names)
        text += (text.empty() ? "" : ", ") + std::string(name);
    return text;
}

Result<void> checkOptions(const ContourPicture& picture) {
    const auto sizeAllowed = [](int size) { return size >= kSmallestPicture && size <= kLargestPicture; };
    if (!sizeAllowed(picture.width) || !sizeAllowed(picture.height))
        return Error{"a picture of " + std::to_string(picture.width) + " x " +
                     std::to_string(picture.height) + " pixels cannot be drawn: give " +
                     std::to_string(kSmallestPicture) + " to " + std::to_string(kLargestPicture) +
                     " each way"};
    if (!ColorScale::find(picture.colorScale))
        return Error{"there is no colour scale \"" + picture.colorScale + "\": choose one of " +
                     listed(colorScaleNames())};
    if (std::ranges::find(viewNames(), picture.view) == viewNames().end())
        return Error{"there is no view \"" + picture.view + "\": choose one of " + listed(viewNames())};
    if (picture.values.size() != picture.mesh.nodeCount())
        return Error{"the picture has " + std::to_string(picture.values.size()) + " values for " +
                     std::to_string(picture.mesh.nodeCount()) + " nodes: read the result of this model"};
    for (const NodeMark& mark : picture.marks)
        if (mark.node >= picture.mesh.nodeCount())
            return Error{"the node marked \"" + mark.label +
                         "\" does not exist in the mesh: mark another one"};
    return {};
}

/// Colours of equal parts of the scale bar.
std::vector<Rgb> colorTable(const ContourPicture& picture, const ScaleLevels& levels,
                            const ColorScale& colors) {
    std::vector<Rgb> table(kTableColors);
    const double lastBand = std::max<double>(static_cast<double>(levels.bandCount()) - 1.0, 1.0);
    for (std::size_t i = 0; i < kTableColors; ++i) {
        const double position = (static_cast<double>(i) + 0.5) / kTableColors;
        table[i] =
            colors.at(picture.bands ? static_cast<double>(levels.bandOf(position)) / lastBand : position);
    }
    return table;
}

int writeAll(int fd, std::span<const unsigned char> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(fd, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return errno;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return 0;
}

/// 0, or the error number of what failed.
int writeFile(const std::filesystem::path& path, std::span<const unsigned char> bytes) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (fd < 0) return errno;
    const int failed = writeAll(fd, bytes);
    const int closed = ::close(fd) != 0 ? errno : 0;
    return failed ? failed : closed;
}

} // namespace

Result<Image> drawContour(const ContourPicture& picture) {
    static std::mutex oneAtATime;
    const std::lock_guard lock(oneAtATime);
    if (auto checked = checkOptions(picture); !checked) return checked.error();
    const ValueExtent extent = extentOf(picture.values);
    if (extent.finiteCount == 0)
        return Error{"no node has a value, so there is nothing to draw: choose another component or step"};
    const auto levels = ScaleLevels::make(extent, picture.valueScale, picture.range);
    if (!levels) return levels.error();
    ContourSurface surface;
    {
        const auto faces = surfaceFacesOf(picture.mesh);
        if (!faces) return faces.error();
        surface = contourSurfaceOf(*faces, picture.mesh.nodePositions, picture.values, *levels);
    }
    if (surface.positions.empty())
        return Error{"the mesh has no element that can be drawn: it needs solids, planes or lines"};

    const ColorScale& colors = *ColorScale::find(picture.colorScale);
    const TextWidth measure = sceneTextWidth();
    PictureLayout layout(picture, *levels, colors, measure);
    layout.addFrame(extent, !surface.greyTriangles.empty() || !surface.greySegments.empty());
    ViewCamera camera = *viewAxes(picture.view, surface.extent);
    fitInto(camera, surface, layout.modelBox());
    layout.addAxes(camera);
    layout.addMarks(camera, surface);
    return renderScene(surface, colorTable(picture, *levels, colors), camera, layout.overlay(), picture.width,
                       picture.height);
}

Result<void> writeContourPng(const ContourPicture& picture, const std::filesystem::path& path) {
    const auto image = drawContour(picture);
    if (!image) return image.error();
    const auto bytes = encodePng(*image);
    if (!bytes) return bytes.error();
    ReplacedFile file(path);
    if (const int failed = writeFile(file.temporaryPath(), *bytes))
        return Error{"cannot write the picture " + path.string() + ": " + systemErrorText(failed)};
    return file.commit();
}

} // namespace workbench
