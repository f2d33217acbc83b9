#pragma once

#include "framework/windows/WindowRecord.h"
#include "framework/windows/Wnd.h"

namespace framework {

/// The window system's way to what objects keep from their users.
struct ObjectAccess {
    static LRESULT windowProc(CWnd& object, const MSG& message) {
        return object.WindowProc(message.message, message.wParam, message.lParam);
    }
    static void postNcDestroy(CWnd& object) { object.PostNcDestroy(); }
    static void attach(CWnd& object, WindowRecord& record, bool routed) {
        record.object = &object;
        record.routed = routed;
        object.m_hWnd = record.handle;
        if (routed) object.PreSubclassWindow();
    }
    static void detach(WindowRecord& record) {
        if (record.object) record.object->m_hWnd = nullptr;
        record.object = nullptr;
        record.routed = false;
        record.made = false;
    }
    static const MessageMap* messageMap(const CWnd& object) { return object.GetMessageMap(); }
    /// An object for a window where none is attached: it knows the window, the window does not know it.
    static void lend(CWnd& object, HWND window) { object.m_hWnd = window; }
};

} // namespace framework
