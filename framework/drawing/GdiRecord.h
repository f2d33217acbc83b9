#pragma once

#include "framework/drawing/GdiObject.h"
#include "framework/drawing/Surface.h"

#include <memory>
#include <variant>

namespace framework {

struct DeviceContext;

struct BitmapRecord {
    std::shared_ptr<Surface> surface;
    CSize dimension;                       ///< the owner's own, see CBitmap::SetBitmapDimension
    const DeviceContext* holder = nullptr; ///< selected there: in one memory context at a time
};

/// What a drawing object made. Shared by the object and the contexts in which it is selected.
struct GdiRecord : std::enable_shared_from_this<GdiRecord> {
    std::variant<PenLook, BrushLook, LOGFONT, BitmapRecord> made;
    CGdiObject* object = nullptr;     ///< that made it; null when it is gone
    std::unique_ptr<CGdiObject> lent; ///< stands for it where there is none

    template <class Made>
    explicit GdiRecord(Made value)
        : made(std::move(value)) {}

    /// The object, or one that is lent for as long as the record lives.
    template <class Object>
    Object* asObject() {
        if (object) return static_cast<Object*>(object);
        if (!lent) {
            lent = std::make_unique<Object>();
            lent->m_record = this;
        }
        return static_cast<Object*>(lent.get());
    }
};

} // namespace framework
