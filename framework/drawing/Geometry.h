#pragma once

/// Points, sizes and rectangles in pixels; x to the right, y down. A rectangle holds its left and top edge
/// and not its right and bottom one.
class CSize {
  public:
    int cx = 0;
    int cy = 0;

    constexpr CSize() = default;
    constexpr CSize(int width, int height)
        : cx(width)
        , cy(height) {}
    friend constexpr bool operator==(const CSize&, const CSize&) = default;
};

class CPoint {
  public:
    int x = 0;
    int y = 0;

    constexpr CPoint() = default;
    constexpr CPoint(int initX, int initY)
        : x(initX)
        , y(initY) {}
    constexpr void Offset(int dx, int dy) {
        x += dx;
        y += dy;
    }
    friend constexpr CPoint operator+(CPoint a, CPoint b) { return {a.x + b.x, a.y + b.y}; }
    friend constexpr CPoint operator-(CPoint a, CPoint b) { return {a.x - b.x, a.y - b.y}; }
    friend constexpr bool operator==(const CPoint&, const CPoint&) = default;
};

class CRect {
  public:
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    constexpr CRect() = default;
    constexpr CRect(int l, int t, int r, int b)
        : left(l)
        , top(t)
        , right(r)
        , bottom(b) {}
    constexpr CRect(CPoint corner, CSize size)
        : left(corner.x)
        , top(corner.y)
        , right(corner.x + size.cx)
        , bottom(corner.y + size.cy) {}

    constexpr int Width() const { return right - left; }
    constexpr int Height() const { return bottom - top; }
    constexpr CSize Size() const { return {Width(), Height()}; }
    constexpr CPoint TopLeft() const { return {left, top}; }
    constexpr CPoint BottomRight() const { return {right, bottom}; }
    constexpr CPoint CenterPoint() const { return {(left + right) / 2, (top + bottom) / 2}; }
    constexpr bool IsRectEmpty() const { return left >= right || top >= bottom; }
    constexpr bool PtInRect(CPoint p) const {
        return p.x >= left && p.x < right && p.y >= top && p.y < bottom;
    }
    constexpr void SetRect(int l, int t, int r, int b) { *this = CRect(l, t, r, b); }
    constexpr void SetRectEmpty() { *this = CRect(); }
    constexpr void OffsetRect(int dx, int dy) { *this = CRect(left + dx, top + dy, right + dx, bottom + dy); }
    constexpr void OffsetRect(CPoint d) { OffsetRect(d.x, d.y); }
    constexpr void InflateRect(int dx, int dy) {
        *this = CRect(left - dx, top - dy, right + dx, bottom + dy);
    }
    constexpr void DeflateRect(int dx, int dy) { InflateRect(-dx, -dy); }

    /// The common part; empty, and zero answered, when there is none.
    constexpr int IntersectRect(const CRect& a, const CRect& b) {
        *this = CRect(a.left > b.left ? a.left : b.left, a.top > b.top ? a.top : b.top,
                      a.right < b.right ? a.right : b.right, a.bottom < b.bottom ? a.bottom : b.bottom);
        if (!IsRectEmpty()) return 1;
        SetRectEmpty();
        return 0;
    }
    /// The smallest rectangle around both; an empty one does not count.
    constexpr int UnionRect(const CRect& a, const CRect& b) {
        if (a.IsRectEmpty()) {
            *this = b;
        } else if (b.IsRectEmpty()) {
            *this = a;
        } else {
            *this = CRect(a.left < b.left ? a.left : b.left, a.top < b.top ? a.top : b.top,
                          a.right > b.right ? a.right : b.right, a.bottom > b.bottom ? a.bottom : b.bottom);
        }
        return !IsRectEmpty();
    }
    friend constexpr bool operator==(const CRect&, const CRect&) = default;
};
