#pragma once

#include "host/dialogs/QMDialog.h"
#include "module/common/UnavailableDialog.h"
#include "module/resources/resource.h"

/// Graphs of results over the steps. Modeless.
class CVEXAGpsResultsGraphDlg : public UnavailableDialog<CQMDialog> {
  public:
    CVEXAGpsResultsGraphDlg(CQMDocBase* doc, CWnd* parent)
        : UnavailableDialog(IDD_RESULTS_GRAPH, L"IDS_VEXAGPS_Results_Graph", doc, parent) {}
};
