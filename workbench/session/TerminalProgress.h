#pragma once

#include "host/QMProgressBar.h"

#include <chrono>
#include <cstdio>
#include <string>

namespace workbench {

/// The host's progress bar, also for work that knows its share.
class WorkProgress : public IQMProgressBar {
  public:
    virtual void setFraction(double fraction) = 0; ///< 0 to 1
};

/// The progress bar on a stream: one line that is drawn over where the stream is a terminal, else a plain
/// line whenever the text changes. Draws at most twenty times a second.
class TerminalProgress final : public WorkProgress {
  public:
    explicit TerminalProgress(std::FILE* stream);
    ~TerminalProgress() override;

    void Start() override;
    void SetRange(int lower, int upper) override;
    void SetText(const std::wstring& text) override;
    void StepIt() override;
    void End() override;
    void Close() override;

    void setFraction(double fraction) override;
    /// Takes the bar off the line, so that other output can be written; the next change draws it again.
    void clearLine();

  private:
    void draw(bool now);

    std::FILE* stream_;
    bool terminal_;
    int lower_ = 0;
    int upper_ = 1;
    double position_ = 0;
    std::string text_;
    std::string lastPlain_;
    bool open_ = false;
    bool drawn_ = false;
    std::chrono::steady_clock::time_point lastDrawn_{};
};

} // namespace workbench
