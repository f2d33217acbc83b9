#pragma once

#include "framework/Export.h"
#include "framework/windows/Wnd.h"

using INT_PTR = std::intptr_t;

/// A dialog from a template.
///
/// Modal: construct with the template's id, DoModal. Modeless: construct, Create, and leave it to its window;
/// a class whose objects own themselves deletes them in PostNcDestroy unless IsModal.
class VEXA_API CDialog : public CWnd {
  public:
    CDialog() = default;
    explicit CDialog(UINT templateId, CWnd* parent = nullptr)
        : m_pParentWnd(parent)
        , m_nTemplateId(templateId) {}

    /// Makes the window and its controls and runs OnInitDialog. Without a parent the main window is the
    /// owner. Zero when there is no such template, a control cannot be made, or OnInitDialog throws or
    /// destroys the window: the object then has no window, and its PostNcDestroy has not run.
    int Create(UINT templateId, CWnd* parent = nullptr);
    /// Shows the dialog, with its owner and the main window disabled, until EndDialog. A dialog whose
    /// template stands at 0, 0 is centred. Its answer; -1 when
    /// the window could not be made or was destroyed without one.
    virtual INT_PTR DoModal();
    void EndDialog(int result); ///< a modeless dialog is hidden

    virtual int OnInitDialog(); ///< fills the controls; non-zero: the focus goes to the first tab stop
    UINT GetDefID() const { return LOWORD(::SendMessage(m_hWnd, DM_GETDEFID)); }
    void SetDefID(UINT id) { SendMessage(DM_SETDEFID, id); }
    void NextDlgCtrl() { SendMessage(WM_NEXTDLGCTL, 0, 0); }
    void PrevDlgCtrl() { SendMessage(WM_NEXTDLGCTL, 1, 0); }
    void GotoDlgCtrl(CWnd* control);
    void MapDialogRect(CRect* units) const; ///< to pixels
    int PreTranslateMessage(MSG* message) override;

  protected:
    virtual void OnOK();     ///< reads the controls; ends the dialog when they are accepted
    virtual void OnCancel(); ///< ends the dialog
    bool IsModal() const { return m_bModal; }

    CWnd* m_pParentWnd = nullptr; ///< given to the constructor
    UINT m_nTemplateId = 0;

    DECLARE_MESSAGE_MAP()

  private:
    LRESULT HandleInitDialog(WPARAM, LPARAM);
    int CreateFromTemplate(UINT templateId, CWnd* parent);

    bool m_bModal = false;
    INT_PTR m_nModalResult = -1;
};

namespace framework {

LRESULT dialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

} // namespace framework
