#pragma once

#include "framework/containers/Array.h"
#include "framework/drawing/DC.h"
#include "module/graphs/GraphMapping.h"

namespace graphs {

/// A solid pen, selected for as long as the object lives.
class SelectedPen {
  public:
    SelectedPen(CDC& dc, int width, COLORREF color)
        : dc_(dc)
        , pen_(PS_SOLID, width, color)
        , before_(dc.SelectObject(&pen_)) {}
    ~SelectedPen() { dc_.SelectObject(before_); }
    SelectedPen(const SelectedPen&) = delete;
    SelectedPen& operator=(const SelectedPen&) = delete;

  private:
    CDC& dc_;
    CPen pen_;
    CPen* before_;
};

/// Draws the first `segments` segments between points with the current pen. Those that are there are drawn
/// when more are asked for; then CInvalidArgException is thrown.
void drawCurve(CDC& dc, const CArray<T_GRPH_D, T_GRPH_D&>& points, int segments, const PixelMapping& mapping);
/// A filled circle with the current pen at every point; none where the radius is 0.
void drawDots(CDC& dc, const CArray<T_GRPH_D, T_GRPH_D&>& points, int radius, COLORREF color,
              const PixelMapping& mapping);

} // namespace graphs
