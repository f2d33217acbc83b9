#pragma once

#include "host/dialogs/Listeners.h"
#include "host/dialogs/QMDialog.h"

/// A dialog that is told of the post-processing state of its document's active view and of its units.
class CQMPostDialog : public CQMDialog, public IQMUnitListener, public IQMPostUIListener {
  public:
    using CQMDialog::CQMDialog;

    void OnPostUpdate(unsigned) override {}
    void OnChangeMode(int) override {}
    void OnUnitChanged() override {}
    CQMDocBase* GetUnitListenerDoc() override { return GetDocBase(); }
    CQMViewBase* GetPostListenerView() override {
        return GetDocBase() ? GetDocBase()->GetActiveView() : nullptr;
    }
};
