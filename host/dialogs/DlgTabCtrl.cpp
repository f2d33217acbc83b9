#include "host/dialogs/DlgTabCtrl.h"

int CDlgTabCtrl::AddPage(const std::wstring& text, CWnd& page) {
    const int index = InsertItem(GetItemCount(), text);
    if (index < 0) return index;
    m_pages.push_back(&page);
    CRect area;
    GetWindowRect(&area);
    AdjustRect(0, &area);
    if (const CWnd* parent = GetParent()) parent->ScreenToClient(&area);
    page.MoveWindow(area);
    ShowSelectedPage();
    return index;
}

CWnd* CDlgTabCtrl::GetPage(int index) const {
    return index >= 0 && static_cast<std::size_t>(index) < m_pages.size()
               ? m_pages[static_cast<std::size_t>(index)]
               : nullptr;
}

void CDlgTabCtrl::ShowPage(int index) {
    SetCurSel(index);
    ShowSelectedPage();
}

void CDlgTabCtrl::ShowSelectedPage() {
    // The new page first: the focus then has somewhere to go when the old one is hidden.
    CWnd* selected = GetPage(GetCurSel());
    if (selected) selected->ShowWindow(SW_SHOW);
    for (CWnd* page : m_pages)
        if (page != selected) page->ShowWindow(SW_HIDE);
}

int CDlgTabCtrl::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
    if (message == WM_NOTIFY && reinterpret_cast<const NMHDR*>(lParam)->code == TCN_SELCHANGE)
        ShowSelectedPage();
    return CTabCtrl::OnChildNotify(message, wParam, lParam, result);
}
