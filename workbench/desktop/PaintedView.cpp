#include "workbench/desktop/PaintedView.h"

#include "framework/drawing/Surface.h"
#include "framework/windows/WindowFunctions.h"
#include "framework/windows/desktop/UserActions.h"
#include "workbench/desktop/ControlMakers.h"

namespace workbench::desktop {

PaintedView::PaintedView(HWND window, ViewKeeper& keeper, QWidget* parent)
    : QWidget(parent)
    , ControlView(window, keeper) {
    setMouseTracking(true);
}

void PaintedView::follow(const framework::WindowRecord& record, unsigned) {
    if (!record.parent) setWindowTitle(qText(record.text));
}

void PaintedView::paintEvent(QPaintEvent*) {
    const auto* record = framework::findWindow(handle());
    if (!record) return;
    QPainter painter(this);
    const int border = framework::borderWidth(*record);
    // The frame of a window without a parent is the screen's.
    if (border && record->parent) qDrawShadePanel(&painter, rect(), palette(), true, border);
    if (!record->presented) return;
    const CSize size = record->presented->size();
    painter.setClipRect(border, border, size.cx, size.cy);
    painter.translate(border, border);
    pictures_.paint(painter, record->presented->drawn());
}

void PaintedView::closeEvent(QCloseEvent* event) {
    event->ignore();
    framework::user::close(handle());
    refresh();
}

void PaintedView::tell(const QMouseEvent& event, UINT left, UINT right) {
    if (event.button() == Qt::LeftButton) send(event, left);
    if (event.button() == Qt::RightButton) send(event, right);
}

void PaintedView::send(const QMouseEvent& event, UINT message) {
    const auto* record = framework::findWindow(handle());
    if (!record) return;
    const int border = framework::borderWidth(*record);
    const QPoint at = event.position().toPoint() - QPoint(border, border);
    const UINT keys = (event.buttons() & Qt::LeftButton ? MK_LBUTTON : 0) |
                      (event.buttons() & Qt::RightButton ? MK_RBUTTON : 0) |
                      (event.modifiers() & Qt::ShiftModifier ? MK_SHIFT : 0) |
                      (event.modifiers() & Qt::ControlModifier ? MK_CONTROL : 0);
    framework::user::mouse(handle(), message, {at.x(), at.y()}, keys);
    refresh();
}

ControlView* makePlain(HWND window, ViewKeeper& keeper, QWidget* parent) {
    return new PaintedView(window, keeper, parent);
}

} // namespace workbench::desktop
