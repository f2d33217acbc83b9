#include "framework/drawing/Surface.h"

#include <utility>

namespace framework {

Recording& Surface::change() {
    if (recording_.use_count() > 1) recording_ = std::make_shared<Recording>(*recording_);
    return *recording_;
}

void Surface::clear() {
    if (recording_.use_count() > 1) {
        std::swap(recording_, former_);
        if (!recording_ || recording_.use_count() > 1) recording_ = std::make_shared<Recording>();
    }
    recording_->clear();
}

bool Surface::isCoveredBy(const CRect& rect) const {
    return rect.left <= 0 && rect.top <= 0 && rect.right >= size_.cx && rect.bottom >= size_.cy;
}

void Surface::fill(const CRect& rect, COLORREF color) {
    if (isCoveredBy(rect)) clear();
    change().fill(rect, color);
}

bool Surface::transfer(const CRect& target, CPoint source, std::shared_ptr<const Recording> content) {
    if (!content->canBeShown()) return false;
    if (isCoveredBy(target)) clear();
    return change().transfer(target, source, std::move(content));
}

} // namespace framework
