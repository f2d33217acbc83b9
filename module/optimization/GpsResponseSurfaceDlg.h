#pragma once

#include "host/dialogs/QMPostDialog.h"
#include "host/records/DesignGui.h"
#include "module/common/UnavailableDialog.h"
#include "module/resources/resource.h"

/// Response surfaces of design samples. Modal.
class CGpsResponseSurfaceDlg : public UnavailableDialog<CQMPostDialog> {
  public:
    CGpsResponseSurfaceDlg(CQMDocBase* doc, CWnd* parent)
        : UnavailableDialog(IDD_RESPONSE_SURFACE, L"IDS_VEXAGPS_Response_Surface", doc, parent) {}
    void SetDesign(const tagTDgnaGUI& design) { m_design = design; }
    const tagTDgnaGUI& GetDesign() const { return m_design; }

  private:
    tagTDgnaGUI m_design;
};
