#include "host/dialogs/DlgModeless.h"

void CDlgModeless::OnOK() {
    if (UpdateData(1)) Close(IDOK);
}

void CDlgModeless::Close(int result) {
    if (IsModal())
        EndDialog(result);
    else
        DestroyWindow();
}
