#include "workbench/picture/SceneRenderer.h"

#include "workbench/picture/DrawingDisplay.h"
#include "workbench/picture/ProbeWindow.h"
#include "workbench/picture/SceneWindow.h"
#include "workbench/picture/VtkMessages.h"

#include <vtkActor.h>
#include <vtkActor2D.h>
#include <vtkCamera.h>
#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkFloatArray.h>
#include <vtkImageData.h>
#include <vtkLookupTable.h>
#include <vtkNew.h>
#include <vtkPNGWriter.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkPolyDataMapper2D.h>
#include <vtkProperty.h>
#include <vtkProperty2D.h>
#include <vtkRenderer.h>
#include <vtkTextActor.h>
#include <vtkTextProperty.h>
#include <vtkTextRenderer.h>
#include <vtkTypeInt32Array.h>
#include <vtkUnsignedCharArray.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace workbench {
namespace {

/// Images up to this many pixels are drawn at twice their size and averaged, which smooths every edge the
/// same on all drivers; larger ones are fine enough without.
constexpr long kMostSmoothedPixels = 4096L * 2304L;

/// The drawing library's window has no more pixels than this each way.
constexpr int kLargestWindow = 16384;

/// Not NanumGothic.ttf of the same package: VTK draws its Latin glyphs only.
const char* fontFile(bool bold) {
    static const auto firstPresent = [](std::initializer_list<const char*> files) -> const char* {
        std::error_code ignored;
        for (const char* file : files)
            if (std::filesystem::exists(file, ignored)) return file;
        return nullptr;
    };
    static const char* const ordinary = firstPresent({"/usr/share/fonts/truetype/nanum/NanumBarunGothic.ttf",
                                                      "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"});
    static const char* const strong =
        firstPresent({"/usr/share/fonts/truetype/nanum/NanumBarunGothicBold.ttf",
                      "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf"});
    return bold ? strong : ordinary;
}

void setFont(vtkTextProperty& property, double size, bool bold) {
    if (const char* file = fontFile(bold)) {
        property.SetFontFamily(VTK_FONT_FILE);
        property.SetFontFile(file);
    } else {
        property.SetFontFamilyToArial();
        property.SetBold(bold);
    }
    property.SetFontSize(std::max(1, static_cast<int>(std::lround(size))));
    property.SetColor(0.0, 0.0, 0.0);
}

/// Cells of `count` points each over vertices that are already there, without a copy.
template <std::size_t count>
vtkSmartPointer<vtkCellArray> cellsOver(const std::vector<std::array<std::uint32_t, count>>& cells) {
    vtkNew<vtkTypeInt32Array> connectivity;
    auto* first = reinterpret_cast<vtkTypeInt32*>(const_cast<std::uint32_t*>(cells.data()->data()));
    connectivity->SetArray(first, static_cast<vtkIdType>(cells.size() * count), 1);
    vtkNew<vtkTypeInt32Array> offsets;
    offsets->SetNumberOfValues(static_cast<vtkIdType>(cells.size() + 1));
    for (std::size_t i = 0; i <= cells.size(); ++i)
        offsets->SetValue(static_cast<vtkIdType>(i), static_cast<vtkTypeInt32>(i * count));
    auto array = vtkSmartPointer<vtkCellArray>::New();
    array->SetData(offsets, connectivity);
    return array;
}

using Vertices = std::vector<std::array<float, 3>>;

vtkSmartPointer<vtkPolyData> verticesOf(const Vertices& vertices) {
    vtkNew<vtkFloatArray> coordinates;
    coordinates->SetNumberOfComponents(3);
    coordinates->SetArray(const_cast<float*>(vertices.data()->data()),
                          static_cast<vtkIdType>(vertices.size() * 3), 1);
    vtkNew<vtkPoints> points;
    points->SetData(coordinates);
    auto data = vtkSmartPointer<vtkPolyData>::New();
    data->SetPoints(points);
    return data;
}

vtkSmartPointer<vtkLookupTable> tableOf(const ColorTable& colors) {
    auto table = vtkSmartPointer<vtkLookupTable>::New();
    table->SetNumberOfTableValues(static_cast<vtkIdType>(colors.colors.size()));
    table->SetTableRange(colors.low, colors.high);
    for (std::size_t i = 0; i < colors.colors.size(); ++i)
        table->SetTableValue(static_cast<vtkIdType>(i), colors.colors[i][0] / 255.0,
                             colors.colors[i][1] / 255.0, colors.colors[i][2] / 255.0);
    return table;
}

constexpr Rgb kEdgeColor{31, 31, 31};
constexpr Rgb kMeshEdgeColor{60, 60, 60};
constexpr Rgb kRestEdgeColor{120, 120, 120};
constexpr Rgb kMarkedEdgeColor{0, 0, 0};

/// The parts of the model over one set of vertices.
class ModelActors {
  public:
    ModelActors(vtkRenderer& renderer, const Scene& scene, double scale)
        : renderer_(renderer)
        , scene_(scene)
        , table_(tableOf(scene.colors)) {
        const ContourSurface& surface = scene.surface;
        const double line = 3.0 * scale;
        if (!surface.triangles.empty()) color(add(faces(surface.triangles)));
        if (!surface.greyTriangles.empty()) paint(add(faces(surface.greyTriangles)), scene.noValue);
        if (!surface.segments.empty()) color(addLines(surface.positions, surface.segments, line));
        if (!surface.greySegments.empty())
            paint(addLines(surface.positions, surface.greySegments, line), scene.noValue);
        if (!surface.dots.empty()) color(addDots(surface.dots, 7.0 * scale));
        if (!surface.greyDots.empty()) paint(addDots(surface.greyDots, 7.0 * scale), scene.noValue);
        addEdges(scale);
    }

  private:
    void addEdges(double scale) {
        const ContourSurface& surface = scene_.surface;
        const double thin = 1.1 * scale;
        if (scene_.edges == PictureEdges::Mesh && !surface.meshEdges.empty())
            paint(addLines(surface.positions, surface.meshEdges, 0.8 * scale), kMeshEdgeColor);
        if (scene_.edges != PictureEdges::None && !surface.featureEdges.empty())
            paint(addLines(surface.positions, surface.featureEdges, thin), kEdgeColor);
        if (surface.restOutline && !surface.featureEdges.empty()) addRestOutline(thin);
        if (!surface.markedEdges.empty())
            paint(addLines(surface.positions, surface.markedEdges, 2.4 * scale), kMarkedEdgeColor);
    }

    /// Behind the surface where that has not moved.
    void addRestOutline(double width) {
        const ContourSurface& surface = scene_.surface;
        vtkActor& actor = addLines(surface.restPositions, surface.featureEdges, width);
        paint(actor, kRestEdgeColor);
        actor.GetMapper()->SetRelativeCoincidentTopologyLineOffsetParameters(8.0, 100.0);
    }

    vtkSmartPointer<vtkPolyData> faces(const std::vector<std::array<std::uint32_t, 3>>& triangles) {
        auto data = verticesOf(scene_.surface.positions);
        data->SetPolys(cellsOver(triangles));
        return data;
    }

    vtkActor& addLines(const Vertices& vertices, const std::vector<std::array<std::uint32_t, 2>>& lines,
                       double width) {
        auto data = verticesOf(vertices);
        data->SetLines(cellsOver(lines));
        vtkActor& actor = add(data);
        actor.GetProperty()->SetLineWidth(static_cast<float>(width));
        actor.GetProperty()->LightingOff();
        return actor;
    }

    vtkActor& addDots(const std::vector<std::array<std::uint32_t, 1>>& dots, double size) {
        auto data = verticesOf(scene_.surface.positions);
        data->SetVerts(cellsOver(dots));
        vtkActor& actor = add(data);
        actor.GetProperty()->SetPointSize(static_cast<float>(size));
        actor.GetProperty()->RenderPointsAsSpheresOn();
        return actor;
    }

    vtkActor& add(const vtkSmartPointer<vtkPolyData>& data) {
        vtkNew<vtkPolyDataMapper> mapper;
        mapper->SetInputData(data);
        vtkNew<vtkActor> actor;
        actor->SetMapper(mapper);
        // Much light from everywhere: a colour on a slanted face is still found on the bar.
        actor->GetProperty()->SetAmbient(0.8);
        actor->GetProperty()->SetDiffuse(0.2);
        actor->GetProperty()->SetSpecular(0.0);
        renderer_.AddActor(actor);
        return *actor;
    }

    void color(vtkActor& actor) {
        auto* mapper = vtkPolyDataMapper::SafeDownCast(actor.GetMapper());
        vtkNew<vtkFloatArray> places;
        const std::vector<float>& positions = scene_.surface.scalePositions;
        places->SetArray(const_cast<float*>(positions.data()), static_cast<vtkIdType>(positions.size()), 1);
        mapper->GetInput()->GetPointData()->SetScalars(places);
        mapper->SetLookupTable(table_);
        mapper->UseLookupTableScalarRangeOn();
        mapper->InterpolateScalarsBeforeMappingOn();
    }

    static void paint(vtkActor& actor, const Rgb& color) {
        actor.GetMapper()->SetScalarVisibility(0);
        actor.GetProperty()->SetColor(color[0] / 255.0, color[1] / 255.0, color[2] / 255.0);
    }

    vtkRenderer& renderer_;
    const Scene& scene_; ///< while the parts are made
    vtkSmartPointer<vtkLookupTable> table_;
};

void addOverlay(vtkRenderer& renderer, const Overlay& overlay, double scale) {
    vtkNew<vtkPoints> points;
    vtkNew<vtkCellArray> polygons;
    vtkNew<vtkUnsignedCharArray> colors;
    colors->SetNumberOfComponents(4);
    for (const OverlayPolygon& polygon : overlay.polygons) {
        polygons->InsertNextCell(static_cast<int>(polygon.corners.size()));
        for (const Pixel& corner : polygon.corners)
            polygons->InsertCellPoint(points->InsertNextPoint(corner[0] * scale, corner[1] * scale, 0.0));
        const double rgba[] = {double(polygon.color[0]), double(polygon.color[1]), double(polygon.color[2]),
                               polygon.opacity * 255.0};
        colors->InsertNextTuple(rgba);
    }
    vtkNew<vtkPolyData> data;
    data->SetPoints(points);
    data->SetPolys(polygons);
    data->GetCellData()->SetScalars(colors);
    vtkNew<vtkPolyDataMapper2D> mapper;
    mapper->SetInputData(data);
    vtkNew<vtkActor2D> actor;
    actor->SetMapper(mapper);
    renderer.AddActor2D(actor);

    for (const OverlayText& text : overlay.texts) {
        if (text.text.empty()) continue;
        vtkNew<vtkTextActor> label;
        label->SetInput(text.text.c_str());
        label->SetTextScaleModeToNone();
        vtkTextProperty& property = *label->GetTextProperty();
        setFont(property, text.size * scale, text.bold);
        property.SetVerticalJustificationToCentered();
        property.SetJustification(text.align == TextAlign::Left     ? VTK_TEXT_LEFT
                                  : text.align == TextAlign::Center ? VTK_TEXT_CENTERED
                                                                    : VTK_TEXT_RIGHT);
        // VTK centres the line with its descenders: digits and capitals would stand too high.
        label->SetPosition(text.at[0] * scale, (text.at[1] - 0.08 * text.size) * scale);
        label->SetLayerNumber(1); // over the polygons
        renderer.AddActor2D(label);
    }
}

void setCamera(vtkRenderer& renderer, const ViewCamera& view, const Vector3& extent, int width, int height) {
    const double acrossShift = (0.5 * width - view.origin[0]) / view.pixelsPerLength;
    const double upShift = (0.5 * height - view.origin[1]) / view.pixelsPerLength;
    const double size = std::hypot(extent[0], extent[1], extent[2]);
    const double radius = size > 0.0 ? size : 1.0;
    Vector3 focus, eye;
    for (std::size_t i = 0; i < 3; ++i) {
        focus[i] = view.right[i] * acrossShift + view.up[i] * upShift;
        eye[i] = focus[i] + view.toViewer[i] * 2.0 * radius;
    }
    vtkCamera& camera = *renderer.GetActiveCamera();
    camera.ParallelProjectionOn();
    camera.SetFocalPoint(focus.data());
    camera.SetPosition(eye.data());
    camera.SetViewUp(view.up.data());
    camera.SetParallelScale(0.5 * height / view.pixelsPerLength);
    camera.SetClippingRange(radius, 3.0 * radius);
}

/// The window's pixels, `factor` x `factor` of them averaged into one.
Image readPixels(vtkRenderWindow& window, int width, int height, int factor) {
    vtkNew<vtkUnsignedCharArray> pixels;
    window.GetPixelData(0, 0, width * factor - 1, height * factor - 1, 0, pixels);
    const unsigned char* source = pixels->GetPointer(0);
    const std::size_t stride = static_cast<std::size_t>(width) * factor * 3;
    Image image{width, height, std::vector<Rgb>(static_cast<std::size_t>(width) * height), {}};
    const unsigned area = static_cast<unsigned>(factor * factor);
    for (int y = 0; y < height; ++y) {
        const unsigned char* rows = source + static_cast<std::size_t>(height - 1 - y) * factor * stride;
        Rgb* target = image.pixels.data() + static_cast<std::size_t>(y) * width;
        for (int x = 0; x < width; ++x)
            for (int c = 0; c < 3; ++c) {
                unsigned sum = area / 2;
                for (int dy = 0; dy < factor; ++dy)
                    for (int dx = 0; dx < factor; ++dx)
                        sum += rows[dy * stride + (x * factor + dx) * 3 + c];
                target[x][c] = static_cast<std::uint8_t>(sum / area);
            }
    }
    return image;
}

/// The image whose drawings on white and on black are given: what differs between them shows through.
Image withoutBackground(const Image& onWhite, const Image& onBlack) {
    Image image = onBlack;
    image.alpha.resize(image.pixels.size());
    for (std::size_t i = 0; i < image.pixels.size(); ++i) {
        int through = 0; // three times how much white is seen
        for (std::size_t c = 0; c < 3; ++c)
            through += std::max(0, onWhite.pixels[i][c] - onBlack.pixels[i][c]);
        const int alpha = 255 - std::min(255, (through + 1) / 3);
        image.alpha[i] = static_cast<std::uint8_t>(alpha);
        for (std::size_t c = 0; c < 3; ++c)
            image.pixels[i][c] = static_cast<std::uint8_t>(
                alpha == 0 ? 255 : std::min(255, (image.pixels[i][c] * 255 + alpha / 2) / alpha));
    }
    return image;
}

Error drawingError(const std::string& cause) {
    return Error{"the picture could not be drawn: " + cleanText(cause.substr(0, 300))};
}

} // namespace

TextWidth sceneTextWidth() {
    return [](const std::string& text, double size, bool bold) {
        constexpr double kMeasuredAt = 4.0; // finer than the whole pixels that the answer comes in
        constexpr int kDotsPerInch = 72;
        vtkNew<vtkTextProperty> property;
        setFont(*property, size * kMeasuredAt, bold);
        int box[4] = {0, 0, 0, 0};
        vtkTextRenderer* renderer = vtkTextRenderer::GetInstance();
        if (text.empty() || !renderer || !renderer->GetBoundingBox(property, text, box, kDotsPerInch))
            return 0.0;
        return (box[1] - box[0] + 1) / kMeasuredAt;
    };
}

Result<Image> renderScene(const Scene& scene, int detail, bool transparent) {
    const VtkMessages messages;
    const auto display = drawingDisplay(&canDrawOn);
    if (!display) return display.error();
    const int width = scene.width * detail, height = scene.height * detail;
    const bool smoothed = static_cast<long>(width) * height <= kMostSmoothedPixels &&
                          2 * std::max(width, height) <= kLargestWindow;
    const int factor = smoothed ? 2 : 1;
    SceneWindow window(*display, width * factor, height * factor);
    if (!window.isOpen()) return drawingError("the display " + *display + " does not answer any more");
    vtkNew<vtkRenderer> renderer;
    window.window().AddRenderer(renderer);
    window.window().SetDPI(72);
    vtkMapper::SetResolveCoincidentTopologyToPolygonOffset();
    const double scale = static_cast<double>(detail) * factor;
    const ModelActors actors(*renderer, scene, scene.lineScale * scale);
    if (scene.overlay) addOverlay(*renderer, *scene.overlay, scale);
    setCamera(*renderer, scene.camera, scene.surface.extent, scene.width, scene.height);
    const auto drawOn = [&](double background) {
        renderer->SetBackground(background, background, background);
        window.render();
        return readPixels(window.window(), width, height, factor);
    };
    Image image = drawOn(1.0);
    if (transparent) image = withoutBackground(image, drawOn(0.0));
    if (!messages.error().empty()) return drawingError(messages.error());
    return image;
}

struct SceneView::State {
    std::unique_ptr<SceneWindow> window;
    vtkSmartPointer<vtkRenderer> renderer;
    std::unique_ptr<ModelActors> model;
    double scale = 0.0; ///< of its lines
};

SceneView::SceneView()
    : state_(std::make_unique<State>()) {}

SceneView::~SceneView() {
    forget();
}

void SceneView::forget() {
    state_->model.reset();
    if (state_->renderer) state_->renderer->RemoveAllViewProps();
}

Result<Image> SceneView::draw(const Scene& scene) {
    constexpr int kFactor = 2; // smooth edges, as in pictures
    const VtkMessages messages;
    State& state = *state_;
    if (!state.window) {
        const auto display = drawingDisplay(&canDrawOn);
        if (!display) return display.error();
        state.window = std::make_unique<SceneWindow>(*display, scene.width * kFactor, scene.height * kFactor);
        if (!state.window->isOpen()) {
            state.window.reset();
            return drawingError("the display " + *display + " does not answer any more");
        }
        state.renderer = vtkSmartPointer<vtkRenderer>::New();
        state.renderer->SetBackground(1.0, 1.0, 1.0);
        state.window->window().AddRenderer(state.renderer);
        vtkMapper::SetResolveCoincidentTopologyToPolygonOffset();
    }
    state.window->window().SetSize(scene.width * kFactor, scene.height * kFactor);
    const double scale = scene.lineScale * kFactor;
    if (!state.model || state.scale != scale) {
        forget();
        state.model = std::make_unique<ModelActors>(*state.renderer, scene, scale);
        state.scale = scale;
    }
    setCamera(*state.renderer, scene.camera, scene.surface.extent, scene.width, scene.height);
    state.window->render();
    Image image = readPixels(state.window->window(), scene.width, scene.height, kFactor);
    if (!messages.error().empty()) return drawingError(messages.error());
    return image;
}

Result<std::vector<unsigned char>> encodePng(const Image& image) {
    const VtkMessages messages;
    vtkNew<vtkImageData> data;
    data->SetDimensions(image.width, image.height, 1);
    const int channels = image.alpha.empty() ? 3 : 4;
    data->AllocateScalars(VTK_UNSIGNED_CHAR, channels);
    for (int y = 0; y < image.height; ++y) {
        auto* target = static_cast<unsigned char*>(data->GetScalarPointer(0, image.height - 1 - y, 0));
        const std::size_t row = static_cast<std::size_t>(y) * image.width;
        for (int x = 0; x < image.width; ++x, target += channels) {
            std::ranges::copy(image.pixels[row + x], target);
            if (channels == 4) target[3] = image.alpha[row + x];
        }
    }
    vtkNew<vtkPNGWriter> writer;
    writer->SetInputData(data);
    writer->WriteToMemoryOn();
    writer->Write();
    const vtkSmartPointer<vtkUnsignedCharArray> bytes = writer->GetResult();
    if (!messages.error().empty() || !bytes || bytes->GetNumberOfValues() == 0)
        return drawingError(messages.error().empty() ? "no PNG came out" : messages.error());
    const unsigned char* first = bytes->GetPointer(0);
    return std::vector<unsigned char>(first, first + bytes->GetNumberOfValues());
}

} // namespace workbench
