#include "framework/windows/PaintDC.h"

#include "framework/drawing/Surface.h"
#include "framework/windows/WindowFunctions.h"
#include "framework/windows/WindowRecord.h"
#include "framework/windows/Wnd.h"
#include "framework/windows/desktop/DesktopPort.h"

namespace {

CSize clientSize(HWND window) {
    CRect client;
    GetClientRect(window, &client);
    return client.Size();
}

void tellDesktop(HWND window) {
    if (framework::findWindow(window)) framework::desktop().WindowPainted(window);
}

} // namespace

CPaintDC::CPaintDC(CWnd* window) {
    auto* record = window ? framework::findWindow(window->m_hWnd) : nullptr;
    if (!record) return;
    const bool invalid = !record->painting.IsRectEmpty() || !record->invalid.IsRectEmpty();
    const bool erase = record->erasePainting || record->eraseInvalid;
    record->painting.SetRectEmpty();
    record->erasePainting = false;
    ValidateRect(record->handle, nullptr);
    if (!invalid) {
        // Somewhere, so that the handler need not ask.
        DrawOn(std::make_shared<framework::Surface>(CSize()));
        return;
    }
    m_window = record->handle;
    record->presented = std::make_shared<framework::Surface>(clientSize(m_window));
    DrawOn(record->presented);
    const CRect area = record->presented->area();
    if (erase) record->presented->fill(area, framework::kFaceColor);
    m_ps = {GetSafeHdc(), 0, area};
}

CPaintDC::~CPaintDC() {
    tellDesktop(m_window);
}

CClientDC::CClientDC(CWnd* window) {
    auto* record = window ? framework::findWindow(window->m_hWnd) : nullptr;
    if (!record) return;
    m_window = record->handle;
    const CSize size = clientSize(m_window);
    if (!record->presented) record->presented = std::make_shared<framework::Surface>(size);
    record->presented->resize(size);
    DrawOn(record->presented);
}

CClientDC::~CClientDC() {
    if (auto* surface = Target()) surface->change().foldReplay();
    tellDesktop(m_window);
}
