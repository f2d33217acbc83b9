#include "workbench/desktop/DesktopOutput.h"

#include "workbench/desktop/ControlView.h"

#include <algorithm>
#include <cstdio>

namespace workbench::desktop {

/// Painted at once, without running events: the caller is in the middle of a handler.
class DesktopOutput::Bar final : public WorkProgress {
  public:
    void attach(QProgressBar* bar) {
        bar_ = bar;
        if (bar_) {
            bar_->setRange(0, kSteps);
            bar_->hide();
        }
    }
    void Start() override {
        lower_ = 0;
        upper_ = 1;
        if (!bar_) return;
        bar_->show();
        bar_->setFormat("%p %");
        go(0);
    }
    void SetRange(int lower, int upper) override {
        lower_ = lower;
        upper_ = std::max(upper, lower + 1);
        go(lower);
    }
    void SetText(const std::wstring& text) override {
        if (!bar_) return;
        bar_->setFormat(qText(text).replace("%", "%%") + "  %p %");
        bar_->repaint();
    }
    void StepIt() override { go(position_ + 1); }
    void setFraction(double fraction) override {
        go(lower_ + std::clamp(fraction, 0.0, 1.0) * (upper_ - lower_));
    }
    void End() override { go(upper_); }
    void Close() override {
        if (bar_) bar_->hide();
    }

  private:
    static constexpr int kSteps = 200;

    void go(double position) {
        position_ = std::min<double>(position, upper_);
        const int value = static_cast<int>(kSteps * (position_ - lower_) / (upper_ - lower_));
        if (!bar_ || bar_->value() == value) return;
        bar_->setValue(value);
        bar_->repaint();
    }

    QProgressBar* bar_ = nullptr;
    int lower_ = 0;
    int upper_ = 1;
    double position_ = 0;
};

DesktopOutput::DesktopOutput()
    : bar_(std::make_unique<Bar>()) {}

DesktopOutput::~DesktopOutput() = default;

void DesktopOutput::attach(QPlainTextEdit* pane, QProgressBar* bar) {
    pane_ = pane;
    bar_->attach(bar);
}

void DesktopOutput::write(const char* color, const std::string& text) {
    if (!pane_) return;
    QTextCharFormat format;
    format.setForeground(QColor(color));
    QTextCursor cursor(pane_->document());
    cursor.movePosition(QTextCursor::End);
    if (!pane_->document()->isEmpty()) cursor.insertBlock();
    cursor.insertText(QString::fromStdString(text), format);
    pane_->verticalScrollBar()->setValue(pane_->verticalScrollBar()->maximum());
}

void DesktopOutput::showError(const std::string& text) {
    std::fprintf(stderr, "error: %s\n", text.c_str());
    write("#b01818", text);
}

void DesktopOutput::showWarning(const std::string& text) {
    std::fprintf(stderr, "warning: %s\n", text.c_str());
    write("#8a5a00", text);
}

void DesktopOutput::showNote(const std::string& text) {
    std::fprintf(stderr, "%s\n", text.c_str());
    write("#202020", text);
}

void DesktopOutput::setWaitCursor(bool on) {
    if (on)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

void DesktopOutput::displayResult(CQMViewBase&, CVResult* result) {
    if (resultDisplayed) resultDisplayed(result);
}

void DesktopOutput::resultsChanged(CQMDocBase&) {
    if (treeChanged) treeChanged();
}

WorkProgress& DesktopOutput::progress() {
    return *bar_;
}

} // namespace workbench::desktop
