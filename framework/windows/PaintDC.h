#pragma once

#include "framework/drawing/DC.h"
#include "framework/windows/WindowTypes.h"

class CWnd;

struct PAINTSTRUCT {
    HDC hdc = nullptr;
    int fErase = 0;
    CRect rcPaint; ///< what is drawn: the whole client area, or nothing
};

/// Draws what of a window is invalid, and makes it valid. What the window shows begins anew with it: erased
/// when that was asked for, in the colour of dialogs, then what is drawn. Where nothing is invalid nothing is
/// drawn, and the window goes on showing what it did.
class VEXA_API CPaintDC : public CDC {
  public:
    explicit CPaintDC(CWnd* window);
    ~CPaintDC() override;
    PAINTSTRUCT m_ps;

  private:
    HWND m_window = nullptr;
};

/// Draws on a window at once, over what it shows, until it is painted the next time.
class VEXA_API CClientDC : public CDC {
  public:
    explicit CClientDC(CWnd* window);
    ~CClientDC() override;

  private:
    HWND m_window = nullptr;
};
