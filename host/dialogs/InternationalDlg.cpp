#include "host/dialogs/InternationalDlg.h"

#include "host/MSGFunction.h"
#include "host/dialogs/OpenDialogs.h"

namespace {

const UINT g_notice = openDialogsMessage();

} // namespace

BEGIN_MESSAGE_MAP(CInternationalDlg, CDialog)
ON_REGISTERED_MESSAGE(g_notice, &CInternationalDlg::OnHostNotice)
END_MESSAGE_MAP()

void CInternationalDlg::SetItemMessage(int id, std::wstring_view key) {
    SetDlgItemText(id, CMSGFunction::GetValue(key));
}

void CInternationalDlg::SetTitleMessage(std::wstring_view key) {
    SetWindowText(CMSGFunction::GetValue(key));
}

LRESULT CInternationalDlg::OnHostNotice(WPARAM, LPARAM notice) {
    (*reinterpret_cast<const DialogNotice*>(notice))(*this);
    return 0;
}
