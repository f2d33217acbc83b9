#pragma once

#include "framework/windows/WindowMessages.h"

class CWnd;

namespace framework {

struct MessageArguments {
    WPARAM wParam = 0;
    LPARAM lParam = 0;
    UINT id = 0;               ///< of the control or command
    NMHDR* header = nullptr;   ///< with WM_NOTIFY
    LRESULT* result = nullptr; ///< with WM_NOTIFY
};

struct MessageEntry {
    UINT message = 0;
    UINT code = 0;
    UINT firstId = 0;
    UINT lastId = 0;
    const UINT* registered = nullptr;                                             ///< in place of `message`
    LRESULT (*invoke)(CWnd& window, const MessageArguments& arguments) = nullptr; ///< null ends the map
};

struct MessageMap {
    const MessageMap* (*base)(); ///< null in the first class
    const MessageEntry* entries;
};

/// The entry of a map or its bases for a message, or for a command or notification of a control.
const MessageEntry* findMessageEntry(const MessageMap* map, UINT message);
const MessageEntry* findControlEntry(const MessageMap* map, UINT message, UINT code, UINT id);

} // namespace framework

#define DECLARE_MESSAGE_MAP()                                                                                \
  protected:                                                                                                 \
    static const framework::MessageMap* GetThisMessageMap();                                                 \
    const framework::MessageMap* GetMessageMap() const override;

#define BEGIN_MESSAGE_MAP(theClass, baseClass)                                                               \
    const framework::MessageMap* theClass::GetMessageMap() const {                                           \
        return GetThisMessageMap();                                                                          \
    }                                                                                                        \
    const framework::MessageMap* theClass::GetThisMessageMap() {                                             \
        using ThisClass = theClass;                                                                          \
        using TheBaseClass = baseClass;                                                                      \
        static const framework::MessageEntry entries[] = {
#define END_MESSAGE_MAP()                                                                                    \
    framework::MessageEntry {}                                                                               \
    }                                                                                                        \
    ;                                                                                                        \
    static const framework::MessageMap map{                                                                  \
        [] { return static_cast<const framework::MessageMap*>(TheBaseClass::GetThisMessageMap()); },         \
        entries};                                                                                            \
    return &map;                                                                                             \
    }

// Handlers are written &Class::Handler.
#define ON_MAP_ENTRY_(number, code, first, last, form, handler)                                              \
    framework::MessageEntry{number,                                                                          \
                            static_cast<UINT>(code),                                                         \
                            static_cast<UINT>(first),                                                        \
                            static_cast<UINT>(last),                                                         \
                            nullptr,                                                                         \
                            &framework::invoke::form<ThisClass, handler>},

/// void Handler()
#define ON_CONTROL(code, id, handler) ON_MAP_ENTRY_(WM_COMMAND, code, id, id, command, handler)
#define ON_COMMAND(id, handler) ON_CONTROL(0, id, handler)
/// void Handler(UINT id)
#define ON_CONTROL_RANGE(code, first, last, handler)                                                         \
    ON_MAP_ENTRY_(WM_COMMAND, code, first, last, commandId, handler)
#define ON_COMMAND_RANGE(first, last, handler) ON_CONTROL_RANGE(0, first, last, handler)
#define ON_BN_CLICKED(id, handler) ON_CONTROL(BN_CLICKED, id, handler)
#define ON_EN_CHANGE(id, handler) ON_CONTROL(EN_CHANGE, id, handler)
#define ON_EN_UPDATE(id, handler) ON_CONTROL(EN_UPDATE, id, handler)
#define ON_EN_SETFOCUS(id, handler) ON_CONTROL(EN_SETFOCUS, id, handler)
#define ON_EN_KILLFOCUS(id, handler) ON_CONTROL(EN_KILLFOCUS, id, handler)
#define ON_CBN_SELCHANGE(id, handler) ON_CONTROL(CBN_SELCHANGE, id, handler)
#define ON_CBN_EDITCHANGE(id, handler) ON_CONTROL(CBN_EDITCHANGE, id, handler)
#define ON_CBN_DROPDOWN(id, handler) ON_CONTROL(CBN_DROPDOWN, id, handler)
#define ON_CBN_CLOSEUP(id, handler) ON_CONTROL(CBN_CLOSEUP, id, handler)
#define ON_LBN_SELCHANGE(id, handler) ON_CONTROL(LBN_SELCHANGE, id, handler)
#define ON_LBN_DBLCLK(id, handler) ON_CONTROL(LBN_DBLCLK, id, handler)
#define ON_CLBN_CHKCHANGE(id, handler) ON_CONTROL(CLBN_CHKCHANGE, id, handler)
/// void Handler(NMHDR* header, LRESULT* result)
#define ON_NOTIFY(code, id, handler) ON_MAP_ENTRY_(WM_NOTIFY, code, id, id, notify, handler)
/// LRESULT Handler(WPARAM, LPARAM)
#define ON_MESSAGE(number, handler) ON_MAP_ENTRY_(number, 0, 0, 0, message, handler)
/// `variable` holds the number from RegisterWindowMessage.
#define ON_REGISTERED_MESSAGE(variable, handler)                                                             \
    framework::MessageEntry{0, 0, 0, 0, &variable, &framework::invoke::message<ThisClass, handler>},

#define ON_WM_CREATE() ON_MAP_ENTRY_(WM_CREATE, 0, 0, 0, create, &ThisClass::OnCreate)
#define ON_WM_DESTROY() ON_MAP_ENTRY_(WM_DESTROY, 0, 0, 0, plain, &ThisClass::OnDestroy)
#define ON_WM_CLOSE() ON_MAP_ENTRY_(WM_CLOSE, 0, 0, 0, plain, &ThisClass::OnClose)
#define ON_WM_PAINT() ON_MAP_ENTRY_(WM_PAINT, 0, 0, 0, plain, &ThisClass::OnPaint)
#define ON_WM_SIZE() ON_MAP_ENTRY_(WM_SIZE, 0, 0, 0, size, &ThisClass::OnSize)
#define ON_WM_MOVE() ON_MAP_ENTRY_(WM_MOVE, 0, 0, 0, move, &ThisClass::OnMove)
#define ON_WM_SHOWWINDOW() ON_MAP_ENTRY_(WM_SHOWWINDOW, 0, 0, 0, show, &ThisClass::OnShowWindow)
#define ON_WM_ENABLE() ON_MAP_ENTRY_(WM_ENABLE, 0, 0, 0, flag, &ThisClass::OnEnable)
#define ON_WM_ACTIVATE() ON_MAP_ENTRY_(WM_ACTIVATE, 0, 0, 0, activate, &ThisClass::OnActivate)
#define ON_WM_SETFOCUS() ON_MAP_ENTRY_(WM_SETFOCUS, 0, 0, 0, focus, &ThisClass::OnSetFocus)
#define ON_WM_KILLFOCUS() ON_MAP_ENTRY_(WM_KILLFOCUS, 0, 0, 0, focus, &ThisClass::OnKillFocus)
#define ON_WM_KEYDOWN() ON_MAP_ENTRY_(WM_KEYDOWN, 0, 0, 0, key, &ThisClass::OnKeyDown)
#define ON_WM_CHAR() ON_MAP_ENTRY_(WM_CHAR, 0, 0, 0, key, &ThisClass::OnChar)
#define ON_WM_HSCROLL() ON_MAP_ENTRY_(WM_HSCROLL, 0, 0, 0, scroll, &ThisClass::OnHScroll)
#define ON_WM_VSCROLL() ON_MAP_ENTRY_(WM_VSCROLL, 0, 0, 0, scroll, &ThisClass::OnVScroll)
#define ON_WM_MOUSEMOVE() ON_MAP_ENTRY_(WM_MOUSEMOVE, 0, 0, 0, mouse, &ThisClass::OnMouseMove)
#define ON_WM_LBUTTONDOWN() ON_MAP_ENTRY_(WM_LBUTTONDOWN, 0, 0, 0, mouse, &ThisClass::OnLButtonDown)
#define ON_WM_LBUTTONUP() ON_MAP_ENTRY_(WM_LBUTTONUP, 0, 0, 0, mouse, &ThisClass::OnLButtonUp)
#define ON_WM_LBUTTONDBLCLK() ON_MAP_ENTRY_(WM_LBUTTONDBLCLK, 0, 0, 0, mouse, &ThisClass::OnLButtonDblClk)
#define ON_WM_RBUTTONDOWN() ON_MAP_ENTRY_(WM_RBUTTONDOWN, 0, 0, 0, mouse, &ThisClass::OnRButtonDown)
#define ON_WM_RBUTTONUP() ON_MAP_ENTRY_(WM_RBUTTONUP, 0, 0, 0, mouse, &ThisClass::OnRButtonUp)
#define ON_WM_MOUSEWHEEL() ON_MAP_ENTRY_(WM_MOUSEWHEEL, 0, 0, 0, wheel, &ThisClass::OnMouseWheel)
