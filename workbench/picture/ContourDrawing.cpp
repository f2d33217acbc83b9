#include "workbench/picture/ContourDrawing.h"

#include "workbench/picture/ColorScale.h"
#include "workbench/picture/Deformation.h"
#include "workbench/picture/SvgPicture.h"

#include <algorithm>
#include <cmath>

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

std::vector<std::uint32_t> markedElements(const ContourPicture& picture) {
    std::vector<std::uint32_t> elements;
    for (const PictureMark& mark : picture.marks)
        if (mark.kind == PictureMark::Kind::Element) elements.push_back(mark.index);
    std::ranges::sort(elements);
    return elements;
}

} // namespace

ContourDrawing::ContourDrawing(const ContourPicture& picture, TextWidth measure)
    : picture_(picture)
    , measure_(std::move(measure)) {}

Result<std::unique_ptr<ContourDrawing>> ContourDrawing::make(const ContourPicture& picture,
                                                             std::shared_ptr<const SurfaceFaces> faces,
                                                             TextWidth measure) {
    if (auto checked = checkOptions(picture); !checked) return checked.error();
    auto drawing = std::unique_ptr<ContourDrawing>(new ContourDrawing(picture, std::move(measure)));
    drawing->faces_ = std::move(faces);
    if (auto prepared = drawing->prepare(); !prepared) return prepared.error();
    return drawing;
}

Result<Image> ContourDrawing::pixels() const {
    return renderScene(scene(&layout_->overlay(), camera_), 1, picture_.transparent);
}

Result<std::string> ContourDrawing::svg() const {
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

DrawnContour ContourDrawing::facts() const {
    return {{levels_->low(), levels_->high()}, deformed_.empty() ? 0.0 : *picture_.deformation};
}

Result<void> ContourDrawing::prepare() {
    extent_ = extentOf(picture_.values);
    if (extent_.finiteCount == 0)
        return Error{"no node has a value, so there is nothing to draw: choose another component or step"};
    auto levels = ScaleLevels::make(extent_, picture_.valueScale, picture_.range);
    if (!levels) return levels.error();
    levels_ = std::move(*levels);
    auto colors = PictureColors::make(*ColorScale::find(picture_.colorScale), *levels_, picture_.bands);
    if (!colors) return colors.error();
    colors_ = *colors;
    table_ = colors_->table();
    if (auto done = prepareSurface(); !done) return done;
    layOut();
    return {};
}

void ContourDrawing::layOut() {
    layout_.emplace(picture_, *levels_, *colors_, measure_);
    layout_->addFrame(extent_, surface_.hasGrey());
    camera_ = *viewAxes(picture_.view, surface_.extent);
    fitInto(camera_, surface_, layout_->modelBox());
    zoomInto(camera_, layout_->modelBox(), picture_.zoom);
    layout_->addAxes(camera_);
    layout_->addMarks(camera_, surface_);
}

void ContourDrawing::show(const ContourPose& pose) {
    picture_.width = pose.width;
    picture_.height = pose.height;
    picture_.view = pose.view;
    picture_.zoom = pose.zoom;
    picture_.marks = pose.marks;
    if (markedElements(picture_) != marked_) makeSurface();
    layOut();
}

Result<void> ContourDrawing::prepareSurface() {
    if (!faces_) {
        auto faces = surfaceFacesOf(picture_.mesh);
        if (!faces) return faces.error();
        faces_ = std::make_shared<const SurfaceFaces>(std::move(*faces));
    }
    if (faces_->empty())
        return Error{"the mesh has no element that can be drawn: it needs solids, planes, lines or points"};
    if (!picture_.displacements.empty()) {
        if (auto done = deform(); !done) return done;
        restPositions_ = picture_.mesh.nodePositions;
        picture_.mesh.nodePositions = deformed_;
    }
    makeSurface();
    return {};
}

void ContourDrawing::makeSurface() {
    marked_ = markedElements(picture_);
    SurfaceInput input;
    input.positions = picture_.mesh.nodePositions;
    input.restPositions = restPositions_;
    input.values = picture_.values;
    input.valuedElements = picture_.valuedElements;
    input.markedElements = marked_;
    input.meshEdges = picture_.edges == PictureEdges::Mesh;
    input.restOutline = picture_.restOutline && !restPositions_.empty();
    surface_ = contourSurfaceOf(*faces_, input, *levels_);
}

Result<void> ContourDrawing::deform() {
    if (!picture_.deformation)
        picture_.deformation = automaticDeformation(picture_.mesh, picture_.displacements);
    auto places = deformedPositions(picture_.mesh, picture_.displacements, *picture_.deformation);
    if (!places) return places.error();
    deformed_ = std::move(*places);
    const std::string text =
        picture_.words.deformed + " \xC3\x97 " + shortNumber(*picture_.deformation); // multiplication sign
    if (picture_.titleLines.empty())
        picture_.titleLines.push_back(text);
    else
        picture_.titleLines.back() += ", " + text;
    return {};
}

PixelBox ContourDrawing::imageBox() const {
    constexpr double kRoom = 8.0;
    const PixelBox box = boxOf(camera_, surface_);
    return {std::max(0.0, std::floor(box.left - kRoom)), std::max(0.0, std::floor(box.bottom - kRoom)),
            std::min<double>(picture_.width, std::ceil(box.right + kRoom)),
            std::min<double>(picture_.height, std::ceil(box.top + kRoom))};
}

Scene ContourDrawing::scene(const Overlay* overlay, const ViewCamera& camera) const {
    const double lineScale = std::max(0.5, std::min<double>(picture_.height, 0.8 * picture_.width) / 1000.0);
    return {surface_, table_,         colors_->noValue(), picture_.edges, camera,
            overlay,  picture_.width, picture_.height,    lineScale};
}

} // namespace workbench
