#pragma once

#include "framework/Export.h"
#include "host/dialogs/QMDialog.h"

#include <array>

/// What the user picks in the view while a dialog is open.
namespace SelectionType {
inline constexpr int None = 0;
inline constexpr int Node = 1;
inline constexpr int Element = 2;
} // namespace SelectionType

/// A dialog that works on what is picked in the view: the document's pick buffer, which it empties when it is
/// cancelled or reset.
class VEXA_API CQMSelDialog : public CQMDialog {
  public:
    using CQMDialog::CQMDialog;

    void SetSelectionType(int type) { m_nSelectionType = type; } ///< see SelectionType
    int GetSelectionType() const { return m_nSelectionType; }
    /// The control that has the focus after a reset; 0: the focus stays where it is.
    void SetDefaultID(UINT id) { m_nDefaultId = id; }

    /// The user chose another kind of things to pick: what was picked is forgotten.
    virtual void OnSelectComboChanged(int type);
    virtual void DeleteSelectItem(); ///< forgets what is picked
    virtual void ResetDialog();      ///< back to the state of opening
    virtual void GLDrawTempShape() {}
    virtual void OnSnap(const std::array<double, 3>&) {} ///< see NotifySnap
    /// The mouse wheel over the dialog; non-zero when the dialog used it.
    virtual int OnDlgMouseWheel(UINT, short, CPoint) { return 0; }

  protected:
    void OnCancel() override;
    virtual void OnReset() { ResetDialog(); } ///< the Reset button (IDC_QM_RESET)
    int OnMouseWheel(UINT keys, short delta, CPoint point);

    DECLARE_MESSAGE_MAP()

  private:
    int m_nSelectionType = SelectionType::None;
    UINT m_nDefaultId = 0;
};
