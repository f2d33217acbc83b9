#pragma once

#include "framework/Export.h"
#include "host/QMDocBase.h"
#include "host/QMObserver.h"
#include "host/dialogs/DlgModeless.h"
#include "host/dialogs/HostControlIds.h"

/// A dialog of a document. Modal: on the stack, DoModal. Modeless: on the heap, Create; it then belongs to
/// its window and is deleted with it. Where Create fails, whoever made the object deletes it. Closes when its
/// document does.
class VEXA_API CQMDialog : public CDlgModeless, public CQMObserver {
  public:
    /// `parent` is the owner of the modal window; the main window without one.
    CQMDialog(UINT templateId, CQMDocBase* doc, CWnd* parent = nullptr);

    /// Makes the window of a modeless dialog; each class gives its own template. Zero on failure.
    virtual int Create(CWnd* parent) { return Create(m_nTemplateId, parent); }
    int Create(UINT templateId, CWnd* parent) { return CDlgModeless::Create(templateId, parent); }

    /// The Apply button (ID_APPLY_NOW). Non-zero when it was applied; the dialog stays open.
    virtual int EnterApply() { return 0; }
    CQMDocBase* GetDocBase() const { return m_pDocBase; } ///< null when there is none
    /// Redraws the document's active view: at once when `now` is non-zero, else with the next painting.
    void ViewUpdate(int now);
    void UpdateObserver(CQMSubject* subject, UINT message, WPARAM wParam, LPARAM lParam) override;

  protected:
    void PostNcDestroy() override;

    DECLARE_MESSAGE_MAP()

  private:
    void OnApplyButton() { EnterApply(); }

    CQMDocBase* m_pDocBase;
};
