#pragma once

#include "framework/Export.h"
#include "framework/windows/MessageMap.h"
#include "framework/windows/WindowFunctions.h"

#include <string>

class CDataExchange;
namespace framework {
struct WindowRecord;
struct ObjectAccess;
} // namespace framework

/// An object attached to a window. At most one is attached to a window at a time. An object that made its
/// window (Create) destroys it with itself; one that was attached lets go of it. Without a window every
/// operation does nothing and answers zero or null.
class VEXA_API CWnd {
  public:
    CWnd() = default;
    virtual ~CWnd();
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;

    HWND m_hWnd = nullptr;
    HWND GetSafeHwnd() const { return m_hWnd; }

    /// The attached object, or one made for the window that lives as long as it does and a little longer:
    /// keep no pointer to it beyond the handler. Null when there is no such window.
    static CWnd* FromHandle(HWND window);
    static CWnd* FromHandlePermanent(HWND window); ///< null when no object is attached
    /// Attaches without getting the window's messages. Zero when the window is gone, either one is attached.
    int Attach(HWND window);
    HWND Detach();
    /// Attaches and gets the window's messages; its class answers them through Default. Zero as for Attach.
    int SubclassWindow(HWND window);
    int SubclassDlgItem(UINT id, CWnd* parent);
    HWND UnsubclassWindow() { return Detach(); }

    /// Makes a child window of a registered class; null: of the one without anything of its own.
    int Create(const wchar_t* className, const wchar_t* text, UINT style, const CRect& rect, CWnd* parent,
               UINT id);
    /// Makes a window of any style; `parent` is the owner where the style has no WS_CHILD.
    int CreateEx(UINT exStyle, const wchar_t* className, const wchar_t* text, UINT style, const CRect& rect,
                 CWnd* parent, UINT id);
    virtual int DestroyWindow();

    void SetWindowText(const std::wstring& text);
    void GetWindowText(std::wstring& text) const;
    int GetWindowTextLength() const;
    UINT GetStyle() const;
    UINT GetExStyle() const;
    int ModifyStyle(UINT remove, UINT add, UINT flags = 0); ///< non-zero when something changed
    int GetDlgCtrlID() const { return ::GetDlgCtrlID(m_hWnd); }
    int SetDlgCtrlID(int id); ///< the former id

    CWnd* GetParent() const { return FromHandle(::GetParent(m_hWnd)); }
    CWnd* SetParent(CWnd* parent);
    CWnd* GetOwner() const; ///< the parent unless SetOwner set another
    void SetOwner(CWnd* owner) { m_hWndOwner = owner ? owner->m_hWnd : nullptr; }
    CWnd* GetTopLevelParent() const { return FromHandle(framework::topLevelOf(m_hWnd)); }
    CWnd* GetDlgItem(int id) const { return FromHandle(::GetDlgItem(m_hWnd, id)); }
    CWnd* GetNextDlgTabItem(CWnd* from, int previous = 0) const;
    CWnd* GetNextDlgGroupItem(CWnd* from, int previous = 0) const;
    int IsChild(const CWnd* descendant) const { return descendant && ::IsChild(m_hWnd, descendant->m_hWnd); }

    int ShowWindow(int how) { return ::ShowWindow(m_hWnd, how); }
    int IsWindowVisible() const { return ::IsWindowVisible(m_hWnd); }
    int EnableWindow(int enable = 1) { return ::EnableWindow(m_hWnd, enable); }
    int IsWindowEnabled() const { return ::IsWindowEnabled(m_hWnd); }
    CWnd* SetFocus() { return FromHandle(::SetFocus(m_hWnd)); }
    static CWnd* GetFocus() { return FromHandle(::GetFocus()); }
    CWnd* SetActiveWindow() { return FromHandle(::SetActiveWindow(m_hWnd)); }
    static CWnd* GetActiveWindow() { return FromHandle(::GetActiveWindow()); }
    CWnd* SetCapture() { return FromHandle(::SetCapture(m_hWnd)); }

    void GetWindowRect(CRect* rect) const { ::GetWindowRect(m_hWnd, rect); }
    void GetClientRect(CRect* rect) const { ::GetClientRect(m_hWnd, rect); }
    void MoveWindow(const CRect& rect, int repaint = 1);
    void MoveWindow(int x, int y, int width, int height, int repaint = 1);
    /// `insertAfter` is not looked at: without SWP_NOZORDER a top-level window comes to the top.
    int SetWindowPos(const CWnd* insertAfter, int x, int y, int width, int height, UINT flags);
    void ClientToScreen(CPoint* point) const { ::ClientToScreen(m_hWnd, point); }
    void ClientToScreen(CRect* rect) const;
    void ScreenToClient(CPoint* point) const { ::ScreenToClient(m_hWnd, point); }
    void ScreenToClient(CRect* rect) const;
    /// In the middle of `over`, of the owner, or of the screen, and on the screen as a whole.
    void CenterWindow(CWnd* over = nullptr);
    void BringWindowToTop() { ::BringWindowToTop(m_hWnd); }

    void Invalidate(int erase = 1) { ::InvalidateRect(m_hWnd, nullptr, erase); }
    void InvalidateRect(const CRect* rect, int erase = 1) { ::InvalidateRect(m_hWnd, rect, erase); }
    void ValidateRect(const CRect* rect) { ::ValidateRect(m_hWnd, rect); }
    void UpdateWindow() { ::UpdateWindow(m_hWnd); }
    int RedrawWindow(const CRect* rect = nullptr, UINT flags = RDW_INVALIDATE | RDW_UPDATENOW | RDW_ERASE);

    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        return ::SendMessage(m_hWnd, message, wParam, lParam);
    }
    int PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        return ::PostMessage(m_hWnd, message, wParam, lParam);
    }
    void SendMessageToDescendants(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    int MessageBox(const std::wstring& text, const std::wstring& caption = {}, UINT style = MB_OK);

    // Items of a dialog, by id. An id without a control: no effect, zero, empty.
    void SetDlgItemText(int id, const std::wstring& text);
    int GetDlgItemText(int id, std::wstring& text) const; ///< its length
    void SetDlgItemInt(int id, UINT value, int isSigned = 1);
    UINT GetDlgItemInt(int id, int* translated = nullptr, int isSigned = 1) const;
    void CheckDlgButton(int id, UINT check);
    UINT IsDlgButtonChecked(int id) const;
    void CheckRadioButton(int first, int last, int checked);
    int GetCheckedRadioButton(int first, int last) const; ///< 0 when none is checked

    /// Runs DoDataExchange: false fills the controls, true reads them. Zero when a value was refused; the
    /// user has then been told. Notifications of the controls are dropped meanwhile.
    int UpdateData(int saveAndValidate = 1);

    /// Key messages on their way to this window or one in it; non-zero ends the way.
    virtual int PreTranslateMessage(MSG* message);

  protected:
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    /// What the window's class answers.
    virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    /// The class's answer to the message that is being handled.
    LRESULT Default();
    static const MSG& GetCurrentMessage();
    virtual int OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result); ///< zero: not handled
    virtual int OnCommand(WPARAM wParam, LPARAM lParam);
    virtual int OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result);
    virtual int OnCmdMsg(UINT id, UINT code);
    /// A notification of this control (WM_COMMAND, WM_NOTIFY), before its parent's handlers get it; non-zero
    /// keeps it from them.
    virtual int OnChildNotify(UINT, WPARAM, LPARAM, LRESULT*) { return 0; }
    virtual void PreSubclassWindow() {} ///< the object is attached, no message has come yet
    /// After the last message; the object has no window any more. Not called for a window whose creation
    /// failed.
    virtual void PostNcDestroy() {}
    virtual void DoDataExchange(CDataExchange*) {}

    static const framework::MessageMap* GetThisMessageMap();
    virtual const framework::MessageMap* GetMessageMap() const;

    int OnCreate() { return static_cast<int>(Default()); }
    void OnDestroy() { Default(); }
    void OnClose() { Default(); }
    void OnPaint() { Default(); }
    void OnSize(UINT, int, int) { Default(); }
    void OnMove(int, int) { Default(); }
    void OnShowWindow(int, UINT) { Default(); }
    void OnEnable(int) { Default(); }
    void OnActivate(UINT, CWnd*, int) { Default(); }
    void OnSetFocus(CWnd*) { Default(); }
    void OnKillFocus(CWnd*) { Default(); }
    void OnKeyDown(UINT, UINT, UINT) { Default(); }
    void OnChar(UINT, UINT, UINT) { Default(); }
    void OnHScroll(UINT, UINT, CWnd*) { Default(); }
    void OnVScroll(UINT, UINT, CWnd*) { Default(); }
    void OnMouseMove(UINT, CPoint) { Default(); }
    void OnLButtonDown(UINT, CPoint) { Default(); }
    void OnLButtonUp(UINT, CPoint) { Default(); }
    void OnLButtonDblClk(UINT, CPoint) { Default(); }
    void OnRButtonDown(UINT, CPoint) { Default(); }
    void OnRButtonUp(UINT, CPoint) { Default(); }
    int OnMouseWheel(UINT, short, CPoint) { return static_cast<int>(Default()); }

    framework::WindowRecord* Record() const; ///< null without a window

  private:
    int ReflectNotification(HWND control, UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);
    friend struct framework::ObjectAccess;
    friend class CDataExchange;
    HWND m_hWndOwner = nullptr;
};

#include "framework/windows/HandlerForms.h"
