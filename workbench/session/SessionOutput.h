#pragma once

#include "host/QMProgressBar.h"
#include "workbench/session/TerminalProgress.h"

#include <string>

class CQMDocBase;
class CQMViewBase;
class CVResult;

namespace workbench {

/// Where a session says what it has to say: a terminal, or a desktop's windows. Texts are UTF-8 sentences.
class SessionOutput {
  public:
    virtual ~SessionOutput() = default;
    virtual void showError(const std::string& text) = 0;
    virtual void showWarning(const std::string& text) = 0;
    virtual void showNote(const std::string& text) = 0;
    virtual void setWaitCursor(bool /*on*/) {}
    virtual void displayResult(CQMViewBase& /*view*/, CVResult* /*result*/) {}
    /// Results came or went: objects of the document's result tree may be others now.
    virtual void resultsChanged(CQMDocBase& /*doc*/) {}
    virtual WorkProgress& progress() = 0;
};

/// The standard error output, with a progress line where it is a terminal.
class TerminalOutput final : public SessionOutput {
  public:
    TerminalOutput()
        : progress_(stderr) {}
    void showError(const std::string& text) override;
    void showWarning(const std::string& text) override;
    void showNote(const std::string& text) override;
    WorkProgress& progress() override { return progress_; }

  private:
    void print(const char* kind, const std::string& text);

    TerminalProgress progress_;
};

} // namespace workbench
