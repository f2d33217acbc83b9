#pragma once

#include "framework/Export.h"
#include "framework/windows/Wnd.h"

/// The thread of windows: the one that knows the main window. The first one made is the current one for as
/// long as it lives.
class VEXA_API CWinThread {
  public:
    CWinThread();
    virtual ~CWinThread();
    CWinThread(const CWinThread&) = delete;
    CWinThread& operator=(const CWinThread&) = delete;

    virtual CWnd* GetMainWnd() { return m_pMainWnd; }
    CWnd* m_pMainWnd = nullptr; ///< not owned; null again when its window is destroyed
};

VEXA_API CWinThread* AfxGetThread(); ///< null when there is none
VEXA_API CWnd* AfxGetMainWnd();
