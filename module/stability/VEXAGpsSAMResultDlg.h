#pragma once

#include "host/dialogs/QMPostSelDialog.h"
#include "module/common/UnavailableDialog.h"
#include "module/resources/resource.h"

/// Slope-stability factors of safety. Modeless.
class CVEXAGpsSAMResultDlg : public UnavailableDialog<CQMPostSelDialog> {
  public:
    /// `param` is the host's, kept as it is.
    CVEXAGpsSAMResultDlg(CQMDocBase* doc, void* param)
        : UnavailableDialog(IDD_SLOPE_STABILITY_RESULT, L"IDS_VEXAGPS_Slope_Stability_FOS_Result", doc,
                            nullptr)
        , m_pParam(param) {}
    void* GetParam() const { return m_pParam; }

  private:
    void* m_pParam;
};
