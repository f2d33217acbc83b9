#pragma once

#include "framework/drawing/DC.h"
#include "framework/drawing/Surface.h"

namespace framework {

/// A context that draws a picture of its own, of so many pixels, for a file or a printer.
class PictureDC : public CDC {
  public:
    explicit PictureDC(CSize size)
        : picture_(std::make_shared<Surface>(size)) {
        DrawOn(picture_);
    }
    CSize size() const { return picture_->size(); }
    const Recording& drawn() const { return picture_->drawn(); } ///< also after DeleteDC

  private:
    std::shared_ptr<Surface> picture_;
};

} // namespace framework
