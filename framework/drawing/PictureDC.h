#pragma once

#include "framework/drawing/DC.h"
#include "framework/drawing/Surface.h"

namespace framework {

/// A context that draws a picture of its own, of so many pixels, for a file or a printer.
class PictureDC : public CDC {
  public:
    explicit PictureDC(CSize size) { DrawOn(std::make_shared<Surface>(size)); }
    CSize size() const { return Target()->size(); }
    const Recording& drawn() const { return Target()->drawn(); }
};

} // namespace framework
