#include "host/dialogs/QMSelDialog.h"

BEGIN_MESSAGE_MAP(CQMSelDialog, CQMDialog)
ON_BN_CLICKED(IDC_QM_RESET, &CQMSelDialog::OnReset)
ON_WM_MOUSEWHEEL()
END_MESSAGE_MAP()

void CQMSelDialog::OnSelectComboChanged(int type) {
    SetSelectionType(type);
    DeleteSelectItem();
}

void CQMSelDialog::DeleteSelectItem() {
    if (GetDocBase()) GetDocBase()->ClearSelectBuffer(1);
}

void CQMSelDialog::ResetDialog() {
    DeleteSelectItem();
    UpdateData(0);
    if (m_nDefaultId) GotoDlgCtrl(GetDlgItem(static_cast<int>(m_nDefaultId)));
}

void CQMSelDialog::OnCancel() {
    DeleteSelectItem();
    CQMDialog::OnCancel();
}

int CQMSelDialog::OnMouseWheel(UINT keys, short delta, CPoint point) {
    return OnDlgMouseWheel(keys, delta, point) ? 1 : CQMDialog::OnMouseWheel(keys, delta, point);
}
