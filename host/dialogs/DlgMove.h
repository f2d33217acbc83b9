#pragma once

#include "framework/Export.h"
#include "host/dialogs/InternationalDlg.h"

/// Values of the mode of CDlgMove::SetInitPos.
namespace InitialPlace {
inline constexpr int Template = 0; ///< where the template says
inline constexpr int MainWindow =
    1; ///< at an offset from the main window's corner; from the screen's without one
} // namespace InitialPlace

/// A dialog that can be told where to open.
class VEXA_API CDlgMove : public CInternationalDlg {
  public:
    using CInternationalDlg::CInternationalDlg;

    /// Left top corner of the window when it opens, in pixels; see InitialPlace. Call before Create.
    void SetInitPos(int mode, int x, int y) {
        m_nInitMode = mode;
        m_ptInit = {x, y};
    }
    /// Number of the page of help for the dialog: its template's unless a class answers another one.
    virtual UINT GetHtmlHelpID() const { return m_nTemplateId; }

    int OnInitDialog() override;

  private:
    int m_nInitMode = InitialPlace::Template;
    CPoint m_ptInit;
};
