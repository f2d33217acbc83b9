#pragma once

#include "workbench/desktop/QtWidgets.h"
#include "workbench/session/SessionOutput.h"

#include <functional>

namespace workbench::desktop {

/// The output of a session with windows: a pane of messages and a progress bar. What is said goes to the
/// standard error output too, so that a run without a display loses nothing.
class DesktopOutput final : public SessionOutput {
  public:
    DesktopOutput();
    ~DesktopOutput() override;

    /// The widgets must outlive the output, or be taken away again with null.
    void attach(QPlainTextEdit* pane, QProgressBar* bar);
    std::function<void(CVResult*)> resultDisplayed;
    std::function<void()> treeChanged;

    void showError(const std::string& text) override;
    void showWarning(const std::string& text) override;
    void showNote(const std::string& text) override;
    void setWaitCursor(bool on) override;
    void displayResult(CQMViewBase& view, CVResult* result) override;
    void resultsChanged(CQMDocBase& doc) override;
    WorkProgress& progress() override;

  private:
    class Bar;
    void write(const char* color, const std::string& text);

    QPlainTextEdit* pane_ = nullptr;
    std::unique_ptr<Bar> bar_;
};

} // namespace workbench::desktop
