#pragma once

#include "framework/drawing/DC.h"

class CWnd;

/// The picture of a graph beside its window: all that stays is drawn into it, and the window shows it.
class CGraphCanvus {
  public:
    CRect m_rcClient;               ///< client area of the control when the canvas was made
    CBitmap m_bitmap;               ///< as large as that
    CBitmap* m_pPrevious = nullptr; ///< selected in m_dc before the bitmap; the context's own
    CDC m_dc;

    /// Makes context and bitmap for the client area of `sizeSource`. There must be none.
    void Build(CDC& window, const CWnd& sizeSource);
    int Release(); ///< always 1
};
