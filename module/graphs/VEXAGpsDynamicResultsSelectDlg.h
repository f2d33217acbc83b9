#pragma once

#include "host/dialogs/QMDialog.h"
#include "module/common/UnavailableDialog.h"
#include "module/resources/resource.h"

/// Selects dynamic results. Modeless.
class CVEXAGpsDynamicResultsSelectDlg : public UnavailableDialog<CQMDialog> {
  public:
    CVEXAGpsDynamicResultsSelectDlg(CQMDocBase* doc, CWnd* parent)
        : UnavailableDialog(IDD_DYNAMIC_RESULTS_SELECT, L"IDS_VEXAGPS_Dynamic_Results_Select", doc, parent) {}
};
