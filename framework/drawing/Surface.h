#pragma once

#include "framework/drawing/Recording.h"

#include <memory>

namespace framework {

/// What a device context draws on: a bitmap, a window or a picture. Its recording is shared with whoever it
/// is handed to, and copied before the next change while it is.
class VEXA_API Surface {
  public:
    explicit Surface(CSize size)
        : size_(size) {}

    CSize size() const { return size_; }
    CRect area() const { return {CPoint(), size_}; }
    const Recording& drawn() const { return *recording_; }
    std::shared_ptr<const Recording> share() const { return recording_; }

    /// The recording to add to.
    Recording& change();
    void clear();
    void resize(CSize size) { size_ = size; }
    /// A fill over all of it forgets what lies under it.
    void fill(const CRect& rect, COLORREF color);
    /// The same for a transfer, which is opaque. False when it is too deep, or too much.
    bool transfer(const CRect& target, CPoint source, std::shared_ptr<const Recording> content);

  private:
    bool isCoveredBy(const CRect& rect) const;

    CSize size_;
    std::shared_ptr<Recording> recording_ = std::make_shared<Recording>();
    std::shared_ptr<Recording> former_; ///< whose memory serves again when nobody holds it any more
};

} // namespace framework
