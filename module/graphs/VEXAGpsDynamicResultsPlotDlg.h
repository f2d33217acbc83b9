#pragma once

#include "host/dialogs/QMDialog.h"
#include "module/common/UnavailableDialog.h"
#include "module/resources/resource.h"

/// Plots dynamic results. Modeless.
class CVEXAGpsDynamicResultsPlotDlg : public UnavailableDialog<CQMDialog> {
  public:
    CVEXAGpsDynamicResultsPlotDlg(CQMDocBase* doc, CWnd* parent)
        : UnavailableDialog(IDD_DYNAMIC_RESULTS_PLOT, L"IDS_VEXAGPS_Dynamic_Results_Plot", doc, parent) {}
};
