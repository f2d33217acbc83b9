#pragma once

#include "framework/Export.h"
#include "framework/drawing/Color.h"
#include "framework/drawing/Geometry.h"
#include "framework/drawing/LogFont.h"

#include <memory>

class CDC;
namespace framework {
struct GdiRecord;
}

/// A handle of a drawing object: opaque, null for none.
struct HGDIOBJ__;
using HGDIOBJ = HGDIOBJ__*;

inline constexpr int PS_SOLID = 0;
inline constexpr int PS_NULL = 5;

/// A pen, brush, font or bitmap that a device context can select. The object deletes what it made with
/// itself; what is selected somewhere stays there until something else is.
class VEXA_API CGdiObject {
  public:
    CGdiObject();
    virtual ~CGdiObject();
    CGdiObject(const CGdiObject&) = delete;
    CGdiObject& operator=(const CGdiObject&) = delete;

    HGDIOBJ GetSafeHandle() const { return reinterpret_cast<HGDIOBJ>(m_record); }
    /// Zero when there is none, or a device context lent this object, whose it stays.
    int DeleteObject();

  protected:
    /// Non-zero; zero, and nothing changed, when this object has made one already.
    int Make(std::shared_ptr<framework::GdiRecord> record);
    framework::GdiRecord* Made() const { return m_record; }

  private:
    friend class CDC;
    friend struct framework::GdiRecord;
    framework::GdiRecord* m_record = nullptr;
    std::shared_ptr<framework::GdiRecord> m_owned; ///< empty in an object that a device context lent
};

class VEXA_API CPen : public CGdiObject {
  public:
    CPen() = default;
    CPen(int style, int width, COLORREF color) { CreatePen(style, width, color); }
    /// PS_SOLID or PS_NULL; any other style is drawn solid. A width below 1 is 1.
    int CreatePen(int style, int width, COLORREF color);
};

class VEXA_API CBrush : public CGdiObject {
  public:
    CBrush() = default;
    explicit CBrush(COLORREF color) { CreateSolidBrush(color); }
    int CreateSolidBrush(COLORREF color);
};

class VEXA_API CFont : public CGdiObject {
  public:
    int CreateFontIndirect(const LOGFONT* font);
    /// The height of `font` is in tenths of a point, whatever its sign.
    int CreatePointFontIndirect(const LOGFONT* font, CDC* dc = nullptr);
    int GetLogFont(LOGFONT* font) const; ///< as made, the height in pixels; zero when there is none
};

/// An image in memory, black at first. It holds the commands that were drawn into it.
class VEXA_API CBitmap : public CGdiObject {
  public:
    /// Pixels. Without width or height it is of one pixel; zero for a negative size or a context that is not
    /// there.
    int CreateCompatibleBitmap(CDC* dc, int width, int height);
    CSize GetSize() const; ///< in pixels
    /// A size that is only kept for the owner; answers the one before.
    CSize SetBitmapDimension(int width, int height);
    int SetBitmapDimensionEx(int width, int height) { return SetBitmapDimension(width, height), 1; }
    CSize GetBitmapDimension() const;
};
