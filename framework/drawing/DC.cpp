#include "framework/drawing/DC.h"

#include "framework/drawing/GdiRecord.h"

#include <algorithm>
#include <utility>
#include <vector>

using framework::BitmapRecord;
using framework::BrushLook;
using framework::GdiRecord;
using framework::PenLook;

namespace {

/// The stock objects live as long as the process.
const std::shared_ptr<GdiRecord>& stockObject(int stock) {
    const auto keep = [](auto look) -> const std::shared_ptr<GdiRecord>& {
        return *new std::shared_ptr<GdiRecord>(std::make_shared<GdiRecord>(std::move(look)));
    };
    static const auto& blackPen = keep(PenLook{RGB(0, 0, 0), 1, false});
    static const auto& whitePen = keep(PenLook{RGB(255, 255, 255), 1, false});
    static const auto& noPen = keep(PenLook{0, 1, true});
    static const auto& whiteBrush = keep(BrushLook{RGB(255, 255, 255), false});
    static const auto& blackBrush = keep(BrushLook{RGB(0, 0, 0), false});
    static const auto& noBrush = keep(BrushLook{0, true});
    static const auto& systemFont = keep(LOGFONT{});
    static const std::shared_ptr<GdiRecord> none;
    switch (stock) {
    case BLACK_PEN:
        return blackPen;
    case WHITE_PEN:
        return whitePen;
    case NULL_PEN:
        return noPen;
    case WHITE_BRUSH:
        return whiteBrush;
    case BLACK_BRUSH:
        return blackBrush;
    case NULL_BRUSH:
        return noBrush;
    case SYSTEM_FONT:
        return systemFont;
    default:
        return none;
    }
}

} // namespace

struct framework::DeviceContext {
    std::shared_ptr<Surface> surface;
    std::shared_ptr<GdiRecord> pen = stockObject(BLACK_PEN);
    std::shared_ptr<GdiRecord> brush = stockObject(WHITE_BRUSH);
    std::shared_ptr<GdiRecord> font = stockObject(SYSTEM_FONT);
    std::shared_ptr<GdiRecord> bitmap; ///< in memory only
    /// Whose objects are gone: what was lent for them may still be selected again.
    std::vector<std::shared_ptr<GdiRecord>> lent;

    CPoint position;
    UINT textAlign = TA_LEFT | TA_TOP;
    COLORREF textColor = RGB(0, 0, 0);
    COLORREF backColor = RGB(255, 255, 255);
    int backMode = OPAQUE;

    const PenLook& penLook() const { return std::get<PenLook>(pen->made); }
    const BrushLook& brushLook() const { return std::get<BrushLook>(brush->made); }

    /// The object of what was just replaced.
    template <class Object>
    Object* former(std::shared_ptr<GdiRecord> record) {
        auto* object = record->asObject<Object>();
        if (!record->object && std::ranges::find(lent, record) == lent.end())
            lent.push_back(std::move(record));
        return object;
    }
};

CDC::CDC() = default;

CDC::~CDC() {
    DeleteDC();
}

int CDC::CreateCompatibleDC(CDC*) {
    auto surface = std::make_shared<framework::Surface>(CSize(1, 1));
    surface->fill(surface->area(), RGB(0, 0, 0));
    if (!DrawOn(surface)) return 0;
    m_context->bitmap = std::make_shared<GdiRecord>(BitmapRecord{surface, {}, m_context.get()});
    return 1;
}

int CDC::DrawOn(std::shared_ptr<framework::Surface> surface) {
    if (m_context) return 0;
    m_context = std::make_unique<framework::DeviceContext>();
    m_context->surface = std::move(surface);
    return 1;
}

framework::Surface* CDC::Target() const {
    return m_context ? m_context->surface.get() : nullptr;
}

int CDC::DeleteDC() {
    if (!m_context) return 0;
    if (m_context->bitmap) std::get<BitmapRecord>(m_context->bitmap->made).holder = nullptr;
    m_context.reset();
    return 1;
}

template <class Object>
Object* CDC::SelectLook(Object* object, std::shared_ptr<GdiRecord>& place) {
    if (!object || !object->m_record) return nullptr;
    return m_context->former<Object>(std::exchange(place, object->m_record->shared_from_this()));
}

CPen* CDC::SelectObject(CPen* pen) {
    return m_context ? SelectLook(pen, m_context->pen) : nullptr;
}

CBrush* CDC::SelectObject(CBrush* brush) {
    return m_context ? SelectLook(brush, m_context->brush) : nullptr;
}

CFont* CDC::SelectObject(CFont* font) {
    return m_context ? SelectLook(font, m_context->font) : nullptr;
}

CBitmap* CDC::SelectObject(CBitmap* bitmap) {
    if (!m_context || !m_context->bitmap || !bitmap || !bitmap->m_record) return nullptr;
    auto& chosen = std::get<BitmapRecord>(bitmap->m_record->made);
    if (chosen.holder && chosen.holder != m_context.get()) return nullptr;
    std::get<BitmapRecord>(m_context->bitmap->made).holder = nullptr;
    chosen.holder = m_context.get();
    m_context->surface = chosen.surface;
    return SelectLook(bitmap, m_context->bitmap);
}

CGdiObject* CDC::SelectStockObject(int stock) {
    const auto& record = stockObject(stock);
    if (!m_context || !record) return nullptr;
    if (std::holds_alternative<PenLook>(record->made))
        return m_context->former<CPen>(std::exchange(m_context->pen, record));
    if (std::holds_alternative<BrushLook>(record->made))
        return m_context->former<CBrush>(std::exchange(m_context->brush, record));
    return m_context->former<CFont>(std::exchange(m_context->font, record));
}

CPoint CDC::GetCurrentPosition() const {
    return m_context ? m_context->position : CPoint();
}

CPoint CDC::MoveTo(CPoint point) {
    return m_context ? std::exchange(m_context->position, point) : CPoint();
}

int CDC::LineTo(CPoint point) {
    return PolylineTo(&point, 1);
}

int CDC::Polyline(const CPoint* points, int count) {
    if (!m_context || !points || count < 2) return 0;
    m_context->surface->change().lines(m_context->penLook(), points[0],
                                       {points + 1, static_cast<std::size_t>(count) - 1});
    return 1;
}

int CDC::PolylineTo(const CPoint* points, int count) {
    if (!m_context || !points || count < 1) return 0;
    const auto size = static_cast<std::size_t>(count);
    m_context->surface->change().lines(m_context->penLook(), m_context->position, {points, size});
    m_context->position = points[size - 1];
    return 1;
}

int CDC::Ellipse(const CRect& box) {
    if (!m_context) return 0;
    m_context->surface->change().ellipse(m_context->penLook(), m_context->brushLook(), box);
    return 1;
}

int CDC::FillRect(const CRect* rect, CBrush* brush) {
    if (!m_context || !rect || !brush || !brush->m_record) return 0;
    const auto& look = std::get<BrushLook>(brush->m_record->made);
    if (!look.none) m_context->surface->fill(*rect, look.color);
    return 1;
}

void CDC::FillSolidRect(const CRect* rect, COLORREF color) {
    if (!m_context || !rect) return;
    m_context->backColor = color;
    m_context->surface->fill(*rect, color);
}

void CDC::FillSolidRect(int x, int y, int width, int height, COLORREF color) {
    const CRect rect(CPoint(x, y), CSize(width, height));
    FillSolidRect(&rect, color);
}

int CDC::TextOut(int x, int y, const std::wstring& text) {
    if (!m_context) return 0;
    m_context->surface->change().write({.at = {x, y},
                                        .text = text,
                                        .font = std::get<LOGFONT>(m_context->font->made),
                                        .color = m_context->textColor,
                                        .background = m_context->backColor,
                                        .opaque = m_context->backMode == OPAQUE,
                                        .align = m_context->textAlign});
    return 1;
}

int CDC::BitBlt(int x, int y, int width, int height, CDC* source, int sourceX, int sourceY, DWORD operation) {
    if (!m_context || !source || !source->m_context || operation != SRCCOPY) return 0;
    const auto& shown = *source->m_context->surface;
    const CPoint shift = CPoint(x, y) - CPoint(sourceX, sourceY);
    CRect part = shown.area();
    part.OffsetRect(shift);
    // What lies beyond the source's edges stays as it is.
    if (!part.IntersectRect(CRect(part), CRect(CPoint(x, y), CSize(width, height)))) return 1;
    return m_context->surface->transfer(part, part.TopLeft() - shift, shown.share());
}

UINT CDC::SetTextAlign(UINT align) {
    return m_context ? std::exchange(m_context->textAlign, align) : 0;
}
COLORREF CDC::SetTextColor(COLORREF color) {
    return m_context ? std::exchange(m_context->textColor, color) : 0;
}
COLORREF CDC::SetBkColor(COLORREF color) {
    return m_context ? std::exchange(m_context->backColor, color) : 0;
}
int CDC::SetBkMode(int mode) {
    return m_context ? std::exchange(m_context->backMode, mode) : 0;
}
UINT CDC::GetTextAlign() const {
    return m_context ? m_context->textAlign : 0;
}
COLORREF CDC::GetTextColor() const {
    return m_context ? m_context->textColor : 0;
}
COLORREF CDC::GetBkColor() const {
    return m_context ? m_context->backColor : 0;
}
int CDC::GetBkMode() const {
    return m_context ? m_context->backMode : 0;
}

int CDC::GetDeviceCaps(int what) const {
    return m_context && (what == LOGPIXELSX || what == LOGPIXELSY) ? framework::kPixelsPerInch : 0;
}

void CDC::ExpectPoints(std::size_t count) {
    if (m_context) m_context->surface->change().expectPoints(count);
}
