#pragma once

#include "framework/windows/Wnd.h"

/// From a message's arguments to the handler's; one a form of handler. T derives from CWnd.
namespace framework::invoke {

template <class T, auto F>
LRESULT command(CWnd& w, const MessageArguments&) {
    (static_cast<T&>(w).*F)();
    return 1;
}
template <class T, auto F>
LRESULT commandId(CWnd& w, const MessageArguments& a) {
    (static_cast<T&>(w).*F)(a.id);
    return 1;
}
template <class T, auto F>
LRESULT notify(CWnd& w, const MessageArguments& a) {
    (static_cast<T&>(w).*F)(a.header, a.result);
    return 1;
}
template <class T, auto F>
LRESULT message(CWnd& w, const MessageArguments& a) {
    return (static_cast<T&>(w).*F)(a.wParam, a.lParam);
}
template <class T, auto F>
LRESULT plain(CWnd& w, const MessageArguments&) {
    (static_cast<T&>(w).*F)();
    return 0;
}
template <class T, auto F>
LRESULT create(CWnd& w, const MessageArguments&) {
    return (static_cast<T&>(w).*F)();
}
/// For WM_SHOWWINDOW and WM_ENABLE.
template <class T, auto F>
LRESULT flag(CWnd& w, const MessageArguments& a) {
    (static_cast<T&>(w).*F)(a.wParam != 0);
    return 0;
}
template <class T, auto F>
LRESULT size(CWnd& w, const MessageArguments& a) {
    (static_cast<T&>(w).*F)(static_cast<UINT>(a.wParam), static_cast<int>(LOWORD(a.lParam)),
                            static_cast<int>(HIWORD(a.lParam)));
    return 0;
}

template <class T, auto F>
LRESULT move(CWnd& w, const MessageArguments& a) {
    (static_cast<T&>(w).*F)(GET_X_LPARAM(a.lParam), GET_Y_LPARAM(a.lParam));
    return 0;
}
template <class T, auto F>
LRESULT show(CWnd& w, const MessageArguments& a) {
    (static_cast<T&>(w).*F)(a.wParam != 0, static_cast<UINT>(a.lParam));
    return 0;
}
template <class T, auto F>
LRESULT activate(CWnd& w, const MessageArguments& a) {
    CWnd* other = CWnd::FromHandle(reinterpret_cast<HWND>(a.lParam));
    (static_cast<T&>(w).*F)(LOWORD(static_cast<LPARAM>(a.wParam)), other, 0);
    return 0;
}
template <class T, auto F>
LRESULT focus(CWnd& w, const MessageArguments& a) {
    (static_cast<T&>(w).*F)(CWnd::FromHandle(reinterpret_cast<HWND>(a.wParam)));
    return 0;
}
template <class T, auto F>
LRESULT key(CWnd& w, const MessageArguments& a) {
    (static_cast<T&>(w).*F)(static_cast<UINT>(a.wParam), 1U, 0U);
    return 0;
}
/// The last argument is the spin button or scroll bar that sent the message.
template <class T, auto F>
LRESULT scroll(CWnd& w, const MessageArguments& a) {
    const auto code = static_cast<LPARAM>(a.wParam);
    (static_cast<T&>(w).*F)(LOWORD(code), HIWORD(code), CWnd::FromHandle(reinterpret_cast<HWND>(a.lParam)));
    return 0;
}
template <class T, auto F>
LRESULT mouse(CWnd& w, const MessageArguments& a) {
    (static_cast<T&>(w).*F)(static_cast<UINT>(a.wParam),
                            CPoint(GET_X_LPARAM(a.lParam), GET_Y_LPARAM(a.lParam)));
    return 0;
}
template <class T, auto F>
LRESULT wheel(CWnd& w, const MessageArguments& a) {
    const auto keys = static_cast<LPARAM>(a.wParam);
    return (static_cast<T&>(w).*F)(LOWORD(keys), static_cast<short>(HIWORD(keys)),
                                   CPoint(GET_X_LPARAM(a.lParam), GET_Y_LPARAM(a.lParam)));
}

} // namespace framework::invoke
