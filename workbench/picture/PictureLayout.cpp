#include "workbench/picture/PictureLayout.h"

#include "workbench/picture/CoverageGrid.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace workbench {
namespace {

constexpr Rgb kBlack{0, 0, 0};
constexpr Rgb kWhite{255, 255, 255};
constexpr Rgb kTextGrey{70, 70, 70};

PixelBox moved(const PixelBox& box, double dx, double dy) {
    return {box.left + dx, box.bottom + dy, box.right + dx, box.top + dy};
}

PixelBox grown(const PixelBox& box, double by) {
    return {box.left - by, box.bottom - by, box.right + by, box.top + by};
}

bool contains(const PixelBox& outer, const PixelBox& inner) {
    return inner.left >= outer.left && inner.right <= outer.right && inner.bottom >= outer.bottom &&
           inner.top <= outer.top;
}

Pixel nearestPoint(const PixelBox& box, const Pixel& to) {
    return {std::clamp(to[0], box.left, box.right), std::clamp(to[1], box.bottom, box.top)};
}

/// Texts that are nearer to each other than `distance` move away along the line between them.
void pushApart(std::vector<OverlayText>& texts, double distance) {
    for (std::size_t i = 0; i < texts.size(); ++i)
        for (std::size_t j = i + 1; j < texts.size(); ++j) {
            Pixel& a = texts[i].at;
            Pixel& b = texts[j].at;
            const double dx = b[0] - a[0], dy = b[1] - a[1], length = std::hypot(dx, dy);
            if (length >= distance || length == 0.0) continue;
            const double push = 0.5 * (distance - length) / length;
            a = {a[0] - push * dx, a[1] - push * dy};
            b = {b[0] + push * dx, b[1] + push * dy};
        }
}

CoverageGrid coverageOf(const ContourPicture& picture, const ViewCamera& camera,
                        const ContourSurface& surface, double cellSize) {
    CoverageGrid grid(picture.width, picture.height, cellSize);
    const auto at = [&](std::uint32_t vertex) {
        const auto& p = surface.positions[vertex];
        return camera.project({p[0], p[1], p[2]});
    };
    for (const auto* triangles : {&surface.triangles, &surface.greyTriangles})
        for (const auto& t : *triangles)
            grid.takeTriangle({at(t[0]), at(t[1]), at(t[2])});
    for (const auto* segments : {&surface.segments, &surface.greySegments})
        for (const auto& s : *segments)
            grid.takeTriangle({at(s[0]), at(s[1]), at(s[1])});
    return grid;
}

/// The place of a label around `node`: inside `area`, covering least, near.
PixelBox placeLabel(const Pixel& node, double width, double height, double unit, const PixelBox& area,
                    const CoverageGrid& grid) {
    constexpr int kDirections = 16;
    const PixelBox centered{node[0] - width / 2, node[1] - height / 2, node[0] + width / 2,
                            node[1] + height / 2};
    PixelBox best =
        moved(centered, std::clamp(node[0], area.left + width / 2, area.right - width / 2) - node[0],
              std::clamp(node[1], area.bottom + height / 2, area.top - height / 2) - node[1]);
    double bestCost = 1e300;
    for (const double distance : {2.0, 4.0, 7.0, 11.0})
        for (int d = 0; d < kDirections; ++d) {
            // Up and to the right first: between equal places the earlier one stays.
            const double angle = std::numbers::pi * (0.25 + 2.0 * d / kDirections);
            const double dx = std::cos(angle) * (distance * unit + width / 2);
            const double dy = std::sin(angle) * (distance * unit + height / 2);
            const PixelBox box = moved(centered, dx, dy);
            if (!contains(area, box)) continue;
            const double cost = 6.0 * static_cast<double>(grid.takenIn(box)) + distance;
            if (cost < bestCost) {
                best = box;
                bestCost = cost;
            }
        }
    return best;
}

} // namespace

PictureLayout::PictureLayout(const ContourPicture& picture, const ScaleLevels& levels,
                             const ColorScale& colors, const TextWidth& measure)
    : picture_(picture)
    , levels_(levels)
    , colors_(colors)
    , measure_(measure)
    , font_(std::max(10.0, 0.021 * std::min<double>(picture.height, 0.8 * picture.width)))
    , margin_(1.2 * font_)
    , lineHeight_(1.4 * font_)
    , barLabels_(levels.labels()) {}

void PictureLayout::addFrame(const ValueExtent& extent, bool someWithoutValue) {
    const double titleBottom = addTitles();
    double labelWidth = 0.0;
    for (const std::string& label : barLabels_)
        labelWidth = std::max(labelWidth, measure_(label, font_, false));
    const double barWidth = 1.6 * font_;
    const double width = std::max({barWidth + font_ + labelWidth, 0.16 * picture_.width, 9.0 * font_});
    column_ = {picture_.width - margin_ - width, margin_, picture_.width - margin_, titleBottom};
    const double axesHeight = 5.5 * font_;
    axesBox_ = {column_.left, column_.bottom, column_.right, column_.bottom + axesHeight};
    const double extremesHeight = lineHeight_ * (someWithoutValue ? 3 : 2) + 0.6 * font_;
    const double barTop = addValueTitle(titleBottom) - 0.8 * font_;
    const double barBottom = axesBox_.top + extremesHeight + 1.2 * font_;
    addBar({column_.left, barBottom, column_.left + barWidth, barTop});
    addExtremes(extent, someWithoutValue, barBottom - 1.2 * font_);
    modelBox_ = grown({margin_, margin_, column_.left - margin_, titleBottom}, -0.8 * font_);
}

/// Returns the height at which the titles end.
double PictureLayout::addTitles() {
    constexpr std::size_t kMostLines = 5;
    double top = picture_.height - margin_;
    for (std::size_t i = 0; i < std::min(picture_.titleLines.size(), kMostLines); ++i) {
        const bool first = i == 0;
        const double size = first ? 1.25 * font_ : font_;
        const double height = first ? 1.25 * lineHeight_ : lineHeight_;
        const std::string text = fittingText(cleanText(picture_.titleLines[i]), picture_.width - 2 * margin_,
                                             size, first, measure_);
        overlay_.texts.push_back({text, {margin_, top - height / 2}, size, first, TextAlign::Left});
        top -= height;
    }
    return top - 0.4 * font_;
}

double PictureLayout::addValueTitle(double top) {
    constexpr std::size_t kMostLines = 3;
    for (const std::string& line :
         wrappedText(cleanText(picture_.valueTitle), column_.width(), font_, true, kMostLines, measure_)) {
        overlay_.texts.push_back({line, {column_.left, top - lineHeight_ / 2}, font_, true, TextAlign::Left});
        top -= lineHeight_;
    }
    return top;
}

void PictureLayout::addBar(const PixelBox& bar) {
    const auto heightOf = [&](double value) {
        return bar.bottom + std::clamp(levels_.positionOf(value), 0.0, 1.0) * bar.height();
    };
    const std::size_t pieces = picture_.bands ? levels_.bandCount() : 256;
    for (std::size_t i = 0; i < pieces; ++i) {
        PixelBox piece = bar;
        const auto count = static_cast<double>(pieces);
        const auto from = static_cast<double>(i);
        piece.bottom =
            picture_.bands ? heightOf(levels_.values()[i]) : bar.bottom + bar.height() * from / count;
        piece.top = picture_.bands ? heightOf(levels_.values()[i + 1])
                                   : bar.bottom + bar.height() * (from + 1.0) / count;
        const double last = std::max(count - 1.0, 1.0);
        overlay_.addBox(piece, colors_.at(from / last));
    }
    const double thin = std::max(1.0, font_ / 16);
    overlay_.addFrame(bar, thin, kBlack);
    double freeFrom = -1e300;
    const std::vector<double>& values = levels_.values();
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double y = heightOf(values[i]);
        overlay_.addLine({bar.right, y}, {bar.right + 0.35 * font_, y}, thin, kBlack);
        // A label that would touch the one below gives way, but for the one at the high end.
        const bool last = i + 1 == values.size();
        if (!last && (y < freeFrom || (i > 0 && y + 1.15 * font_ > bar.top))) continue;
        freeFrom = y + 1.15 * font_;
        overlay_.texts.push_back(
            {barLabels_[i], {bar.right + 0.65 * font_, y}, font_, false, TextAlign::Left});
    }
}

void PictureLayout::addExtremes(const ValueExtent& extent, bool someWithoutValue, double top) {
    const auto addLine = [&](const std::string& text, double indent) {
        const std::string fitting =
            fittingText(cleanText(text), column_.width() - indent, font_, false, measure_);
        overlay_.texts.push_back(
            {fitting, {column_.left + indent, top - lineHeight_ / 2}, font_, false, TextAlign::Left});
        top -= lineHeight_;
    };
    addLine(picture_.words.maximum + " " + shortNumber(extent.high), 0.0);
    addLine(picture_.words.minimum + " " + shortNumber(extent.low), 0.0);
    if (!someWithoutValue) return;
    const double side = 0.8 * font_;
    const double middle = top - lineHeight_ / 2;
    overlay_.addBox({column_.left, middle - side / 2, column_.left + side, middle + side / 2}, kNoValueColor);
    addLine(picture_.words.noValue, 1.4 * font_);
}

void PictureLayout::addAxes(const ViewCamera& camera) {
    const double length = 1.7 * font_;
    const double head = 0.45 * font_;
    const Pixel origin{axesBox_.left + 2.6 * font_, axesBox_.bottom + 2.6 * font_};
    std::vector<OverlayText> names;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double x = camera.right[axis], y = camera.up[axis];
        const double seen = std::hypot(x, y);
        if (seen < 0.05) continue; // points at the viewer or away
        const Pixel tip{origin[0] + length * x, origin[1] + length * y};
        overlay_.addLine(origin, tip, font_ / 10, kTextGrey);
        const Pixel along{x / seen * head, y / seen * head};
        overlay_.polygons.push_back({{{tip[0] + along[0], tip[1] + along[1]},
                                      {tip[0] - along[1] / 2.5, tip[1] + along[0] / 2.5},
                                      {tip[0] + along[1] / 2.5, tip[1] - along[0] / 2.5}},
                                     kTextGrey,
                                     1.0});
        const std::string name(1, "XYZ"[axis]);
        names.push_back({name,
                         {tip[0] + 2.0 * along[0], tip[1] + 2.0 * along[1]},
                         0.85 * font_,
                         false,
                         TextAlign::Center});
    }
    pushApart(names, 0.9 * font_);
    overlay_.texts.insert(overlay_.texts.end(), names.begin(), names.end());
}

void PictureLayout::addMarks(const ViewCamera& camera, const ContourSurface& surface) {
    if (picture_.marks.empty()) return;
    CoverageGrid grid = coverageOf(picture_, camera, surface, 0.5 * font_);
    const double thin = std::max(1.0, font_ / 14);
    const double ring = 0.42 * font_;
    const PixelBox area{margin_, margin_, column_.left - margin_, column_.top};
    for (const NodeMark& mark : picture_.marks) {
        const Vector3 position = surface.toSurface(picture_.mesh.nodePositions[mark.node]);
        const Pixel at = camera.project(position);
        const bool hidden = isHidden(camera, surface, position);
        overlay_.addDisc(at, ring + 1.5 * thin, kWhite);
        overlay_.addDisc(at, ring, kBlack);
        overlay_.addDisc(at, ring - 1.3 * thin, kWhite);
        if (!hidden) overlay_.addDisc(at, 0.4 * ring, kBlack);
        grid.takeBox(grown({at[0], at[1], at[0], at[1]}, ring));
        if (mark.label.empty()) continue;

        const std::string whole = mark.label + (hidden ? " (" + picture_.words.hidden + ")" : "");
        const std::string text =
            fittingText(cleanText(whole), area.width() - 2 * font_, font_, false, measure_);
        const double width = measure_(text, font_, false) + 0.8 * font_;
        const double height = 1.5 * font_;
        const PixelBox box = placeLabel(at, width, height, 0.9 * font_, area, grid);
        const Pixel end = nearestPoint(box, at);
        const double dx = end[0] - at[0], dy = end[1] - at[1], length = std::hypot(dx, dy);
        if (length > ring)
            overlay_.addLine({at[0] + dx / length * ring, at[1] + dy / length * ring}, end, thin, kBlack);
        overlay_.addBox(box, kWhite, 0.85);
        overlay_.addFrame(box, thin, kBlack);
        overlay_.texts.push_back({text,
                                  {(box.left + box.right) / 2, (box.bottom + box.top) / 2},
                                  font_,
                                  false,
                                  TextAlign::Center});
        grid.takeBox(box);
    }
}

} // namespace workbench
