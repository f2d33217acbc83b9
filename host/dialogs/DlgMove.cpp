#include "host/dialogs/DlgMove.h"

#include "framework/windows/WinThread.h"

int CDlgMove::OnInitDialog() {
    if (m_nInitMode == InitialPlace::MainWindow) {
        CRect frame;
        if (CWnd* main = AfxGetMainWnd()) main->GetWindowRect(&frame);
        const CPoint corner = frame.TopLeft() + m_ptInit;
        SetWindowPos(nullptr, corner.x, corner.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
    return CInternationalDlg::OnInitDialog();
}
