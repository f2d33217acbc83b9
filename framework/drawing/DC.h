#pragma once

#include "framework/Export.h"
#include "framework/drawing/GdiObject.h"

#include <memory>
#include <span>
#include <string>

namespace framework {
class Recording;
class Surface;
struct DeviceContext;
} // namespace framework

/// A device context's handle: opaque, null for none.
struct HDC__;
using HDC = HDC__*;
using UINT = unsigned int;
using DWORD = std::uint32_t;

inline constexpr int WHITE_BRUSH = 0;
inline constexpr int BLACK_BRUSH = 4;
inline constexpr int NULL_BRUSH = 5;
inline constexpr int WHITE_PEN = 6;
inline constexpr int BLACK_PEN = 7;
inline constexpr int NULL_PEN = 8;
inline constexpr int SYSTEM_FONT = 13;

inline constexpr int TRANSPARENT = 1;
inline constexpr int OPAQUE = 2;

inline constexpr UINT TA_LEFT = 0;
inline constexpr UINT TA_RIGHT = 2;
inline constexpr UINT TA_CENTER = 6;
inline constexpr UINT TA_TOP = 0;
inline constexpr UINT TA_BOTTOM = 8;
inline constexpr UINT TA_BASELINE = 24;

inline constexpr int LOGPIXELSX = 88;
inline constexpr int LOGPIXELSY = 90;

inline constexpr DWORD SRCCOPY = 0x00CC0020;

/// Draws by recording commands on a bitmap, a window or a picture. Coordinates are pixels. Lines leave out
/// their last point, rectangles and ellipses their right and bottom edge. An object without a context draws
/// nothing and answers zero or null.
class VEXA_API CDC {
  public:
    CDC();
    virtual ~CDC();
    CDC(const CDC&) = delete;
    CDC& operator=(const CDC&) = delete;

    /// A context in memory; it draws on a bitmap of one pixel until another is selected. `like` is not looked
    /// at, and may be null. Zero when this object has a context already.
    int CreateCompatibleDC(CDC* like);
    int DeleteDC(); ///< zero when there is none
    HDC GetSafeHdc() const { return reinterpret_cast<HDC>(m_context.get()); }

    // Selecting answers what was selected before: null, and nothing changed, for an object that has made
    // nothing; for a bitmap also when this is no context in memory or it is selected in another one.
    CPen* SelectObject(CPen* pen);
    CBrush* SelectObject(CBrush* brush);
    CFont* SelectObject(CFont* font);
    CBitmap* SelectObject(CBitmap* bitmap);
    CGdiObject* SelectStockObject(int stock);

    CPoint GetCurrentPosition() const;
    CPoint MoveTo(int x, int y) { return MoveTo(CPoint(x, y)); } ///< where it was before
    CPoint MoveTo(CPoint point);
    int LineTo(int x, int y) { return LineTo(CPoint(x, y)); }
    int LineTo(CPoint point);
    int Polyline(const CPoint* points, int count);   ///< leaves the current position where it is
    int PolylineTo(const CPoint* points, int count); ///< from the current position, which moves to the last
    int Ellipse(int left, int top, int right, int bottom) { return Ellipse(CRect(left, top, right, bottom)); }
    int Ellipse(const CRect& box);
    int FillRect(const CRect* rect, CBrush* brush);
    /// Also makes it the background colour.
    void FillSolidRect(const CRect* rect, COLORREF color);
    void FillSolidRect(int x, int y, int width, int height, COLORREF color);
    int TextOut(int x, int y, const std::wstring& text);
    /// SRCCOPY, the only operation: shows a part of another context's bitmap. Its commands are handed over as
    /// they are now; zero when they come through more than 64 transfers or to more than four million, or
    /// `source` has no context.
    int BitBlt(int x, int y, int width, int height, CDC* source, int sourceX, int sourceY, DWORD operation);

    UINT SetTextAlign(UINT align); // these answer what was set before
    COLORREF SetTextColor(COLORREF color);
    COLORREF SetBkColor(COLORREF color);
    int SetBkMode(int mode);
    UINT GetTextAlign() const;
    COLORREF GetTextColor() const;
    COLORREF GetBkColor() const;
    int GetBkMode() const;
    /// LOGPIXELSX and LOGPIXELSY; zero for anything else.
    int GetDeviceCaps(int what) const;

    /// A line of so many points is about to come in pieces.
    void ExpectPoints(std::size_t count);

  protected:
    /// A context that draws on `surface`. Zero when this object has one already.
    int DrawOn(std::shared_ptr<framework::Surface> surface);
    framework::Surface* Target() const; ///< null without a context

  private:
    template <class Object>
    Object* SelectLook(Object* object, std::shared_ptr<framework::GdiRecord>& place);

    std::unique_ptr<framework::DeviceContext> m_context;
};
