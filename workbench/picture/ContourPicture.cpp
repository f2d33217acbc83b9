#include "workbench/picture/ContourPicture.h"

#include "base/ReplaceFile.h"
#include "workbench/picture/ColorScale.h"
#include "workbench/picture/ContourSurface.h"
#include "workbench/picture/Deformation.h"
#include "workbench/picture/PictureColors.h"
#include "workbench/picture/PictureLayout.h"
#include "workbench/picture/ScaleLevels.h"
#include "workbench/picture/SceneRenderer.h"
#include "workbench/picture/SurfaceFaces.h"
#include "workbench/picture/SvgPicture.h"
#include "workbench/picture/ViewCamera.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <memory>
#include <mutex>

namespace workbench {
namespace {

std::string listed(std::span<const std::string_view> names) {
    std::string text;
    for (const std::string_view name : names)
        text += (text.empty() ? "" : ", ") + std::string(name);
    return text;
}

Result<void> checkTables(const ContourPicture& picture);

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
    if (!isViewName(picture.view))
        return Error{"there is no view \"" + picture.view + "\": choose one of " + listed(viewNames()) +
                     ", or two angles in degrees such as 30,20"};
    if (picture.values.size() != picture.mesh.nodeCount())
        return Error{"the picture has " + std::to_string(picture.values.size()) + " values for " +
                     std::to_string(picture.mesh.nodeCount()) + " nodes: read the result of this model"};
    return checkTables(picture);
}

/// The tables of the picture against those of the mesh.
Result<void> checkTables(const ContourPicture& picture) {
    const T_QM_MESH_D& mesh = picture.mesh;
    if (!picture.displacements.empty() && picture.displacements.size() != mesh.nodeCount())
        return Error{"the picture has " + std::to_string(picture.displacements.size()) +
                     " displacements for " + std::to_string(mesh.nodeCount()) +
                     " nodes: read the result of this model"};
    if (picture.deformation && !std::isfinite(*picture.deformation))
        return Error{"the factor of the displacements is not a number: give one such as 100"};
    if (!picture.valuedElements.empty() && picture.valuedElements.size() != mesh.elementCount())
        return Error{"the picture knows of " + std::to_string(picture.valuedElements.size()) +
                     " elements which have a value, of " + std::to_string(mesh.elementCount()) +
                     " in the mesh: read the result of this model"};
    for (const PictureMark& mark : picture.marks) {
        const bool node = mark.kind == PictureMark::Kind::Node;
        if (mark.index >= (node ? mesh.nodeCount() : mesh.elementCount()))
            return Error{(node ? "the node marked \"" : "the element marked \"") + mark.label +
                         "\" does not exist in the mesh: mark another one"};
    }
    return {};
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

std::vector<std::uint32_t> markedElements(const ContourPicture& picture) {
    std::vector<std::uint32_t> elements;
    for (const PictureMark& mark : picture.marks)
        if (mark.kind == PictureMark::Kind::Element) elements.push_back(mark.index);
    std::ranges::sort(elements);
    return elements;
}

/// The picture with its model, view and frame, before any pixel.
class Drawing {
  public:
    static Result<std::unique_ptr<Drawing>> make(const ContourPicture& picture) {
        if (auto checked = checkOptions(picture); !checked) return checked.error();
        auto drawing = std::unique_ptr<Drawing>(new Drawing(picture));
        if (auto prepared = drawing->prepare(); !prepared) return prepared.error();
        return drawing;
    }

    Result<Image> pixels() const {
        return renderScene(scene(&layout_->overlay(), camera_), 1, picture_.transparent);
    }

    Result<std::string> svg() const {
        constexpr int kDetail = 2;
        const PixelBox box = imageBox();
        ViewCamera camera = camera_;
        camera.origin = {camera.origin[0] - box.left, camera.origin[1] - box.bottom};
        Scene model = scene(nullptr, camera);
        model.width = static_cast<int>(box.width());
        model.height = static_cast<int>(box.height());
        const auto image = renderScene(model, kDetail, true);
        if (!image) return image.error();
        const auto png = encodePng(*image);
        if (!png) return png.error();
        const std::string title = picture_.titleLines.empty() ? picture_.valueTitle : picture_.titleLines[0];
        return svgText(
            {picture_.width, picture_.height, picture_.transparent, title,
             picture_.valueTitle + ", " + shortNumber(extent_.low) + " to " + shortNumber(extent_.high), *png,
             box, layout_->overlay()},
            measure_);
    }

    DrawnContour facts() const {
        return {{levels_->low(), levels_->high()}, deformed_.empty() ? 0.0 : *picture_.deformation};
    }

  private:
    explicit Drawing(const ContourPicture& picture)
        : picture_(picture)
        , measure_(sceneTextWidth()) {}

    Result<void> prepare() {
        extent_ = extentOf(picture_.values);
        if (extent_.finiteCount == 0)
            return Error{
                "no node has a value, so there is nothing to draw: choose another component or step"};
        auto levels = ScaleLevels::make(extent_, picture_.valueScale, picture_.range);
        if (!levels) return levels.error();
        levels_ = std::move(*levels);
        auto colors = PictureColors::make(*ColorScale::find(picture_.colorScale), *levels_, picture_.bands);
        if (!colors) return colors.error();
        colors_ = *colors;
        table_ = colors_->table();
        if (auto done = prepareSurface(); !done) return done;
        layout_.emplace(picture_, *levels_, *colors_, measure_);
        layout_->addFrame(extent_, surface_.hasGrey());
        camera_ = *viewAxes(picture_.view, surface_.extent);
        fitInto(camera_, surface_, layout_->modelBox());
        layout_->addAxes(camera_);
        layout_->addMarks(camera_, surface_);
        return {};
    }

    Result<void> prepareSurface() {
        const auto faces = surfaceFacesOf(picture_.mesh);
        if (!faces) return faces.error();
        if (faces->empty())
            return Error{
                "the mesh has no element that can be drawn: it needs solids, planes, lines or points"};
        SurfaceInput input;
        input.values = picture_.values;
        input.valuedElements = picture_.valuedElements;
        input.meshEdges = picture_.edges == PictureEdges::Mesh;
        if (!picture_.displacements.empty()) {
            if (auto done = deform(); !done) return done;
            input.restPositions = picture_.mesh.nodePositions;
            input.restOutline = picture_.restOutline;
            picture_.mesh.nodePositions = deformed_;
        }
        input.positions = picture_.mesh.nodePositions;
        const std::vector<std::uint32_t> marked = markedElements(picture_);
        input.markedElements = marked;
        surface_ = contourSurfaceOf(*faces, input, *levels_);
        return {};
    }

    Result<void> deform() {
        if (!picture_.deformation)
            picture_.deformation = automaticDeformation(picture_.mesh, picture_.displacements);
        auto places = deformedPositions(picture_.mesh, picture_.displacements, *picture_.deformation);
        if (!places) return places.error();
        deformed_ = std::move(*places);
        const std::string text = picture_.words.deformed + " \xC3\x97 " +
                                 shortNumber(*picture_.deformation); // multiplication sign
        if (picture_.titleLines.empty())
            picture_.titleLines.push_back(text);
        else
            picture_.titleLines.back() += ", " + text;
        return {};
    }

    /// Whole pixels around the model, with room for the width of its lines and dots.
    PixelBox imageBox() const {
        constexpr double kRoom = 8.0;
        const PixelBox box = boxOf(camera_, surface_);
        return {std::max(0.0, std::floor(box.left - kRoom)), std::max(0.0, std::floor(box.bottom - kRoom)),
                std::min<double>(picture_.width, std::ceil(box.right + kRoom)),
                std::min<double>(picture_.height, std::ceil(box.top + kRoom))};
    }

    Scene scene(const Overlay* overlay, const ViewCamera& camera) const {
        const double lineScale =
            std::max(0.5, std::min<double>(picture_.height, 0.8 * picture_.width) / 1000.0);
        return {surface_, table_,         colors_->noValue(), picture_.edges, camera,
                overlay,  picture_.width, picture_.height,    lineScale};
    }

    ContourPicture picture_; ///< with the positions that are drawn
    TextWidth measure_;
    ValueExtent extent_;
    std::optional<ScaleLevels> levels_;
    std::optional<PictureColors> colors_;
    ColorTable table_;
    std::vector<std::array<double, 3>> deformed_;
    ContourSurface surface_;
    ViewCamera camera_;
    std::optional<PictureLayout> layout_;
};

std::mutex oneAtATime;

bool hasExtension(const std::filesystem::path& path, std::string_view extension) {
    const std::string own = path.extension().string();
    return std::ranges::equal(own, extension, [](char a, char b) {
        return (a >= 'A' && a <= 'Z' ? static_cast<char>(a - 'A' + 'a') : a) == b;
    });
}

/// The bytes of the file.
Result<std::vector<unsigned char>> encoded(const Drawing& drawing, bool asSvg) {
    if (asSvg) {
        const auto text = drawing.svg();
        if (!text) return text.error();
        return std::vector<unsigned char>(text->begin(), text->end());
    }
    const auto image = drawing.pixels();
    if (!image) return image.error();
    return encodePng(*image);
}

} // namespace

Result<Image> drawContour(const ContourPicture& picture) {
    const std::lock_guard lock(oneAtATime);
    const auto drawing = Drawing::make(picture);
    if (!drawing) return drawing.error();
    return (*drawing)->pixels();
}

bool isPictureName(const std::filesystem::path& path) {
    return hasExtension(path, ".png") || hasExtension(path, ".svg");
}

Result<DrawnContour> writeContour(const ContourPicture& picture, const std::filesystem::path& path) {
    if (!isPictureName(path))
        return Error{"the picture's name must end in .png or .svg, which " + path.string() + " does not"};
    const std::lock_guard lock(oneAtATime);
    const auto drawing = Drawing::make(picture);
    if (!drawing) return drawing.error();
    const auto bytes = encoded(**drawing, hasExtension(path, ".svg"));
    if (!bytes) return bytes.error();
    ReplacedFile file(path);
    if (const int failed = writeFile(file.temporaryPath(), *bytes))
        return Error{"cannot write the picture " + path.string() + ": " + systemErrorText(failed)};
    if (auto written = file.commit(); !written) return written.error();
    return (*drawing)->facts();
}

} // namespace workbench
