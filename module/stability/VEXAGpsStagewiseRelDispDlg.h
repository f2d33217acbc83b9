#pragma once

#include "host/dialogs/QMPostDialog.h"
#include "module/common/UnavailableDialog.h"
#include "module/resources/resource.h"

/// Displacements of one stage relative to another one. Modeless.
class CVEXAGpsStagewiseRelDispDlg : public UnavailableDialog<CQMPostDialog> {
  public:
    CVEXAGpsStagewiseRelDispDlg(CQMDocBase* doc, CWnd* parent)
        : UnavailableDialog(IDD_STAGEWISE_RELATIVE_DISPLACEMENT,
                            L"IDS_VEXAGPS_Stagewise_Relative_Displacement", doc, parent) {}
    void SetView(CQMViewBase* view) { m_pView = view; } ///< for post-data items; not owned, may be null
    CQMViewBase* GetView() const { return m_pView; }

  private:
    CQMViewBase* m_pView = nullptr;
};
