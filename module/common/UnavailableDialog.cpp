#include "module/common/UnavailableDialog.h"

#include "host/MSGFunction.h"
#include "module/resources/resource.h"

void writeUnavailableTexts(CWnd& dialog, const wchar_t* titleKey) {
    dialog.SetWindowText(CMSGFunction::GetValue(titleKey));
    dialog.SetDlgItemText(IDC_NOT_AVAILABLE, CMSGFunction::GetValue(L"IDS_VEXAGPS_TOOL_NOT_AVAILABLE"));
    dialog.SetDlgItemText(IDCANCEL, CMSGFunction::GetValue(L"IDS_QM_BASE_CLOSE"));
}
