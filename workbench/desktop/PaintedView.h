#pragma once

#include "framework/windows/WindowMessages.h"
#include "workbench/desktop/ControlView.h"
#include "workbench/desktop/RecordingPainter.h"

namespace workbench::desktop {

/// A window that its object paints: what it drew is shown, mouse messages go to it.
class PaintedView final : public QWidget, public ControlView {
  public:
    PaintedView(HWND window, ViewKeeper& keeper, QWidget* parent);

    QWidget& widget() override { return *this; }
    void follow(const framework::WindowRecord& record, unsigned what) override;
    const RecordingPainter& pictures() const { return pictures_; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override { tell(*event, WM_LBUTTONDOWN, WM_RBUTTONDOWN); }
    void mouseReleaseEvent(QMouseEvent* event) override { tell(*event, WM_LBUTTONUP, WM_RBUTTONUP); }
    void mouseDoubleClickEvent(QMouseEvent* event) override {
        tell(*event, WM_LBUTTONDBLCLK, WM_RBUTTONDOWN);
    }
    void mouseMoveEvent(QMouseEvent* event) override { send(*event, WM_MOUSEMOVE); }
    void closeEvent(QCloseEvent* event) override;

  private:
    void tell(const QMouseEvent& event, UINT left, UINT right);
    void send(const QMouseEvent& event, UINT message);

    RecordingPainter pictures_;
};

} // namespace workbench::desktop
