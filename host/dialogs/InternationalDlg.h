#pragma once

#include "framework/Export.h"
#include "framework/windows/dialogs/Dialog.h"

#include <string_view>

/// A dialog whose texts follow the user's language.
class VEXA_API CInternationalDlg : public CDialog {
  public:
    CInternationalDlg() = default;
    explicit CInternationalDlg(UINT templateId, CWnd* parent = nullptr)
        : CDialog(templateId, parent) {}

    /// The language is another one now: read the texts again. The window may be destroyed meanwhile.
    virtual void OnChangeLanguage() {}

  protected:
    /// Replaces a control's text by the text of a message key in the current language.
    void SetItemMessage(int id, std::wstring_view key);
    void SetTitleMessage(std::wstring_view key);

    DECLARE_MESSAGE_MAP()

  private:
    LRESULT OnHostNotice(WPARAM, LPARAM notice);
};
