#pragma once

#include "framework/Export.h"
#include "framework/windows/dialogs/Dialog.h"

/// A page inside a parent dialog, of which its object is usually a member. The parent hands its values in
/// with SetData, asks CheckData and takes them out with GetData.
class VEXA_API CChildDialog : public CDialog {
  public:
    using CDialog::CDialog;

    void SetParentDlg(CDialog* parent) { m_pParentDlg = parent; }
    CDialog* GetParentDlg() const { return m_pParentDlg; }
    /// Makes the page over the parent's placeholder control, whose id it takes over, and shows it. Zero
    /// without a parent or such a control, or when the window cannot be made.
    int CreateInit(UINT templateId, UINT placeId);

    virtual void SetData() { UpdateData(0); }       ///< values to controls
    virtual int GetData() { return UpdateData(1); } ///< controls to values; zero when one was refused
    virtual int CheckData() { return 1; }           ///< zero, and the user told, when the values do not fit
    virtual void UpdateChildWindow() {
    } ///< texts and what is enabled, after a change of language or of values

  protected:
    /// Tells the parent with a command of this page's id and that code.
    void PrivateNotifyToParent(UINT code);

  private:
    CDialog* m_pParentDlg = nullptr;
};
