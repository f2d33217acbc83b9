#include "framework/drawing/Recording.h"

#include <algorithm>
#include <utility>

namespace framework {

void Recording::clear() {
    commands_.clear();
    points_.clear();
    boxes_.clear();
    texts_.clear();
    depth_ = 0;
    shownInside_ = 0;
}

void Recording::fill(const CRect& rect, COLORREF color) {
    if (!rect.IsRectEmpty()) commands_.emplace_back(FillCommand{rect, color});
}

void Recording::lines(const PenLook& pen, CPoint from, std::span<const CPoint> to) {
    if (to.empty() || pen.none) return;
    auto* last = commands_.empty() ? nullptr : std::get_if<PolylineCommand>(&commands_.back());
    if (!last || last->pen != pen || points_.back() != from) {
        last = &std::get<PolylineCommand>(commands_.emplace_back(PolylineCommand{pen, points_.size(), 1}));
        points_.push_back(from);
    }
    points_.insert(points_.end(), to.begin(), to.end());
    last->count += to.size();
}

void Recording::ellipse(const PenLook& pen, const BrushLook& brush, const CRect& box) {
    if (box.IsRectEmpty() || (pen.none && brush.none)) return;
    auto* last = commands_.empty() ? nullptr : std::get_if<EllipsesCommand>(&commands_.back());
    if (!last || last->pen != pen || last->brush != brush)
        last =
            &std::get<EllipsesCommand>(commands_.emplace_back(EllipsesCommand{pen, brush, boxes_.size(), 0}));
    boxes_.push_back(box);
    ++last->count;
}

void Recording::write(DrawnText text) {
    if (text.text.empty()) return;
    commands_.emplace_back(TextCommand{texts_.size()});
    texts_.push_back(std::move(text));
}

bool Recording::transfer(const CRect& target, CPoint source, std::shared_ptr<const Recording> content) {
    if (target.IsRectEmpty() || !content) return true;
    TransferCommand made{target, source, std::move(content)};
    while (made.content->commands_.size() == 1) {
        const auto* inner = std::get_if<TransferCommand>(&made.content->commands_.front());
        if (!inner) break;
        // In the coordinates of what the inner transfer shows.
        const CPoint shift = made.target.TopLeft() - made.source;
        CRect shown = inner->target;
        shown.OffsetRect(shift);
        const CPoint origin = inner->source - shown.TopLeft();
        if (!shown.IntersectRect(CRect(shown), made.target)) return true;
        made = TransferCommand{shown, origin + shown.TopLeft(),
                               std::shared_ptr<const Recording>(inner->content)};
    }
    if (!made.content->canBeShown() || shown() + made.content->shown() > kMostShown) return false;
    shownInside_ += made.content->shown();
    depth_ = std::max(depth_, made.content->depth_ + 1);
    commands_.emplace_back(std::move(made));
    return true;
}

void Recording::expectPoints(std::size_t count) {
    const std::size_t wanted = points_.size() + count;
    if (wanted > points_.capacity()) points_.reserve(std::max(wanted, 2 * points_.capacity()));
}

void Recording::foldReplay() {
    if (commands_.size() < 2) return;
    auto* last = std::get_if<PolylineCommand>(&commands_.back());
    const auto* former = std::get_if<PolylineCommand>(&commands_[commands_.size() - 2]);
    if (!last || !former || last->pen != former->pen) return;
    const auto before = points(*former), now = points(*last);
    const std::size_t common = std::min(before.size(), now.size());
    if (!std::equal(before.begin(), before.begin() + static_cast<std::ptrdiff_t>(common), now.begin()))
        return;
    // Points of lines lie in the order of their commands, so both are at the end.
    if (now.size() > before.size()) {
        const auto first = points_.begin() + static_cast<std::ptrdiff_t>(former->first);
        points_.erase(first, first + static_cast<std::ptrdiff_t>(former->count));
        last->first = former->first;
        commands_.erase(commands_.end() - 2);
    } else {
        points_.resize(last->first);
        commands_.pop_back();
    }
}

} // namespace framework
