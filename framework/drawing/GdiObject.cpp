#include "framework/drawing/GdiObject.h"

#include "framework/drawing/DC.h"
#include "framework/drawing/GdiRecord.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <utility>

using framework::BitmapRecord;
using framework::GdiRecord;

namespace {

template <class Look>
std::shared_ptr<GdiRecord> made(Look look) {
    return std::make_shared<GdiRecord>(std::move(look));
}

/// The exact ratio, a half rounded away from zero; not for a product beyond 64 bits.
int mulDiv(int number, int numerator, int denominator) {
    const std::int64_t twice = 2 * std::int64_t{number} * numerator;
    return static_cast<int>((twice + (twice < 0 ? -denominator : denominator)) / (2 * denominator));
}

BitmapRecord* bitmapOf(GdiRecord* record) {
    return record ? std::get_if<BitmapRecord>(&record->made) : nullptr;
}

} // namespace

CGdiObject::CGdiObject() = default;

CGdiObject::~CGdiObject() {
    DeleteObject();
}

int CGdiObject::Make(std::shared_ptr<GdiRecord> record) {
    if (m_record) return 0;
    m_owned = std::move(record);
    m_record = m_owned.get();
    m_record->object = this;
    return 1;
}

int CGdiObject::DeleteObject() {
    if (!m_owned) return 0;
    m_owned->object = nullptr;
    m_record = nullptr;
    m_owned.reset();
    return 1;
}

int CPen::CreatePen(int style, int width, COLORREF color) {
    return Make(made(framework::PenLook{color, std::max(width, 1), style == PS_NULL}));
}

int CBrush::CreateSolidBrush(COLORREF color) {
    return Make(made(framework::BrushLook{color, false}));
}

int CFont::CreateFontIndirect(const LOGFONT* font) {
    return font ? Make(made(*font)) : 0;
}

int CFont::CreatePointFontIndirect(const LOGFONT* font, CDC* dc) {
    if (!font) return 0;
    constexpr int kTenthsOfPointPerInch = 720;
    const int perInch = dc && dc->GetSafeHdc() ? dc->GetDeviceCaps(LOGPIXELSY) : framework::kPixelsPerInch;
    LOGFONT inPixels = *font;
    inPixels.lfHeight = -std::abs(mulDiv(perInch, font->lfHeight, kTenthsOfPointPerInch));
    return CreateFontIndirect(&inPixels);
}

int CFont::GetLogFont(LOGFONT* font) const {
    const auto* held = Made() ? std::get_if<LOGFONT>(&Made()->made) : nullptr;
    if (!held || !font) return 0;
    *font = *held;
    return 1;
}

int CBitmap::CreateCompatibleBitmap(CDC* dc, int width, int height) {
    if (!dc || !dc->GetSafeHdc() || width < 0 || height < 0) return 0;
    const CSize size = width && height ? CSize(width, height) : CSize(1, 1);
    auto surface = std::make_shared<framework::Surface>(size);
    surface->fill(surface->area(), RGB(0, 0, 0));
    return Make(made(BitmapRecord{std::move(surface), {}, nullptr}));
}

CSize CBitmap::GetSize() const {
    const auto* bitmap = bitmapOf(Made());
    return bitmap ? bitmap->surface->size() : CSize();
}

CSize CBitmap::SetBitmapDimension(int width, int height) {
    auto* bitmap = bitmapOf(Made());
    return bitmap ? std::exchange(bitmap->dimension, CSize(width, height)) : CSize();
}

CSize CBitmap::GetBitmapDimension() const {
    const auto* bitmap = bitmapOf(Made());
    return bitmap ? bitmap->dimension : CSize();
}
