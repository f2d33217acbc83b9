#pragma once

#include "host/dialogs/QMDialog.h"
#include "module/common/UnavailableDialog.h"
#include "module/resources/resource.h"

#include <string>
#include <utility>

/// The history of the factor of safety. Modeless.
class CVEXAGpsSafetyGraphDlg : public UnavailableDialog<CQMDialog> {
  public:
    CVEXAGpsSafetyGraphDlg(CQMDocBase* doc, CWnd* parent)
        : UnavailableDialog(IDD_SAFETY_GRAPH, L"IDS_VEXA_CAE_GRAPH_FOS", doc, parent) {}
    /// The second part of the name of the history's file. Call before the window is made.
    void SetName(std::wstring name) { m_strName = std::move(name); }
    const std::wstring& GetName() const { return m_strName; }

  private:
    std::wstring m_strName;
};
