#include "host/dialogs/ChildDialog.h"

#include "framework/windows/WindowRecord.h"

#include <algorithm>

int CChildDialog::CreateInit(UINT templateId, UINT placeId) {
    CWnd* place = m_pParentDlg ? m_pParentDlg->GetDlgItem(static_cast<int>(placeId)) : nullptr;
    if (!place) return 0;
    CRect rect;
    place->GetWindowRect(&rect);
    m_pParentDlg->ScreenToClient(&rect);
    if (!Create(templateId, m_pParentDlg)) return 0;
    // The page is reached by Tab where the placeholder lay, and has its id alone.
    auto& order = framework::findWindow(m_pParentDlg->m_hWnd)->children;
    std::erase(order, m_hWnd);
    order.insert(std::find(order.begin(), order.end(), place->m_hWnd), m_hWnd);
    place->DestroyWindow();
    SetDlgCtrlID(static_cast<int>(placeId));
    MoveWindow(rect);
    ShowWindow(SW_SHOW);
    return 1;
}

void CChildDialog::PrivateNotifyToParent(UINT code) {
    if (!m_pParentDlg) return;
    m_pParentDlg->SendMessage(WM_COMMAND, MAKEWPARAM(static_cast<UINT>(GetDlgCtrlID()), code),
                              reinterpret_cast<LPARAM>(m_hWnd));
}
