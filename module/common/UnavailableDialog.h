#pragma once

#include "host/dialogs/QMDialog.h"

/// Writes title, sentence and button of a dialog whose tool is not there yet, in the current language.
void writeUnavailableTexts(CWnd& dialog, const wchar_t* titleKey);

/// A dialog whose tool is not there yet: its title, a sentence that says so, and Close. Base is the host's
/// dialog base that the tool needs.
template <class Base>
class UnavailableDialog : public Base {
  public:
    /// `titleKey` is the key of a literal.
    UnavailableDialog(UINT templateId, const wchar_t* titleKey, CQMDocBase* doc, CWnd* parent)
        : Base(templateId, doc, parent)
        , m_szTitleKey(titleKey) {}

    int OnInitDialog() override {
        const int focus = Base::OnInitDialog();
        writeUnavailableTexts(*this, m_szTitleKey);
        return focus;
    }
    void OnChangeLanguage() override { writeUnavailableTexts(*this, m_szTitleKey); }

  private:
    const wchar_t* m_szTitleKey;
};
