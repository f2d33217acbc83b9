#pragma once

#include "host/records/ItrKey.h"

namespace workbench {

/// Gives out the keys of a document, ascending; one is never given out twice, whatever becomes of its record.
class KeySequence {
  public:
    /// Keys stay below this, so that they fit the signed 32-bit fields of older files.
    static constexpr ItrKey kEnd = ItrKey{1} << 31;

    /// The first of `count` keys in a row; 0, and nothing taken, when that many are not left.
    ItrKey take(ItrKey count = 1) {
        if (count > kEnd - next_) return 0;
        const ItrKey first = next_;
        next_ += count;
        return first;
    }

    ItrKey next() const { return next_; } ///< kEnd when none is left
    /// Goes on where a stored sequence stood; `next` in [1, kEnd].
    void resume(ItrKey next) { next_ = next; }

  private:
    ItrKey next_ = 1;
};

} // namespace workbench
