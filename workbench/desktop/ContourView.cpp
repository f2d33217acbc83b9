#include "workbench/desktop/ContourView.h"

#include "workbench/picture/Pick.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>

namespace workbench::desktop {
namespace {

QFont pictureFont(double size, bool bold) {
    QFont font = QApplication::font();
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(size))));
    font.setBold(bold);
    return font;
}

QColor qColor(const Rgb& color, double opacity = 1.0) {
    return QColor(color[0], color[1], color[2], static_cast<int>(std::lround(255.0 * opacity)));
}

/// The overlay counts from the lower edge.
void paintOverlay(QPainter& painter, const Overlay& overlay, int height) {
    painter.setPen(Qt::NoPen);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const OverlayPolygon& polygon : overlay.polygons) {
        QPolygonF shape;
        for (const Pixel& corner : polygon.corners)
            shape << QPointF(corner[0], height - corner[1]);
        painter.setBrush(qColor(polygon.color, polygon.opacity));
        painter.drawPolygon(shape);
    }
    painter.setPen(Qt::black);
    for (const OverlayText& text : overlay.texts) {
        painter.setFont(pictureFont(text.size, text.bold));
        const QString shown = QString::fromStdString(text.text);
        const double width = QFontMetricsF(painter.font()).horizontalAdvance(shown);
        const double left = text.at[0] - (text.align == TextAlign::Left     ? 0.0
                                          : text.align == TextAlign::Center ? width / 2
                                                                            : width);
        painter.drawText(QPointF(left, height - text.at[1] + 0.36 * text.size), shown);
    }
}

std::string angleText(double angle) {
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, angle, std::chars_format::fixed, 3).ptr;
    return {text, end};
}

} // namespace

ContourView::ContourView(QWidget* parent)
    : QWidget(parent)
    , scene_(std::make_unique<SceneView>()) {
    setMinimumSize(kSmallestPicture, kSmallestPicture);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

TextWidth ContourView::textWidth() {
    return [](const std::string& text, double size, bool bold) {
        return QFontMetricsF(pictureFont(size, bold)).horizontalAdvance(QString::fromStdString(text));
    };
}

void ContourView::setResult(std::unique_ptr<ShownResult> result, bool keepView) {
    scene_->forget();
    result_ = std::move(result);
    if (!keepView) {
        view_ = "iso";
        zoom_ = {};
        marks_.clear();
    }
    // Labels say the values of the result that is shown.
    if (result_)
        for (PictureMark& mark : marks_)
            mark.label = result_->labelOf(mark.kind, mark.index);
    changed();
}

void ContourView::setHint(const QString& hint) {
    hint_ = hint;
    update();
}

void ContourView::setNamedView(const std::string& name) {
    view_ = name;
    fit();
}

void ContourView::fit() {
    zoom_ = {};
    changed();
}

void ContourView::setMarks(std::vector<PictureMark> marks) {
    const auto ofElements = [](const std::vector<PictureMark>& all) {
        return std::ranges::count(all, PictureMark::Kind::Element, &PictureMark::kind);
    };
    if (ofElements(marks_) + ofElements(marks) > 0) scene_->forget(); // their edges are a part of the model
    marks_ = std::move(marks);
    changed();
}

ContourPicture ContourView::pictureAsSeen() const {
    ContourPicture picture = result_->picture();
    picture.view = view_;
    picture.zoom = zoom_;
    picture.marks = marks_;
    return picture;
}

void ContourView::changed() {
    outdated_ = true;
    update();
}

void ContourView::draw() {
    outdated_ = false;
    const auto begin = std::chrono::steady_clock::now();
    result_->drawing().show({width(), height(), view_, zoom_, marks_});
    const auto pixels = scene_->draw(result_->drawing().scene(nullptr, result_->drawing().camera()));
    if (!pixels) {
        image_ = {};
        if (failed) failed(pixels.error().message);
        return;
    }
    static_assert(sizeof(Rgb) == 3);
    image_ = QImage(reinterpret_cast<const uchar*>(pixels->pixels.data()), pixels->width, pixels->height,
                    3 * pixels->width, QImage::Format_RGB888)
                 .copy();
    seconds_ = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

void ContourView::paintEvent(QPaintEvent*) {
    if (outdated_ && result_) draw();
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    if (result_ && !image_.isNull()) {
        painter.drawImage(0, 0, image_);
        paintOverlay(painter, result_->drawing().overlay(), height());
    } else {
        painter.setPen(QColor(110, 110, 110));
        painter.drawText(rect().adjusted(20, 20, -20, -20), Qt::AlignCenter | Qt::TextWordWrap, hint_);
    }
}

void ContourView::resizeEvent(QResizeEvent*) {
    changed();
}

void ContourView::mousePressEvent(QMouseEvent* event) {
    pressedAt_ = lastAt_ = event->position();
    dragged_ = false;
}

void ContourView::mouseMoveEvent(QMouseEvent* event) {
    constexpr double kClick = 4.0; ///< a hand trembles so many pixels
    if (!result_ || !(event->buttons() & (Qt::LeftButton | Qt::MiddleButton))) return;
    const QPointF way = event->position() - pressedAt_;
    if (!dragged_ && std::hypot(way.x(), way.y()) < kClick) return;
    dragged_ = true;
    const QPointF by = event->position() - lastAt_;
    lastAt_ = event->position();
    const bool moves = (event->buttons() & Qt::MiddleButton) || (event->modifiers() & Qt::ShiftModifier);
    if (moves)
        move(by);
    else
        turn(by);
}

void ContourView::mouseReleaseEvent(QMouseEvent* event) {
    if (result_ && !dragged_ && event->button() == Qt::LeftButton)
        pick(event->position(), (event->modifiers() & Qt::ControlModifier) != 0);
}

/// Half a turn across the window; the vertical stays upright, so that a picture file can show the same.
void ContourView::turn(const QPointF& by) {
    const double degreesPerPixel = 180.0 / std::max(1, std::min(width(), height()));
    auto [around, upwards] = anglesOf(result_->drawing().camera());
    around = std::remainder(around - by.x() * degreesPerPixel, 360.0);
    upwards = std::clamp(upwards + by.y() * degreesPerPixel, -90.0, 90.0);
    view_ = angleText(around) + "," + angleText(upwards);
    changed();
}

void ContourView::move(const QPointF& by) {
    const double scale = result_->drawing().camera().pixelsPerLength;
    zoom_.right += by.x() / scale;
    zoom_.up -= by.y() / scale;
    changed();
}

/// Enlarges around the point under the mouse.
void ContourView::wheelEvent(QWheelEvent* event) {
    if (!result_) return;
    constexpr double kPerNotch = 1.2, kNotch = 120.0, kLeast = 0.05, kMost = 500.0;
    const double wanted = zoom_.factor * std::pow(kPerNotch, event->angleDelta().y() / kNotch);
    const double factor = std::clamp(wanted, kLeast, kMost) / zoom_.factor;
    const PixelBox& box = result_->drawing().modelBox();
    const double scale = result_->drawing().camera().pixelsPerLength;
    const double right = event->position().x() - 0.5 * (box.left + box.right);
    const double up = height() - event->position().y() - 0.5 * (box.bottom + box.top);
    zoom_.factor *= factor;
    zoom_.right += right * (1.0 - factor) / (scale * factor);
    zoom_.up += up * (1.0 - factor) / (scale * factor);
    changed();
}

void ContourView::pick(const QPointF& at, bool adds) {
    constexpr double kReach = 6.0;
    ContourDrawing& drawing = result_->drawing();
    const auto part = pickAt(*drawing.faces(), drawing.positions(), drawing.surface(), drawing.camera(),
                             {at.x(), height() - at.y()}, kReach);
    if (!picked) return;
    if (part)
        picked(pickKind_ == PickKind::Node ? part->node : part->element, adds);
    else
        picked(std::nullopt, adds);
}

} // namespace workbench::desktop
