#pragma once

#include "host/dialogs/QMPostSelDialog.h"
#include "module/common/UnavailableDialog.h"
#include "module/resources/resource.h"

/// Graphs of the results of an analysis at picked nodes or elements. Modeless.
class CVEXAGpsAnalResult : public UnavailableDialog<CQMPostSelDialog> {
  public:
    CVEXAGpsAnalResult(CQMDocBase* doc, CWnd* parent)
        : UnavailableDialog(IDD_ANALYSIS_RESULT, L"IDS_VEXAGPS_Analysis_Result", doc, parent) {}
};
