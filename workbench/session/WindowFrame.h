#pragma once

#include "framework/windows/WinThread.h"
#include "host/QMDocBase.h"

#include <string>

namespace workbench {

/// The application frame that dialogs open in: the thread of windows, a main window and a place in it for the
/// window of the view. Without a screen it has given rectangles; a desktop keeps them as its own windows are.
/// Make it after the host and before documents are shown; one at a time.
class WindowFrame {
  public:
    explicit WindowFrame(const std::wstring& title, const CRect& main = {0, 0, 1280, 800},
                         const CRect& view = {260, 60, 1280, 780}) {
        m_main.CreateEx(0, nullptr, title.c_str(), WS_OVERLAPPED | WS_VISIBLE, main, nullptr, 0);
        m_thread.m_pMainWnd = &m_main;
        m_viewRect = inMain(view);
    }
    CWnd& mainWindow() { return m_main; }

    /// Makes the window of a view, as a child of the main window; it goes with the view.
    void showView(CQMViewBase& view) {
        view.Create(nullptr, L"", WS_VISIBLE, m_viewRect, &m_main, 0);
        m_view = view.m_hWnd;
    }
    /// Where the main window and the view stand now, on the screen.
    void place(const CRect& main, const CRect& view) {
        m_main.MoveWindow(main);
        m_viewRect = inMain(view);
        ::MoveWindow(m_view, m_viewRect);
    }

  private:
    CRect inMain(CRect rect) const {
        m_main.ScreenToClient(&rect);
        return rect;
    }

    CWinThread m_thread;
    CWnd m_main;
    CRect m_viewRect;
    HWND m_view = nullptr;
};

} // namespace workbench
