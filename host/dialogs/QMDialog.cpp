#include "host/dialogs/QMDialog.h"

BEGIN_MESSAGE_MAP(CQMDialog, CDlgModeless)
ON_BN_CLICKED(ID_APPLY_NOW, &CQMDialog::OnApplyButton)
END_MESSAGE_MAP()

CQMDialog::CQMDialog(UINT templateId, CQMDocBase* doc, CWnd* parent)
    : CDlgModeless(templateId, parent)
    , m_pDocBase(doc) {
    if (doc) doc->AttachObserver(*this);
}

void CQMDialog::ViewUpdate(int now) {
    CQMViewBase* view = m_pDocBase ? m_pDocBase->GetActiveView() : nullptr;
    if (!view) return;
    view->Invalidate();
    if (now) view->UpdateWindow();
}

void CQMDialog::UpdateObserver(CQMSubject* subject, UINT message, WPARAM, LPARAM) {
    if (subject != m_pDocBase || message != DocumentMessage::Closing) return;
    m_pDocBase = nullptr;
    Close(IDCANCEL); // the object may be gone
}

void CQMDialog::PostNcDestroy() {
    if (!IsModal()) delete this;
}
