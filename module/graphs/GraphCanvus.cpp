#include "module/graphs/GraphCanvus.h"

#include "framework/windows/Wnd.h"

void CGraphCanvus::Build(CDC& window, const CWnd& sizeSource) {
    sizeSource.GetClientRect(&m_rcClient);
    m_dc.CreateCompatibleDC(&window);
    m_bitmap.CreateCompatibleBitmap(&window, m_rcClient.Width(), m_rcClient.Height());
    m_bitmap.SetBitmapDimensionEx(m_rcClient.Width(), m_rcClient.Height());
    m_pPrevious = m_dc.SelectObject(&m_bitmap);
}

int CGraphCanvus::Release() {
    if (!m_dc.GetSafeHdc()) return 1;
    m_dc.SelectObject(m_pPrevious);
    if (m_bitmap.GetSafeHandle()) m_bitmap.DeleteObject();
    m_dc.DeleteDC();
    m_pPrevious = nullptr;
    return 1;
}
