#include "workbench/desktop/RecordingPainter.h"

#include "framework/drawing/DC.h"
#include "framework/drawing/PixelPath.h"
#include "workbench/desktop/ControlView.h"

#include <algorithm>
#include <cmath>

namespace workbench::desktop {
namespace {

using namespace framework;

QColor colorOf(COLORREF color) {
    return {GetRValue(color), GetGValue(color), GetBValue(color)};
}

QRect rectOf(const CRect& rect) {
    return {rect.left, rect.top, rect.Width(), rect.Height()};
}

QPen penOf(const PenLook& look) {
    if (look.none) return Qt::NoPen;
    return {colorOf(look.color), qreal(look.width), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

QFont fontOf(const LOGFONT& look) {
    QFont font(look.lfFaceName[0] ? qText(look.lfFaceName) : QApplication::font().family());
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(emOf(look)))));
    if (look.lfWeight > 0) font.setWeight(static_cast<QFont::Weight>(std::min(look.lfWeight, FW_BOLD + 200)));
    font.setItalic(look.lfItalic != 0);
    font.setUnderline(look.lfUnderline != 0);
    font.setStrikeOut(look.lfStrikeOut != 0);
    return font;
}

/// What of the device can show something, in the coordinates of the recording; no smaller than it is.
CRect seenBy(const QPainter& painter) {
    const QRect device(0, 0, painter.device()->width(), painter.device()->height());
    const QRect seen = painter.worldTransform().inverted().mapRect(device);
    return {seen.left(), seen.top(), seen.left() + seen.width(), seen.top() + seen.height()};
}

void drawThinLine(QPainter& painter, std::span<const CPoint> path, COLORREF color) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(colorOf(color));
    const CRect seen = seenBy(painter);
    // In pieces: a curve that goes to and fro has more pixels than points.
    constexpr std::size_t kPiece = 256;
    QList<QRect> pixels;
    for (std::size_t first = 0; first + 1 < path.size(); first += kPiece) {
        const auto piece = path.subspan(first, std::min(kPiece + 1, path.size() - first));
        pixels.clear();
        for (const CRect& run : pixelRuns(piece, seen))
            pixels.append(rectOf(run));
        painter.drawRects(pixels);
    }
}

void drawWideLine(QPainter& painter, const std::vector<CPoint>& path, const PenLook& pen) {
    QPolygonF line;
    // The middle of a pen of odd width is the middle of a pixel.
    const qreal shift = pen.width % 2 ? 0.5 : 0;
    for (const CPoint point : path) {
        const CPoint near = withinReach(point);
        line.append({near.x + shift, near.y + shift});
    }
    painter.setPen(penOf(pen));
    painter.drawPolyline(line);
}

void drawEllipse(QPainter& painter, const CRect& box, const EllipsesCommand& look) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(penOf(look.pen));
    painter.setBrush(look.brush.none ? QBrush(Qt::NoBrush) : QBrush(colorOf(look.brush.color)));
    // The outline lies within the box.
    const qreal inset = look.pen.none ? 0 : look.pen.width / 2.0;
    painter.drawEllipse(QRectF(rectOf(box)).adjusted(inset, inset, -inset, -inset));
    painter.setRenderHint(QPainter::Antialiasing, false);
}

/// Opaque images are the faster ones to show.
QImage emptyImage(CSize size, qreal scale, QColor color) {
    QImage image(QSize(size.cx, size.cy) * scale,
                 color.alpha() == 255 ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(color);
    return image;
}

} // namespace

void RecordingPainter::paint(QPainter& painter, const Recording& drawn) {
    for (Image& image : images_)
        image.used = false;
    draw(painter, drawn);
    std::erase_if(images_, [](const Image& image) { return !image.used; });
}

void RecordingPainter::draw(QPainter& painter, const Recording& drawn) {
    for (const DrawCommand& command : drawn.commands())
        std::visit([&](const auto& one) { draw(painter, drawn, one); }, command);
}

void RecordingPainter::draw(QPainter& painter, const Recording&, const FillCommand& fill) {
    painter.fillRect(rectOf(fill.rect), colorOf(fill.color));
}

void RecordingPainter::draw(QPainter& painter, const Recording& drawn, const PolylineCommand& line) {
    const auto path = pixelPath(drawn.points(line));
    if (line.pen.width == 1)
        drawThinLine(painter, path, line.pen.color);
    else
        drawWideLine(painter, path, line.pen);
}

void RecordingPainter::draw(QPainter& painter, const Recording& drawn, const EllipsesCommand& round) {
    constexpr int kLargestStamp = 64;
    QImage stamp; // dots of one size are smoothed once
    CSize stampSize;
    for (const CRect& box : drawn.boxes(round)) {
        const CPoint corner = box.TopLeft();
        if (withinReach(corner) != corner) continue;
        if (std::max(box.Width(), box.Height()) > kLargestStamp) {
            drawEllipse(painter, box, round);
            continue;
        }
        if (box.Size() != stampSize) {
            stampSize = box.Size();
            stamp = emptyImage(stampSize, painter.device()->devicePixelRatioF(), Qt::transparent);
            QPainter inside(&stamp);
            drawEllipse(inside, CRect(CPoint(), stampSize), round);
        }
        painter.drawImage(QPoint(corner.x, corner.y), stamp);
    }
}

void RecordingPainter::draw(QPainter& painter, const Recording& drawn, const TextCommand& command) {
    const DrawnText& text = drawn.text(command);
    painter.save();
    painter.setFont(fontOf(text.font));
    const QFontMetrics metrics = painter.fontMetrics();
    const QString words = qText(text.text);
    const int width = metrics.horizontalAdvance(words);
    const unsigned across = text.align & TA_CENTER, down = text.align & TA_BASELINE;
    const int left = across == TA_CENTER ? -width / 2 : across == TA_RIGHT ? -width : 0;
    const int base = down == TA_BASELINE ? 0 : down == TA_BOTTOM ? -metrics.descent() : metrics.ascent();
    painter.translate(text.at.x, text.at.y);
    painter.rotate(-text.font.lfEscapement / 10.0);
    if (text.opaque)
        painter.fillRect(left, base - metrics.ascent(), width, metrics.height(), colorOf(text.background));
    painter.setPen(colorOf(text.color));
    painter.drawText(left, base, words);
    painter.restore();
}

void RecordingPainter::draw(QPainter& painter, const Recording&, const TransferCommand& moved) {
    const CRect part(moved.source, moved.target.Size());
    if (inImage_) { // becomes part of that image
        painter.save();
        painter.setClipRect(rectOf(moved.target), Qt::IntersectClip);
        painter.translate(moved.target.left - part.left, moved.target.top - part.top);
        draw(painter, *moved.content);
        painter.restore();
        return;
    }
    const qreal scale = painter.device()->devicePixelRatioF();
    auto image = std::ranges::find_if(images_, [&](const Image& known) {
        return known.shown == moved.content && known.part == part && known.scale == scale;
    });
    if (image == images_.end()) {
        QImage pixels = emptyImage(part.Size(), scale, Qt::black);
        QPainter inside(&pixels);
        inside.translate(-part.left, -part.top);
        inImage_ = true;
        draw(inside, *moved.content);
        inImage_ = false;
        ++painted_;
        image = images_.insert(images_.end(), {moved.content, part, scale, std::move(pixels), true});
    }
    image->used = true;
    painter.drawImage(QPoint(moved.target.left, moved.target.top), image->pixels);
}

} // namespace workbench::desktop
