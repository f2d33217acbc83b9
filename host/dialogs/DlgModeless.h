#pragma once

#include "framework/Export.h"
#include "host/dialogs/DlgMove.h"

/// A dialog whose OK and Cancel end it also when it is modeless: its window is then destroyed.
class VEXA_API CDlgModeless : public CDlgMove {
  public:
    using CDlgMove::CDlgMove;

  protected:
    void OnOK() override;
    void OnCancel() override { Close(IDCANCEL); }
    /// Ends a modal dialog with that answer; destroys the window of a modeless one, and the object may be
    /// gone.
    void Close(int result);
};
