#pragma once

#include "host/dialogs/QMDialog.h"
#include "module/common/UnavailableDialog.h"
#include "module/resources/resource.h"

/// Graphs of the histories at probes. Modeless.
class CVEXAGpsDynamicResultsGraphDlg : public UnavailableDialog<CQMDialog> {
  public:
    CVEXAGpsDynamicResultsGraphDlg(CQMDocBase* doc, CWnd* parent)
        : UnavailableDialog(IDD_HISTORY_PROBES_GRAPH, L"IDS_VEXAGPS_History_Probes_Graph", doc, parent) {}
};
