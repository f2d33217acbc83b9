#pragma once

#include "host/QMAppBase.h"
#include "host/QMDocBase.h"
#include "host/QMProgressBar.h"

#include <string>

namespace fatigue {

/// Shows the wait cursor for a scope.
class WaitCursorScope {
  public:
    WaitCursorScope() { BeginWaitCursor(); }
    ~WaitCursorScope() { EndWaitCursor(); }
    WaitCursorScope(const WaitCursorScope&) = delete;
    WaitCursorScope& operator=(const WaitCursorScope&) = delete;
};

/// Sets a document's display at the end of a scope, whatever happened in it, without a redraw.
class PostModeScope {
  public:
    explicit PostModeScope(CQMDocBase& doc)
        : doc_(doc) {}
    ~PostModeScope() { doc_.SetPostMode(0); }
    PostModeScope(const PostModeScope&) = delete;
    PostModeScope& operator=(const PostModeScope&) = delete;

  private:
    CQMDocBase& doc_;
};

/// The host's progress bar for a scope; without a bar nothing happens.
class ProgressScope {
  public:
    explicit ProgressScope(int upper)
        : bar_(IQMProgressBar::m_pInstance) {
        if (!bar_) return;
        bar_->Start();
        bar_->SetRange(0, upper);
    }
    ~ProgressScope() { finish(); }
    ProgressScope(const ProgressScope&) = delete;
    ProgressScope& operator=(const ProgressScope&) = delete;

    void finish() {
        if (bar_) bar_->End();
        close();
    }
    /// Takes the bar away as it stands.
    void close() {
        if (bar_) bar_->Close();
        bar_ = nullptr;
    }

  private:
    IQMProgressBar* bar_;
};

inline void progressText(const std::wstring& text) {
    if (IQMProgressBar::m_pInstance) IQMProgressBar::m_pInstance->SetText(text);
}
inline void progressStep() {
    if (IQMProgressBar::m_pInstance) IQMProgressBar::m_pInstance->StepIt();
}

} // namespace fatigue
