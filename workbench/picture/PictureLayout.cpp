#include "workbench/picture/PictureLayout.h"

#include "workbench/picture/CoverageGrid.h"
#include "workbench/picture/LabelPlacer.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace workbench {
namespace {

constexpr Rgb kBlack{0, 0, 0};
constexpr Rgb kWhite{255, 255, 255};
constexpr Rgb kTextGrey{70, 70, 70};
constexpr double kMarkRadius = 0.42; ///< in font sizes

PixelBox grown(const PixelBox& box, double by) {
    return {box.left - by, box.bottom - by, box.right + by, box.top + by};
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

/// Where a mark points: the node; or the visible part of the element that faces the viewer most, else its
/// middle.
Vector3 anchorOf(const PictureMark& mark, const T_QM_MESH_D& mesh, const ViewCamera& camera,
                 const ContourSurface& surface) {
    if (mark.kind == PictureMark::Kind::Node) return surface.toSurface(mesh.nodePositions[mark.index]);
    const MarkedPart* best = nullptr;
    double bestFacing = -2.0;
    for (const MarkedPart& part : surface.markedParts) {
        if (part.element != mark.index) continue;
        const double facing = camera.depth(part.outward);
        if (facing > bestFacing) best = &part;
        bestFacing = std::max(bestFacing, facing);
    }
    if (best) return best->middle;
    std::array<double, 3> sum{};
    const auto nodes = mesh.nodesOf(mark.index);
    for (const std::uint32_t node : nodes)
        for (std::size_t c = 0; c < 3; ++c)
            sum[c] += mesh.nodePositions[node][c] / static_cast<double>(nodes.size());
    return surface.toSurface(sum);
}

} // namespace

PictureLayout::PictureLayout(const ContourPicture& picture, const ScaleLevels& levels,
                             const PictureColors& colors, const TextWidth& measure)
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
    addBar(extent, {column_.left, barBottom, column_.left + barWidth, barTop});
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

/// A box off an end of the bar for the values beyond it.
void PictureLayout::addBeyond(const PixelBox& box, Rgb color, const std::string& label) {
    overlay_.addBox(box, color);
    overlay_.addFrame(box, std::max(1.0, font_ / 16), kBlack);
    overlay_.texts.push_back(
        {label, {box.right + 0.65 * font_, 0.5 * (box.bottom + box.top)}, font_, false, TextAlign::Left});
}

void PictureLayout::addBar(const ValueExtent& extent, PixelBox bar) {
    const double side = 0.9 * font_, gap = 0.7 * font_;
    if (levels_.isGiven() && extent.high > levels_.high()) {
        addBeyond({bar.left, bar.top - side, bar.right, bar.top}, colors_.above(), "> " + barLabels_.back());
        bar.top -= side + gap;
    }
    if (levels_.isGiven() && extent.low < levels_.low()) {
        addBeyond({bar.left, bar.bottom, bar.right, bar.bottom + side}, colors_.below(),
                  "< " + barLabels_.front());
        bar.bottom += side + gap;
    }
    const auto heightOf = [&](double value) {
        return bar.bottom + std::clamp(levels_.positionOf(value), 0.0, 1.0) * bar.height();
    };
    // Every piece reaches to the top, under the next one: no seam between them at any resolution.
    const std::size_t pieces = picture_.bands ? levels_.bandCount() : 256;
    for (std::size_t i = 0; i < pieces; ++i) {
        const double position = static_cast<double>(i) / static_cast<double>(pieces);
        PixelBox piece = bar;
        piece.bottom = picture_.bands ? heightOf(levels_.values()[i]) : bar.bottom + bar.height() * position;
        overlay_.addBox(piece, picture_.bands ? colors_.ofBand(i)
                                              : colors_.at(position + 0.5 / static_cast<double>(pieces)));
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
    overlay_.addBox({column_.left, middle - side / 2, column_.left + side, middle + side / 2},
                    colors_.noValue());
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

void PictureLayout::addSymbol(const PictureMark& mark, const Pixel& at, bool hidden) {
    const double thin = std::max(1.0, font_ / 14);
    const auto fill = [&](double radius, Rgb color) {
        if (mark.kind == PictureMark::Kind::Node)
            overlay_.addDisc(at, radius, color);
        else
            overlay_.addBox(grown({at[0], at[1], at[0], at[1]}, 0.9 * radius), color);
    };
    const double ring = kMarkRadius * font_;
    fill(ring + 1.5 * thin, kWhite);
    fill(ring, kBlack);
    fill(ring - 1.3 * thin, kWhite);
    if (!hidden) fill(0.4 * ring, kBlack);
}

void PictureLayout::addMarks(const ViewCamera& camera, const ContourSurface& surface) {
    if (picture_.marks.empty()) return;
    const CoverageGrid grid = coverageOf(picture_, camera, surface, 0.5 * font_);
    const double thin = std::max(1.0, font_ / 14);
    const double ring = kMarkRadius * font_;
    const PixelBox area{margin_, margin_, column_.left - margin_, column_.top};
    std::vector<Pixel> places;
    std::vector<bool> hidden;
    for (const PictureMark& mark : picture_.marks) {
        const Vector3 anchor = anchorOf(mark, picture_.mesh, camera, surface);
        places.push_back(camera.project(anchor));
        hidden.push_back(isHidden(camera, surface, anchor));
    }
    LabelPlacer placer(area, grid, places, ring, 0.9 * font_);
    std::vector<PixelBox> boxes(places.size());
    std::vector<std::string> texts(places.size());
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (picture_.marks[i].label.empty()) continue;
        const std::string whole = cleanText(picture_.marks[i].label) +
                                  (hidden[i] ? " (" + cleanText(picture_.words.hidden) + ")" : "");
        texts[i] = fittingText(whole, area.width() - 2 * font_, font_, false, measure_);
        boxes[i] = placer.place(i, measure_(texts[i], font_, false) + 0.8 * font_, 1.5 * font_);
        const Pixel& at = places[i];
        const Pixel end = nearestPoint(boxes[i], at);
        overlay_.addLine(at, end, 3.0 * thin, kWhite, 0.6);
        overlay_.addLine(at, end, thin, kBlack);
    }
    // The worst one last, over the others.
    for (std::size_t i = places.size(); i-- > 0;)
        addSymbol(picture_.marks[i], places[i], hidden[i]);
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (texts[i].empty()) continue;
        const PixelBox& box = boxes[i];
        overlay_.addBox(box, kWhite, 0.85);
        overlay_.addFrame(box, thin, kBlack);
        overlay_.texts.push_back({texts[i],
                                  {(box.left + box.right) / 2, (box.bottom + box.top) / 2},
                                  font_,
                                  false,
                                  TextAlign::Center});
    }
}

} // namespace workbench
