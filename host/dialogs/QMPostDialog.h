#pragma once

#include "host/dialogs/PostListenerDialog.h"
#include "host/dialogs/QMDialog.h"

/// A dialog of a document that hears of its post-processing state.
class CQMPostDialog : public PostListenerDialog<CQMDialog> {
  public:
    using PostListenerDialog::PostListenerDialog;
};
