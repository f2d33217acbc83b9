#pragma once

#include "host/dialogs/Listeners.h"
#include "host/dialogs/QMSelDialog.h"

/// The notifications of CQMPostDialog for a dialog with picking.
class CQMPostSelDialog : public CQMSelDialog, public IQMUnitListener, public IQMPostUIListener {
  public:
    using CQMSelDialog::CQMSelDialog;

    void OnPostUpdate(unsigned) override {}
    void OnChangeMode(int) override {}
    void OnUnitChanged() override {}
    CQMDocBase* GetUnitListenerDoc() override { return GetDocBase(); }
    CQMViewBase* GetPostListenerView() override {
        return GetDocBase() ? GetDocBase()->GetActiveView() : nullptr;
    }
};
