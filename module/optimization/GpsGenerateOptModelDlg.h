#pragma once

#include "host/dialogs/QMDialog.h"
#include "host/records/DesignGui.h"
#include "module/common/UnavailableDialog.h"
#include "module/resources/resource.h"

/// Makes a model from an optimization's density result. Modal or modeless.
class CGpsGenerateOptModelDlg : public UnavailableDialog<CQMDialog> {
  public:
    CGpsGenerateOptModelDlg(CQMViewBase* view, CQMDocBase* doc, CWnd* parent)
        : UnavailableDialog(IDD_GENERATE_OPTIMIZATION_MODEL, L"IDS_VEXAGPS_Generate_Optimization_Model", doc,
                            parent)
        , m_pView(view) {}
    void SetDesign(const tagTDgnaGUI& design) { m_design = design; }
    const tagTDgnaGUI& GetDesign() const { return m_design; }
    CQMViewBase* GetView() const { return m_pView; } ///< not owned

  private:
    CQMViewBase* m_pView;
    tagTDgnaGUI m_design;
};
