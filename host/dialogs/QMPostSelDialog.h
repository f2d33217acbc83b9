#pragma once

#include "host/dialogs/PostListenerDialog.h"
#include "host/dialogs/QMSelDialog.h"

/// A dialog with picking that hears of its post-processing state.
class CQMPostSelDialog : public PostListenerDialog<CQMSelDialog> {
  public:
    using PostListenerDialog::PostListenerDialog;
};
